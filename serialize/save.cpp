// Prevents two crashes when Qt saves: a recursion too deep for the stack, and an exception from the
// destructor of the text stream.

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
    // A stack of the usual size has room for every tree within the depth limit. This function measures the
    // depth of the tree only if the stack has less room.
    const int depth = limits::depthThatCanBeSaved();
    return depth == limits::kMaxNodeDepth || trees::isNoDeeperThan(document, depth);
}

void save(const QDomDocument& document, QFile& file)
{
    constexpr int kIndent = 4;
    QTextStream stream(&file);
    // If an exception leaves this function, the stream's destructor must not write the buffered text. Writing
    // the text might run out of memory, and an exception from a destructor ends the process.
    const auto discardBuffer = qScopeGuard([&stream] { stream.setStatus(QTextStream::WriteFailed); });
    stream.setCodec("UTF-8");
    document.save(stream, kIndent, QDomNode::EncodingFromDocument);
    stream.flush();
    file.close();
}

} // namespace kelxml::serialize
