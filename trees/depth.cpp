// Whether a subtree may be appended depends on the depth of the new parent plus the height of the subtree.
// Depth and height are counted in levels. Each element is a level, and so is any other node with children,
// except an element's attribute that contains only a text. The limit leaves enough stack for recursive
// functions to visit the nodes that do not count as levels, too.

#include "trees/depth.h"

#include "limits/limits.h"
#include "qt/movable_node.h"

#include <QtCore/QVarLengthArray>
#include <QtXml/QDomNamedNodeMap>

#include <atomic>
#include <utility>

namespace kelxml::trees
{

namespace
{

/// An upper bound for the number of levels that any attribute has had so far. Qt needs quadratic time to list
/// the attributes of an element. So a subtree is first measured without attributes, and this number of levels
/// is reserved for the attributes. If the subtree does not fit into the remaining levels, it is measured
/// again with its attributes.
std::atomic<int> levelsInAttributes{0};

bool isPlainAttribute(const QDomNode& attribute)
{
    const QDomNode first = attribute.firstChild();
    return first == attribute.lastChild() && !first.isElement() && !first.hasChildNodes();
}

/// Whether a tree has at most `most` levels. The tree consists of `above` levels and, below these, the
/// subtree of `root`.
bool staysWithin(const QDomNode& root, int above, int most, bool withAttributes)
{
    struct Step
    {
        qt::MovableNode node;
        int above;
    };
    QVarLengthArray<Step, 32> open; // few leaves are pushed, so 32 entries suffice for most subtrees
    open.push_back({QDomNode(root), above});
    while (!open.isEmpty()) {
        const Step step = std::move(open.last());
        open.removeLast();
        const int level = step.above + (step.node.isElement() || step.node.hasChildNodes() ? 1 : 0);
        if (level > most)
            return false;
        for (qt::MovableNode child = step.node.firstChild(); !child.isNull(); child = child.nextSibling())
            if (child.hasChildNodes() || withAttributes || level == most)
                open.push_back({child, level});
        const QDomNamedNodeMap attributes = withAttributes ? step.node.attributes() : QDomNamedNodeMap();
        for (int index = 0; index < attributes.length(); ++index) {
            qt::MovableNode attribute = attributes.item(index);
            if (!isPlainAttribute(attribute))
                open.push_back({std::move(attribute), level});
        }
    }
    return true;
}

/// Call this function before `child` is appended to an attribute or to a descendant of an attribute. Raises
/// `levelsInAttributes` if the attribute will have more levels than `levelsInAttributes` says.
/// \param path the number of levels from the topmost attribute down to the new parent, including both
void noteLevelsInAttribute(const QDomNode& child, int path)
{
    int known = levelsInAttributes;
    while (!staysWithin(child, path, known, true)) {
        const int more = 2 * known + 4;
        if (levelsInAttributes.compare_exchange_strong(known, more))
            known = more;
    }
}

} // namespace

Refusal refusalBelow(const QDomNode& parent, const QDomNode& child)
{
    int above = 0;
    int inAttribute = 0; // levels from the topmost attribute down to `parent`; 0 if there is no attribute
    for (qt::MovableNode node{QDomNode(parent)}; !node.isNull() && !node.isDocument();
         node = node.parentNode()) {
        if (node == child)
            return Refusal::Ring;
        ++above;
        if (node.isAttr())
            inAttribute = above;
    }
    const int reserved = levelsInAttributes;
    if (!staysWithin(child, above, limits::kMaxElementDepth - reserved, false) &&
        (reserved == 0 || !staysWithin(child, above, limits::kMaxElementDepth, true)))
        return Refusal::TooDeep;
    if (inAttribute > 0)
        noteLevelsInAttribute(child, inAttribute);
    return Refusal::None;
}

bool isNoDeeperThan(const QDomNode& root, int depth)
{
    return staysWithin(root, 0, depth - 1, false);
}

} // namespace kelxml::trees
