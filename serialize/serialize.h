// Writes a tree, or a part of one, as Qt's QDomNode::save does, but in linear time, on any stack, and with an
// order of attributes that is the same in every process.

#pragma once

#include <functional>

#include <QtCore/QByteArray>
#include <QtCore/QString>

class QDomNode;

namespace kelxml::serialize
{

enum class AttributeOrder {
    byName, ///< by UTF-16 unit of the names as written; notations and entities of a document type as well
    ofQt,   ///< in the order of Qt's hash, which differs from process to process
};

struct Options
{
    int indent =
        4; ///< spaces a level; 0 for line ends alone, -1 for none, except after comments and instructions
    AttributeOrder attributeOrder = AttributeOrder::byName;
};

/// Takes the next bytes. What it throws passes through.
using Sink = std::function<void(const QByteArray& bytes)>;

/// Writes the bytes of `QDomNode::save` with `EncodingFromDocument`: a document in the encoding that it
/// declares, in UTF-8 if it declares none that Qt knows; any other node in UTF-8, indented by one level.
///
/// Recursion is avoided, so the depth of the tree does not matter. With `AttributeOrder::ofQt`, an element of
/// more than 2,000 attributes is written in an arbitrary order.
/// \param node may be null, which writes nothing. Its document must be alive, which `trees::adopt` ensures.
/// A node without a parent is taken to have no siblings: the links that Qt left in it may be bad. \param
/// write called with pieces of at least 16,384 characters, except the last \throw std::bad_alloc, and what
/// `write` throws
void serialize(const QDomNode& node, const Options& options, const Sink& write);

/// The same bytes in one piece.
QByteArray bytesOf(const QDomNode& node, const Options& options = {});

/// The same text, not encoded; what the declared encoding cannot hold is a character reference all the same.
/// This is what `QDomDocument::toString` returns.
QString textOf(const QDomNode& node, const Options& options = {});

} // namespace kelxml::serialize
