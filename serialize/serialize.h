// Writes a tree, or a part of a tree, like Qt's `QDomNode::save`. There are three differences from Qt:
// writing takes linear time, needs little stack, and by default puts attributes in the same order in every
// process.

#pragma once

#include <functional>

#include <QtCore/QByteArray>
#include <QtCore/QString>

class QDomNode;

namespace kelxml::serialize
{

enum class AttributeOrder {
    /// Sorts attributes by their full names, compared by UTF-16 units. Also sorts the notations and the
    /// entities of a document type by name.
    byName,
    /// Keeps the order of Qt's hash. This order differs from process to process.
    ofQt,
};

struct Options
{
    /// Number of spaces per level of indentation. With 0, no line is indented. With -1, line breaks are
    /// written only after comments, after processing instructions, and inside and after the document type.
    int indent = 4;
    AttributeOrder attributeOrder = AttributeOrder::byName;
};

/// Receives the next bytes. A sink may throw: `serialize` passes the exception on to its own caller.
using Sink = std::function<void(const QByteArray& bytes)>;

/// Writes the same bytes as `QDomNode::save` with `EncodingFromDocument`, except for the order of attributes,
/// notations and entities. A document is written in the encoding that the document declares. If the document
/// declares no encoding, or an encoding that Qt does not know, the document is written in UTF-8. A node that
/// is not a document is written in UTF-8 and indented by one level. For a null node, nothing is written.
///
/// The function does not recurse, so the tree may have any depth. If an element has more than 2,000
/// attributes, `AttributeOrder::ofQt` writes these attributes in an arbitrary order.
/// \param node The document of `node` must still exist, so call `trees::ensureValidOwnerDocument` first. If
///        `node` has no parent, the function does not look at the siblings of `node`, because the links from
///        `node` to its siblings may point to freed nodes.
/// \param write receives the text in encoded pieces. Before encoding, each piece except the last has at least
///        16,384 UTF-16 units
/// \throw std::bad_alloc, and exceptions from `write`
void serialize(const QDomNode& node, const Options& options, const Sink& write);

/// Returns the bytes that `serialize` writes.
QByteArray bytesOf(const QDomNode& node, const Options& options = {});

/// Returns what `serialize` writes, as text instead of encoded bytes. Like `QDomDocument::toString`, writes a
/// character reference for each character that the declared encoding cannot represent.
QString textOf(const QDomNode& node, const Options& options = {});

} // namespace kelxml::serialize
