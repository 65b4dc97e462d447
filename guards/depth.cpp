// Measures what is appended together with what it is appended to.

#include "guards/depth.h"

#include "guards/handle.h"
#include "guards/limits.h"

#include <QtCore/QVarLengthArray>
#include <QtXml/QDomElement>
#include <QtXml/QDomNamedNodeMap>

#include <algorithm>
#include <atomic>
#include <utility>

namespace kelxml::guards
{

namespace
{

/// The longest paths from a node down, the node included.
struct Extent
{
    int elements = 0;
    int nodes = 0;
};

Extent operator+(Extent left, Extent right)
{
    return {left.elements + right.elements, left.nodes + right.nodes};
}

Extent larger(Extent left, Extent right)
{
    return {std::max(left.elements, right.elements), std::max(left.nodes, right.nodes)};
}

Extent extentOfOne(const QDomNode& node)
{
    return {node.isElement() ? 1 : 0, 1};
}

/// Set when something was appended below an attribute. Until then attributes hold nothing but their text,
/// for which the limits leave room, and need not be looked at.
std::atomic<bool> attributesHoldTrees{false};

bool mayHoldTreesInAttributes(const QDomNode& node)
{
    return attributesHoldTrees.load(std::memory_order_relaxed) && node.isElement();
}

bool isLeaf(const QDomNode& node)
{
    return !node.hasChildNodes() && !mayHoldTreesInAttributes(node);
}

/// A node to be measured with the siblings after it, and the path that leads to them.
struct Step
{
    Handle node;
    Extent above;
};

/// What is still to be measured. Of most subtrees that is so little that nothing is allocated.
using Steps = QVarLengthArray<Step, 32>;

void add(QDomNode&& node, Extent above, Steps& open)
{
    if (!node.isNull())
        open.push_back({std::move(node), above});
}

/// The trees in attributes that hold more than their text.
void addAttributes(const QDomNode& element, Extent above, Steps& open)
{
    const QDomNamedNodeMap attributes = element.attributes();
    for (int index = 0; index < attributes.length(); ++index) {
        const QDomNode attribute = attributes.item(index);
        QDomNode first = attribute.firstChild();
        if (!first.isNull() && (!first.nextSibling().isNull() || first.isElement() || first.hasChildNodes()))
            add(std::move(first), above + extentOfOne(attribute), open);
    }
}

Extent measure(const QDomNode& root)
{
    Extent longest;
    Steps open;
    const auto enter = [&](const QDomNode& node, Extent above) {
        const Extent here = above + extentOfOne(node);
        longest = larger(longest, here);
        add(node.firstChild(), here, open);
        if (mayHoldTreesInAttributes(node))
            addAttributes(node, here, open);
    };
    enter(root, {});
    while (!open.isEmpty()) {
        const Step step = std::move(open.last());
        open.removeLast();
        add(step.node.nextSibling(), step.above, open);
        enter(step.node, step.above);
    }
    return longest;
}

bool isWithinLimits(Extent extent)
{
    return extent.elements <= kMaxElementDepth && extent.nodes <= kMaxNodeDepth;
}

/// As `measure`, but at a glance where a node has no child or just one without children, as most nodes have.
Extent heightOf(const QDomNode& node)
{
    if (isLeaf(node))
        return extentOfOne(node);
    const QDomNode first = node.firstChild();
    if (mayHoldTreesInAttributes(node) || !isLeaf(first) || !first.nextSibling().isNull())
        return measure(node);
    return extentOfOne(node) + extentOfOne(first);
}

} // namespace

bool fitsBelow(const QDomNode& parent, const QDomNode& child)
{
    Extent above;
    bool belowAttribute = false;
    for (Handle node{QDomNode(parent)}; !node.isNull() && !node.isDocument(); node = node.parentNode()) {
        if (node == child)
            return false;
        above = above + extentOfOne(node);
        belowAttribute = belowAttribute || node.isAttr();
    }
    if (!isWithinLimits(above + heightOf(child)))
        return false;
    if (belowAttribute)
        attributesHoldTrees.store(true, std::memory_order_relaxed);
    return true;
}

int depthOf(const QDomNode& root)
{
    return measure(root).nodes;
}

} // namespace kelxml::guards
