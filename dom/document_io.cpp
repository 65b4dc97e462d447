// Loading and saving. Qt parses and serialises; whatever goes wrong is answered S_FALSE.

#include "KelXmlLib/document.h"

#include "dom/memory_room.h"
#include "dom/replay_device.h"
#include "dom/stack_room.h"
#include "dom/text.h"
#include "dom/text_bounds.h"
#include "dom/tree_depth.h"
#include "dom/tree_guards.h"
#include "dom/values.h"

#include <QtCore/QFile>
#include <QtCore/QTextStream>

namespace
{

constexpr int kIndent = 4;

void setFlag(VARIANT_BOOL* flag, VARIANT_BOOL value)
{
    if (flag)
        *flag = value;
}

/// Hands `content`, a device or a text, to Qt's parser if that survives what `look` saw.
template <class Content>
HRESULT parseInto(QDomDocument& document, const kelxml::bounds::Look& look, Content&& content,
                  VARIANT_BOOL* success)
{
    if (!look.within || !kelxml::hasRoomToParse(look.nesting))
        return S_FALSE;
    kelxml::clearBeforeSetContent(document);
    if (!document.setContent(content))
        return S_FALSE;
    setFlag(success, VARIANT_TRUE);
    return S_OK;
}

/// A tree of any depth can be saved on a usual stack; only on a small one is the depth looked at.
bool canBeSaved(const QDomDocument& document)
{
    return kelxml::hasRoomToSave(kelxml::kMaxNodeDepth) || kelxml::hasRoomToSave(kelxml::depthOf(document));
}

/// Against a stream that writes while an exception passes: its destructor would write what it still holds,
/// for which there may be no memory, and an exception out of a destructor ends the process. What was written
/// before this goes is all that is written.
class NoLateWriting
{
public:
    explicit NoLateWriting(QTextStream& stream) : m_stream(stream) {}
    ~NoLateWriting() { m_stream.setStatus(QTextStream::WriteFailed); }
    NoLateWriting(const NoLateWriting&) = delete;
    NoLateWriting& operator=(const NoLateWriting&) = delete;

private:
    QTextStream& m_stream;
};

} // namespace

HRESULT CMorvXMLDOMDocument::load(VARIANT source, VARIANT_BOOL* success)
{
    setFlag(success, VARIANT_FALSE);
    const std::optional<QString> path = kelxml::readPath(source);
    if (!path)
        return S_FALSE;
    kelxml::makeSureOfMemoryForFile();
    QFile file(*path);
    if (!file.exists() || !file.open(QIODevice::ReadOnly))
        return S_FALSE;
    // The parser gets what was looked at, even if the file changes meanwhile or is a pipe.
    kelxml::ReplayDevice replay(file);
    const kelxml::bounds::Look look = kelxml::bounds::lookAt(replay);
    return parseInto(m_document, look, &replay, success);
}

HRESULT CMorvXMLDOMDocument::loadXML(BSTR xml, VARIANT_BOOL* success)
{
    setFlag(success, VARIANT_FALSE);
    const QString text = kelxml::fromWide(xml);
    if (text.isEmpty())
        return S_FALSE;
    return parseInto(m_document, kelxml::bounds::lookAt(text), text, success);
}

HRESULT CMorvXMLDOMDocument::save(VARIANT destination)
{
    const std::optional<QString> path = kelxml::readPath(destination);
    if (!path || path->isEmpty() || !canBeSaved(m_document))
        return S_FALSE;
    kelxml::makeSureOfMemoryForFile();
    QFile file(*path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        return S_FALSE;
    QTextStream stream(&file);
    const NoLateWriting guard(stream);
    stream.setCodec("UTF-8");
    m_document.save(stream, kIndent, QDomNode::EncodingFromDocument);
    stream.flush();
    file.close();
    return S_OK;
}
