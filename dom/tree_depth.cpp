// Measures subtrees, and remembers the heights of those measured last, so that building a tree from its
// leaves upwards or moving a large one about does not measure it again at every step.

#include "dom/tree_depth.h"

#include <QtCore/QVarLengthArray>
#include <QtXml/QDomElement>
#include <QtXml/QDomNamedNodeMap>

#include <algorithm>
#include <array>
#include <atomic>

namespace kelxml
{

namespace
{

/// The longest rows from a node down, the node included.
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

/// Which node a handle stands for, for comparing; never followed.
struct Identity : QDomNode
{
    static const void* of(const QDomNode& node) { return node.*(&Identity::impl); }
};

/// Upper bounds for the heights of a few nodes. The nodes are not held: a leaf that comes to be at the
/// address of a node that is gone is lower than what stands here, and whatever makes taller ones calls
/// `forget`. One for each thread, valid while no other thread has changed a tree since.
class HeightMemo
{
public:
    static HeightMemo& ofThisThread()
    {
        static thread_local HeightMemo memo;
        if (lastUser.load(std::memory_order_acquire) != &memo) {
            memo.forget();
            lastUser.store(&memo, std::memory_order_release);
        }
        return memo;
    }

    void forget() noexcept
    {
        m_entries = {};
        m_next = 0;
    }

    bool isEmpty() const noexcept { return !m_entries.front().node; }

    const Extent* find(const QDomNode& node) const
    {
        const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                        [&](const Entry& entry) { return entry.node == Identity::of(node); });
        return found == m_entries.end() ? nullptr : &found->extent;
    }

    void remember(const QDomNode& node, Extent extent)
    {
        if (find(node))
            return raise(node, extent);
        m_entries[m_next] = {Identity::of(node), larger(extent, {1, 1})};
        m_next = (m_next + 1) % m_entries.size();
    }

    /// To be called when a subtree of that height comes to stand below `parent`.
    void raiseUpwards(const QDomNode& parent, Extent height)
    {
        for (QDomNode node = parent; !node.isNull() && !node.isDocument(); node = node.parentNode()) {
            height = height + extentOfOne(node);
            raise(node, height);
        }
    }

private:
    void raise(const QDomNode& node, Extent extent)
    {
        for (Entry& entry : m_entries)
            if (entry.node == Identity::of(node))
                entry.extent = larger(entry.extent, extent);
    }

    struct Entry
    {
        const void* node = nullptr;
        Extent extent;
    };

    static std::atomic<const HeightMemo*> lastUser;

    std::array<Entry, 4> m_entries;
    std::size_t m_next = 0;
};

std::atomic<const HeightMemo*> HeightMemo::lastUser{nullptr};

bool isLeaf(const QDomNode& node)
{
    return !node.hasChildNodes() &&
           !(attributesHoldTrees.load(std::memory_order_relaxed) && node.isElement());
}

struct Step
{
    QDomNode node;
    Extent above;
};

/// What is still to be measured. Of most subtrees that is so little that nothing is allocated.
using Steps = QVarLengthArray<Step, 32>;

/// The attributes that hold more than their text.
void addAttributes(const QDomNode& element, Extent above, Steps& open)
{
    const QDomNamedNodeMap attributes = element.attributes();
    for (int index = 0; index < attributes.length(); ++index) {
        const QDomNode attribute = attributes.item(index);
        const QDomNode first = attribute.firstChild();
        if (!first.isNull() && (!first.nextSibling().isNull() || first.isElement() || first.hasChildNodes()))
            open.push_back({attribute, above});
    }
}

Extent measure(const QDomNode& root)
{
    const bool lookAtAttributes = attributesHoldTrees.load(std::memory_order_relaxed);
    Extent longest;
    Steps open{{root, {}}};
    while (!open.isEmpty()) {
        const Step step = open.last();
        open.removeLast();
        const Extent here = step.above + extentOfOne(step.node);
        longest = larger(longest, here);
        for (QDomNode child = step.node.firstChild(); !child.isNull(); child = child.nextSibling())
            open.push_back({child, here});
        if (lookAtAttributes && step.node.isElement())
            addAttributes(step.node, here, open);
    }
    return longest;
}

bool isWithinLimits(Extent extent)
{
    return extent.elements <= kMaxElementDepth && extent.nodes <= kMaxNodeDepth;
}

/// The height of a subtree, as it is or, where that fits below `above`, an upper bound.
Extent heightBelow(Extent above, const QDomNode& node, const HeightMemo& memo)
{
    if (isLeaf(node))
        return extentOfOne(node);
    const Extent* const bound = memo.find(node);
    return bound && isWithinLimits(above + *bound) ? *bound : measure(node);
}

} // namespace

bool fitsBelow(const QDomNode& parent, const QDomNode& child)
{
    Extent above;
    bool belowAttribute = false;
    for (QDomNode node = parent; !node.isNull() && !node.isDocument(); node = node.parentNode()) {
        if (node == child)
            return false;
        above = above + extentOfOne(node);
        belowAttribute = belowAttribute || node.isAttr();
    }

    HeightMemo& memo = HeightMemo::ofThisThread();
    const Extent height = heightBelow(above, child, memo);
    if (!isWithinLimits(above + height))
        return false;

    if (belowAttribute)
        attributesHoldTrees.store(true, std::memory_order_relaxed);
    if (!isLeaf(child))
        memo.remember(child, height);
    if (!isLeaf(child) && isLeaf(parent))
        memo.remember(parent, extentOfOne(parent) + height);
    if (!memo.isEmpty())
        memo.raiseUpwards(parent, height);
    return true;
}

int depthOf(const QDomNode& root)
{
    return measure(root).nodes;
}

void forgetHeights() noexcept
{
    HeightMemo::ofThisThread().forget();
}

} // namespace kelxml
