// Writes a tree, or a part of one, like Qt's QDomNode::save, but in linear time, on any stack, and with the
// same order of attributes in every process.

#pragma once

#include <functional>

#include <QtCore/QByteArray>
#include <QtCore/QString>

class QDomNode;

namespace kelxml::serialize
{

enum class AttributeOrder {
    byName, ///< by the UTF-16 units of the names as written; also sorts notations and entities of a document
            ///< type
    ofQt,   ///< in the order of Qt's hash, which differs from process to process
};

struct Options
{
    int indent = 4; ///< spaces per level; 0 writes only line ends; -1 writes none, except after comments and
                    ///< instructions
    AttributeOrder attributeOrder = AttributeOrder::byName;
};

/// Receives the next bytes. Its exceptions pass through.
using Sink = std::function<void(const QByteArray& bytes)>;

/// Writes the bytes of `QDomNode::save` with `EncodingFromDocument`: a document in the encoding it declares,
/// or in UTF-8 if Qt does not know that encoding or none is declared; any other node in UTF-8, indented by
/// one level.
///
/// It does not recurse, so the depth of the tree does not matter. With `AttributeOrder::ofQt`, an element of
/// more than 2,000 attributes is written in an arbitrary order.
/// \param node null writes nothing. Its document must be alive, which `trees::ensureValidOwnerDocument`
/// ensures. A node without a parent is treated as having no siblings, because Qt may leave bad links in it.
/// \param write called with pieces of at least 16,384 characters, except the last
/// \throw std::bad_alloc, and exceptions from `write`
void serialize(const QDomNode& node, const Options& options, const Sink& write);

/// The same bytes in one piece.
QByteArray bytesOf(const QDomNode& node, const Options& options = {});

/// The same text without encoding it. Characters that the declared encoding cannot represent are still
/// written as character references, as in `QDomDocument::toString`.
QString textOf(const QDomNode& node, const Options& options = {});

} // namespace kelxml::serialize
