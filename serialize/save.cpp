// Saving recurses, and writes through a stream that has to be kept from writing too late.

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
    // A tree of any depth can be saved on a usual stack; only on a small one is the depth looked at.
    const int depth = limits::depthThatCanBeSaved();
    return depth == limits::kMaxNodeDepth || trees::isWithin(document, depth);
}

void save(const QDomDocument& document, QFile& file)
{
    constexpr int kIndent = 4;
    QTextStream stream(&file);
    // While an exception passes, the stream's destructor must not write what it still holds: there may be no
    // memory for it, and an exception out of a destructor ends the process.
    const auto neverLate = qScopeGuard([&stream] { stream.setStatus(QTextStream::WriteFailed); });
    stream.setCodec("UTF-8");
    document.save(stream, kIndent, QDomNode::EncodingFromDocument);
    stream.flush();
    file.close();
}

} // namespace kelxml::serialize
