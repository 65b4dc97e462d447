// All attributes of an element, in linear time.

#pragma once

#include <vector>

#include <QtXml/QDomElement>

namespace kelxml::serialize
{

/// Up to this many items of a map are read in Qt's order, which takes quadratic time: 20 ms.
constexpr int kMostInQtOrder = 2000;

/// All attributes, in no particular order. Qt steps through its hash from the start for each
/// `QDomNamedNodeMap::item`, so a loop over that takes quadratic time.
/// \param element in a document that is alive: Qt counts there that the element is copied
/// \throw std::bad_alloc
std::vector<QDomNode> attributesOf(const QDomElement& element);

/// The same in the order in which Qt saves them, if there are no more than `kMostInQtOrder`.
std::vector<QDomNode> attributesInQtOrder(const QDomElement& element);

} // namespace kelxml::serialize
