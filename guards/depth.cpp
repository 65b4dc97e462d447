// Measures what is appended together with what it is appended to.

#include "guards/depth.h"

#include "guards/handle.h"
#include "guards/limits.h"

#include <QtCore/QVarLengthArray>
#include <QtXml/QDomNamedNodeMap>

#include <atomic>
#include <utility>

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
    bool fits(Extent most) const { return elements <= most.elements && nodes <= most.nodes; }
};

constexpr Extent kMost{kMaxElementDepth, kMaxNodeDepth};

/// Set when something was appended below an attribute. Until then attributes hold nothing but their text,
/// for which the limits leave room, and need not be looked at.
std::atomic<bool> attributesHoldTrees{false};

bool isPlainAttribute(const QDomNode& attribute)
{
    const QDomNode first = attribute.firstChild();
    return first == attribute.lastChild() && !first.isElement() && !first.hasChildNodes();
}

struct Step
{
    Handle node;
    Extent above;
};

/// Whether no path that leads through `above` to `root` and on down goes beyond `most`.
bool staysWithin(const QDomNode& root, Extent above, Extent most)
{
    const bool withAttributes = attributesHoldTrees.load(std::memory_order_relaxed);
    QVarLengthArray<Step, 32> open; // leaves are not kept, and most subtrees hold little else
    const auto enter = [&](const QDomNode& node, Extent path) {
        path.add(node);
        const bool hasRoomForLeaf = Extent{path.elements + 1, path.nodes + 1}.fits(most);
        for (Handle child = node.firstChild(); !child.isNull(); child = child.nextSibling())
            if (child.hasChildNodes() || withAttributes || !hasRoomForLeaf)
                open.push_back({child, path});
        const QDomNamedNodeMap attributes = withAttributes ? node.attributes() : QDomNamedNodeMap();
        for (int index = 0; index < attributes.length(); ++index) {
            Handle attribute = attributes.item(index);
            if (!isPlainAttribute(attribute))
                open.push_back({std::move(attribute), path});
        }
        return path.fits(most);
    };
    bool isWithin = enter(root, above);
    while (isWithin && !open.isEmpty()) {
        const Step step = std::move(open.last());
        open.removeLast();
        isWithin = enter(step.node, step.above);
    }
    return isWithin;
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
