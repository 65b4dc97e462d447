// Lists all attributes of an element in linear time.

#pragma once

#include <vector>

#include <QtXml/QDomElement>

namespace kelxml::serialize
{

/// Maps with up to this many items are read in Qt's order, which takes quadratic time: 20 ms.
constexpr int kMostInQtOrder = 2000;

/// All attributes, in no particular order. Qt iterates over its hash from the start for each
/// `QDomNamedNodeMap::item`, so a loop over that takes quadratic time.
/// \param element its document must be alive: copying the element changes a counter in the document
/// \throw std::bad_alloc
std::vector<QDomNode> attributesOf(const QDomElement& element);

/// The same in the order in which Qt saves them, if there are at most `kMostInQtOrder`.
std::vector<QDomNode> attributesInQtOrder(const QDomElement& element);

} // namespace kelxml::serialize
