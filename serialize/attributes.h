// Lists the attributes of an element, and avoids quadratic time if there are many attributes.

#pragma once

#include <vector>

#include <QtXml/QDomElement>

namespace kelxml::serialize
{

/// A `QDomNamedNodeMap` is read in Qt's order only if it has at most this many items, because reading in Qt's
/// order takes quadratic time: 20 ms for 2,000 items.
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
