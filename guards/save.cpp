// Saving recurses, and writes through a stream that has to be kept from writing too late.

#include "guards/save.h"

#include "guards/depth.h"
#include "guards/limits.h"
#include "guards/stack_room.h"

#include <QtCore/QFile>
#include <QtCore/QTextStream>
#include <QtXml/QDomDocument>

namespace kelxml::guards
{

namespace
{

constexpr int kIndent = 4;

/// Against a stream that writes while an exception passes: its destructor would write what it still holds,
/// for which there may be no memory, and an exception out of a destructor ends the
/// process. `flush` is to be called before this goes.
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

bool canBeSaved(const QDomDocument& document)
{
    // A tree of any depth can be saved on a usual stack; only on a small one is the depth looked at.
    const int depth = depthThatCanBeSaved();
    return depth == kMaxNodeDepth || isWithin(document, depth);
}

void save(const QDomDocument& document, QFile& file)
{
    QTextStream stream(&file);
    const NoLateWriting guard(stream);
    stream.setCodec("UTF-8");
    document.save(stream, kIndent, QDomNode::EncodingFromDocument);
    stream.flush();
    file.close();
}

} // namespace kelxml::guards
