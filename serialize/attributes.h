// Lists all attributes of an element in linear time.

#pragma once

#include <vector>

#include <QtXml/QDomElement>

namespace kelxml::serialize
{

/// If a map has at most this many items, the library reads the items in Qt's order. The time to read the
/// items grows with the square of the number of items, up to 20 ms for 2,000 items.
constexpr int kMaxInQtOrder = 2000;

/// Returns all attributes in an arbitrary order. A loop over `QDomNamedNodeMap::item` would take quadratic
/// time, because each call of `item` iterates over Qt's hash from the start.
/// \param element the document of `element` must still exist, because this function may make Qt copy
///        `element`, and Qt then changes a counter in the document
/// \throw std::bad_alloc
std::vector<QDomNode> attributesOf(const QDomElement& element);

/// Returns all attributes of `element`. If `element` has at most `kMaxInQtOrder` attributes, returns the
/// attributes in the order in which Qt saves them. If `element` has more, the order is arbitrary.
/// \param element the document of `element` must still exist, because this function may call `attributesOf`
std::vector<QDomNode> attributesInQtOrder(const QDomElement& element);

} // namespace kelxml::serialize
