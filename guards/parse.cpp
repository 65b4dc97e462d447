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

/// All bytes of a device, or more than `most` of them when it has more.
QByteArray readUpToOneMoreThan(qint64 most, QIODevice& device)
{
    constexpr qint64 kFirstPiece = qint64{64} * 1024;
    QByteArray bytes;
    qint64 length = 0;
    for (qint64 piece = std::max(device.size(), kFirstPiece); length <= most; piece = length) {
        bytes.resize(static_cast<int>(std::min(length + piece, most) + 1));
        qint64 more = 1;
        while (length < bytes.size() && more > 0) {
            more = device.read(bytes.data() + length, bytes.size() - length);
            length += std::max<qint64>(more, 0);
        }
        if (more <= 0)
            break;
    }
    bytes.resize(static_cast<int>(length));
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
