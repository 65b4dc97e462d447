// Looks at a text, asks for room on the stack, takes the earlier content out and lets Qt parse.

#include "guards/parse.h"

#include "guards/limits.h"
#include "guards/list_changes.h"
#include "guards/prescan.h"
#include "guards/stack_room.h"
#include "guards/tree.h"

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtXml/QDomDocument>
#include <algorithm>

namespace kelxml::guards
{

namespace
{

/// Against siblings that are freed: `QDomDocument::setContent` lets held top-level nodes keep their links to
/// those beside them. So they are taken out one by one beforehand.
void takeOutContent(QDomDocument& document)
{
    for (QDomNode node = document.firstChild(); !node.isNull(); node = document.firstChild())
        document.removeChild(node);
}

/// \param content a text or a device
template <class Content>
bool parseWithin(const Prescan& seen, QDomDocument& document, Content&& content)
{
    if (!seen.within || !hasRoomToParse(seen.nesting))
        return false;
    noteReplacedContent(document);
    noteNewNodes();
    takeOutContent(document);
    return document.setContent(content);
}

/// All bytes of a device, or one more than `most` of them when it has more.
QByteArray readUpToOneMoreThan(qint64 most, QIODevice& device)
{
    constexpr qint64 kPiece = qint64{64} * 1024;
    QByteArray bytes = device.read(std::min(std::max(device.size(), kPiece), most + 1));
    for (QByteArray piece = bytes; !piece.isEmpty(); bytes += piece)
        piece = device.read(std::min(kPiece, most + 1 - bytes.size()));
    return bytes;
}

} // namespace

bool parse(QDomDocument& document, const QString& text)
{
    return parseWithin(prescan(text), document, text);
}

bool parse(QDomDocument& document, QFile& file)
{
    const qint64 most = file.size() > 0 ? kMaxFileBytes : kMaxUnsizedBytes;
    if (file.size() > most)
        return false;
    QByteArray bytes = readUpToOneMoreThan(most, file);
    if (bytes.size() > most)
        return false;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return parseWithin(prescan(bytes), document, &buffer);
}

} // namespace kelxml::guards
