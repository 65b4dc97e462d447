// Measures the appended subtree together with the depth of its new parent. A level is an element or any node
// with children. The limits leave room for leaves, and for attributes whose only child is their text.

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

/// An upper bound on the levels ever appended below an attribute. Attributes are measured only if that many
/// more levels would make the tree too deep, because Qt needs quadratic time to list them.
std::atomic<int> levelsInAttributes{0};

bool isPlainAttribute(const QDomNode& attribute)
{
    const QDomNode first = attribute.firstChild();
    return first == attribute.lastChild() && !first.isElement() && !first.hasChildNodes();
}

/// Whether every path from `root` down has at most `most` levels, including the `above` levels over `root`.
bool staysWithin(const QDomNode& root, int above, int most, bool withAttributes)
{
    struct Step
    {
        qt::MovableNode node;
        int above;
    };
    QVarLengthArray<Step, 32> open; // holds no leaves; most subtrees have few other nodes
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

/// \param path levels from an attribute down to where `child` is appended
void noteInAttribute(const QDomNode& child, int path)
{
    int known = levelsInAttributes;
    while (!staysWithin(child, path, known, true)) {
        const int more = 2 * known + 4;
        if (levelsInAttributes.compare_exchange_strong(known, more))
            known = more;
    }
}

} // namespace

bool fitsBelow(const QDomNode& parent, const QDomNode& child)
{
    int above = 0;
    int inAttribute = 0; // the part of `above` from the topmost attribute down
    for (qt::MovableNode node{QDomNode(parent)}; !node.isNull() && !node.isDocument();
         node = node.parentNode()) {
        if (node == child)
            return false;
        ++above;
        if (node.isAttr())
            inAttribute = above;
    }
    const int reserved = levelsInAttributes;
    if (!staysWithin(child, above, limits::kMaxElementDepth - reserved, false) &&
        (reserved == 0 || !staysWithin(child, above, limits::kMaxElementDepth, true)))
        return false;
    if (inAttribute > 0)
        noteInAttribute(child, inAttribute);
    return true;
}

bool isNoDeeperThan(const QDomNode& root, int depth)
{
    return staysWithin(root, 0, depth - 1, false);
}

} // namespace kelxml::trees
