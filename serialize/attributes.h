// Lists all attributes of an element in linear time.

#pragma once

#include <vector>

#include <QtXml/QDomElement>

namespace kelxml::serialize
{

/// Maximum number of items that are read in Qt's order. This takes quadratic time: 20 ms for the maximum.
constexpr int kMaxInQtOrder = 2000;

/// Returns all attributes in an arbitrary order. A loop over `QDomNamedNodeMap::item` would take quadratic
/// time, because each call iterates over Qt's hash from the start.
/// \param element its document must still exist: copying the element changes a counter in the document
/// \throw std::bad_alloc
std::vector<QDomNode> attributesOf(const QDomElement& element);

/// Returns all attributes. If there are at most `kMaxInQtOrder`, they are in the order in which Qt saves
/// them.
std::vector<QDomNode> attributesInQtOrder(const QDomElement& element);

} // namespace kelxml::serialize
