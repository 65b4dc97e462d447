// Guards Qt's saving against too deep recursion and against a stream that writes too late.

#include "serialize/save.h"

#include "limits/limits.h"
#include "limits/stack_room.h"
#include "trees/depth.h"

#include <QtCore/QFile>
#include <QtCore/QScopeGuard>
#include <QtCore/QTextStream>
#include <QtXml/QDomDocument>

namespace kelxml::serialize
{

bool canBeSaved(const QDomDocument& document)
{
    // A usual stack has room for any tree, so the depth is checked only on a small stack.
    const int depth = limits::depthThatCanBeSaved();
    return depth == limits::kMaxNodeDepth || trees::isNoDeeperThan(document, depth);
}

void save(const QDomDocument& document, QFile& file)
{
    constexpr int kIndent = 4;
    QTextStream stream(&file);
    // When an exception passes, the stream's destructor must not write its buffer: there may be no memory for
    // it, and an exception from a destructor ends the process.
    const auto neverLate = qScopeGuard([&stream] { stream.setStatus(QTextStream::WriteFailed); });
    stream.setCodec("UTF-8");
    document.save(stream, kIndent, QDomNode::EncodingFromDocument);
    stream.flush();
    file.close();
}

} // namespace kelxml::serialize
