// Writes a tree or a part of it like Qt's QDomNode::save, with three differences: it takes linear time, needs
// little stack, and writes attributes in the same order in every process.

#pragma once

#include <functional>

#include <QtCore/QByteArray>
#include <QtCore/QString>

class QDomNode;

namespace kelxml::serialize
{

enum class AttributeOrder {
    byName, ///< by the UTF-16 units of the full names; also sorts the declarations of a document type
    ofQt,   ///< in the order of Qt's hash, which differs from process to process
};

struct Options
{
    /// Number of spaces per level. 0 writes line ends without spaces. -1 writes line ends only after comments
    /// and instructions.
    int indent = 4;
    AttributeOrder attributeOrder = AttributeOrder::byName;
};

/// Receives the next bytes. It may throw: `serialize` passes its exceptions to the caller.
using Sink = std::function<void(const QByteArray& bytes)>;

/// Writes the same bytes as `QDomNode::save` with `EncodingFromDocument`. A document is written in the
/// encoding that it declares, or in UTF-8 if it declares none or one that Qt does not know. Any other node is
/// written in UTF-8 and indented by one level. For a null node, nothing is written.
///
/// The function does not recurse, so the tree may have any depth. With `AttributeOrder::ofQt`, the attributes
/// of an element that has more than 2,000 are written in an arbitrary order.
/// \param node Call `trees::ensureValidOwnerDocument` first, because its document must still exist. If the
/// node has no parent, its siblings are ignored, because its links may point to freed nodes.
/// \param write called with pieces of at least 16,384 characters; the last piece may be shorter
/// \throw std::bad_alloc, and exceptions from `write`
void serialize(const QDomNode& node, const Options& options, const Sink& write);

/// Returns the bytes that `serialize` writes.
QByteArray bytesOf(const QDomNode& node, const Options& options = {});

/// Returns the text that `serialize` encodes. Like in `QDomDocument::toString`, characters that the declared
/// encoding cannot represent are character references.
QString textOf(const QDomNode& node, const Options& options = {});

} // namespace kelxml::serialize
