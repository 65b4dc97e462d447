// Measures subtrees, and remembers the heights of those measured last, so that building a tree from its
// leaves upwards or moving a large one about does not measure it again at every step.

#include "dom/tree_depth.h"

#include "dom/handle.h"

#include <QtCore/QVarLengthArray>
#include <QtXml/QDomElement>
#include <QtXml/QDomNamedNodeMap>

#include <algorithm>
#include <array>
#include <atomic>
#include <optional>
#include <utility>

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

/// Calls `visit` for a node and for all that it stands in, up to a document, as long as the answer is true.
template <class Visit>
bool allUpwards(const QDomNode& from, Visit visit)
{
    Handle above;
    for (const QDomNode* node = &from; !node->isNull() && !node->isDocument(); node = &above) {
        if (!visit(*node))
            return false;
        above = node->parentNode();
    }
    return true;
}

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

    const Extent* find(const QDomNode& node) const
    {
        const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& entry) {
            return entry.node == Handle::identityOf(node);
        });
        return found == m_entries.end() ? nullptr : &found->extent;
    }

    void remember(const QDomNode& node, Extent extent)
    {
        if (find(node))
            return raise(node, extent);
        m_entries[m_next] = {Handle::identityOf(node), larger(extent, {1, 1})};
        m_next = (m_next + 1) % m_entries.size();
    }

    /// To be called when a subtree of that height comes to stand below `parent`.
    void raiseUpwards(const QDomNode& parent, Extent height)
    {
        allUpwards(parent, [&](const QDomNode& node) {
            height = height + extentOfOne(node);
            raise(node, height);
            return true;
        });
    }

private:
    void raise(const QDomNode& node, Extent extent)
    {
        for (Entry& entry : m_entries)
            if (entry.node == Handle::identityOf(node))
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

bool mayHoldTreesInAttributes(const QDomNode& node)
{
    return attributesHoldTrees.load(std::memory_order_relaxed) && node.isElement();
}

bool isLeaf(const QDomNode& node)
{
    return !node.hasChildNodes() && !mayHoldTreesInAttributes(node);
}

/// A node to be measured with the siblings after it, and the rows that they stand at the end of.
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

/// The height of a node with no child or just one without children, as most nodes are. Too cheap to remember.
std::optional<Extent> heightAtAGlance(const QDomNode& node)
{
    if (isLeaf(node))
        return extentOfOne(node);
    const QDomNode first = node.firstChild();
    if (mayHoldTreesInAttributes(node) || !isLeaf(first) || !first.nextSibling().isNull())
        return std::nullopt;
    return extentOfOne(node) + extentOfOne(first);
}

/// The height of a subtree, as it is or, where that fits below `above`, an upper bound.
Extent heightBelow(Extent above, const QDomNode& node, const HeightMemo& memo)
{
    const Extent* const bound = memo.find(node);
    return bound && isWithinLimits(above + *bound) ? *bound : measure(node);
}

} // namespace

bool fitsBelow(const QDomNode& parent, const QDomNode& child)
{
    HeightMemo& memo = HeightMemo::ofThisThread();
    Extent above;
    bool belowAttribute = false;
    bool isRemembered = false;
    const bool isOutside = allUpwards(parent, [&](const QDomNode& node) {
        above = above + extentOfOne(node);
        belowAttribute = belowAttribute || node.isAttr();
        isRemembered = isRemembered || memo.find(node);
        return node != child;
    });
    if (!isOutside)
        return false;

    const std::optional<Extent> glance = heightAtAGlance(child);
    const Extent height = glance ? *glance : heightBelow(above, child, memo);
    if (!isWithinLimits(above + height))
        return false;

    if (belowAttribute)
        attributesHoldTrees.store(true, std::memory_order_relaxed);
    if (isRemembered)
        memo.raiseUpwards(parent, height);
    if (!glance)
        memo.remember(child, height);
    if (!glance && isLeaf(parent))
        memo.remember(parent, extentOfOne(parent) + height);
    return true;
}

int depthOf(const QDomNode& root)
{
    return measure(root).nodes;
}

void HeightsForgotten::forget() noexcept
{
    HeightMemo::ofThisThread().forget();
}

} // namespace kelxml
