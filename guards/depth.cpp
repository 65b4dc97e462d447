// Measures what is appended together with what it is appended to.

#include "guards/depth.h"

#include "guards/handle.h"
#include "guards/limits.h"

#include <QtXml/QDomElement>
#include <QtXml/QDomNamedNodeMap>

#include <atomic>

namespace kelxml::guards
{

namespace
{

/// What is counted on a path.
struct Extent
{
    int elements = 0;
    int nodes = 0;

    void add(const QDomNode& node)
    {
        elements += node.isElement() ? 1 : 0;
        ++nodes;
    }
};

constexpr Extent kMost{kMaxElementDepth, kMaxNodeDepth};

/// Set when something was appended below an attribute. Until then attributes hold nothing but their text,
/// for which the limits leave room, and need not be looked at.
std::atomic<bool> attributesHoldTrees{false};

/// Whether no path that leads through `above` to `node` and on down goes beyond `most`. Recurses no further
/// than that: 300 KB of stack at the limits, where saving takes ten times as much.
bool staysWithin(const QDomNode& node, Extent above, Extent most)
{
    const bool withAttributes = attributesHoldTrees.load(std::memory_order_relaxed);
    if (!withAttributes && !node.hasChildNodes() && above.elements < most.elements &&
        above.nodes < most.nodes)
        return true; // whatever it is: most nodes are leaves
    above.add(node);
    if (above.elements > most.elements || above.nodes > most.nodes)
        return false;
    for (Handle child = node.firstChild(); !child.isNull(); child = child.nextSibling())
        if (!staysWithin(child, above, most))
            return false;
    const QDomNamedNodeMap attributes = withAttributes ? node.attributes() : QDomNamedNodeMap();
    for (int index = 0; index < attributes.length(); ++index)
        if (!staysWithin(attributes.item(index), above, most))
            return false;
    return true;
}

} // namespace

bool fitsBelow(const QDomNode& parent, const QDomNode& child)
{
    Extent above;
    bool belowAttribute = false;
    for (Handle node{QDomNode(parent)}; !node.isNull() && !node.isDocument(); node = node.parentNode()) {
        if (node == child)
            return false;
        above.add(node);
        belowAttribute = belowAttribute || node.isAttr();
    }
    if (!staysWithin(child, above, kMost))
        return false;
    if (belowAttribute)
        attributesHoldTrees.store(true, std::memory_order_relaxed);
    return true;
}

bool isWithin(const QDomNode& root, int depth)
{
    return staysWithin(root, {}, {depth, depth});
}

} // namespace kelxml::guards
