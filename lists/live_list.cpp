// A list that caches nodes is registered under the node whose children or descendants it lists. Before a node
// is inserted below a parent or removed from a parent, two groups of lists drop their caches:
// - each list of children that is registered under the parent
// - each list by tag name that is registered under the parent or one of its ancestors, if the subtree of the
//   inserted or removed node contains an element with that tag name
//
// Lists that are registered under other nodes do not slow down a change.

#include "lists/live_list.h"

#include "qt/local_name.h"

#include <array>
#include <atomic>
#include <limits>
#include <mutex>
#include <set>
#include <tuple>

namespace kelxml::lists
{

namespace
{

/// A list of children caches its nodes only if the list has at least `kMinCachedLength` nodes, or if a caller
/// asks for an index of at least `kMinCachedLength`. For a smaller index, `item` always walks from the first
/// child. A list by tag name always caches its nodes, because finding the elements of such a list scans all
/// descendants of a node.
constexpr std::size_t kMinCachedLength = 8;

/// An entry of the registry of lists: the address of the node whose children or descendants are listed,
/// whether the list is by tag name, the tag name, and the list itself. The registry is sorted, so the entries
/// of one node are next to each other.
using Entry = std::tuple<std::uintptr_t, bool, QString, LiveList*>;

/// One part of the registry. The registry is divided into parts so that threads seldom wait for each other. A
/// shard may contain lists of several threads. A thread looks only for lists of its own documents, and no
/// other thread uses those lists. So the thread needs no lock to use a list that it found.
struct Shard
{
    std::mutex lock;
    std::set<Entry> lists;
};

std::atomic<int> cachedCount{0};

std::uintptr_t addressOf(const QDomNode& node)
{
    return reinterpret_cast<std::uintptr_t>(qt::MovableNode::identityOf(node));
}

Shard& shardOf(std::uintptr_t address)
{
    // Never destroyed, because static objects may own lists and unregister them when the process exits.
    static auto& shards = *new std::array<Shard, 256>;
    // The multiplication spreads addresses that are close together. The lower half of the product is not
    // used, because its low bits vary least.
    constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15;
    return shards[(address * kOdd >> 32) % shards.size()];
}

/// Returns up to `most` registered lists of `node`.
/// \param areByTagName true to get lists by tag name, false to get lists of children
/// \param tagName if not null, only lists for this name are returned
std::vector<LiveList*> listsOf(const QDomNode& node, bool areByTagName, const QString& tagName = {},
                               std::size_t most = std::numeric_limits<std::size_t>::max())
{
    std::vector<LiveList*> found;
    const std::uintptr_t address = addressOf(node);
    if (address == 0) // lists of null nodes are always empty, and may belong to other threads
        return found;
    Shard& shard = shardOf(address);
    const std::lock_guard guard(shard.lock);
    for (auto at = shard.lists.lower_bound({address, areByTagName, tagName, nullptr});
         at != shard.lists.end() && found.size() < most; ++at) {
        const auto& [listAddress, isByTagName, name, list] = *at;
        if (listAddress != address || isByTagName != areByTagName || (!tagName.isNull() && name != tagName))
            break;
        found.push_back(list);
    }
    return found;
}

void dropCaches(const std::vector<LiveList*>& lists)
{
    for (LiveList* const list : lists)
        list->dropCache();
}

/// Returns the next element after `node` in document order within the subtree of `root`; null if there is
/// none.
qt::MovableNode nextElement(const QDomNode& node, const QDomNode& root)
{
    qt::MovableNode next{QDomNode(node)};
    do {
        qt::MovableNode at = std::move(next);
        next = at.firstChild();
        for (; next.isNull() && at != root; at = at.parentNode())
            next = at.nextSibling();
    } while (!next.isNull() && !next.isElement());
    return next;
}

} // namespace

QDomNodeList makeQtList(const ListOrigin& origin)
{
    if (origin.tagName.isNull())
        return origin.node.childNodes();
    if (origin.node.isDocument())
        return origin.node.toDocument().elementsByTagName(origin.tagName);
    return origin.node.toElement().elementsByTagName(origin.tagName);
}

LiveList::~LiveList()
{
    dropCache();
}

std::size_t LiveList::length()
{
    if (!isByTagName() && !m_isCached) {
        std::size_t length = 0;
        for (qt::MovableNode child = m_origin.node.firstChild(); !child.isNull() && length < kMinCachedLength;
             ++length)
            child = child.nextSibling();
        if (length < kMinCachedLength)
            return length;
    }
    return read(std::numeric_limits<std::size_t>::max()).size();
}

qt::MovableNode LiveList::item(std::size_t index)
{
    if (!isByTagName() && index < kMinCachedLength) {
        qt::MovableNode child = m_origin.node.firstChild();
        for (; index > 0 && !child.isNull(); --index)
            child = child.nextSibling();
        return child;
    }
    const std::vector<qt::MovableNode>& nodes = read(index + 1);
    return index < nodes.size() ? nodes[index] : qt::MovableNode();
}

void LiveList::dropCache()
{
    if (!m_isCached)
        return;
    m_isCached = m_isComplete = false;
    m_nodes.clear();
    --cachedCount;
    const std::uintptr_t address = addressOf(m_origin.node);
    Shard& shard = shardOf(address);
    const std::lock_guard guard(shard.lock);
    shard.lists.erase({address, isByTagName(), m_origin.tagName, this});
}

/// Caches at least the first `count` nodes; all nodes if the list is shorter. \return all cached nodes
const std::vector<qt::MovableNode>& LiveList::read(std::size_t count)
{
    if (!m_isCached) {
        const std::uintptr_t address = addressOf(m_origin.node);
        Shard& shard = shardOf(address);
        const std::lock_guard guard(shard.lock);
        shard.lists.emplace(address, isByTagName(), m_origin.tagName, this);
        m_isCached = true;
        ++cachedCount;
    }
    while (!m_isComplete && m_nodes.size() < count) {
        qt::MovableNode next = nextNode();
        m_isComplete = next.isNull();
        if (!m_isComplete)
            m_nodes.push_back(std::move(next));
    }
    return m_nodes;
}

qt::MovableNode LiveList::nextNode() const
{
    const qt::MovableNode& last = m_nodes.empty() ? m_origin.node : m_nodes.back();
    if (!isByTagName())
        return m_nodes.empty() ? last.firstChild() : last.nextSibling();
    qt::MovableNode element = nextElement(last, m_origin.node);
    while (!element.isNull() && qt::localNameOf(element) != m_origin.tagName)
        element = nextElement(element, m_origin.node);
    return element;
}

void invalidate(const QDomNode& node, const QDomNode& parent)
{
    if (!isAnyCached())
        return;
    dropCaches(listsOf(parent, false));
    qt::MovableNode element{QDomNode(node)};
    if (!element.isElement())
        element = nextElement(element, node);
    std::vector<qt::MovableNode> listedAncestors; // the ancestors with cached lists by tag name
    for (qt::MovableNode ancestor{QDomNode(parent)}; !element.isNull() && !ancestor.isNull();
         ancestor = ancestor.parentNode())
        if (!listsOf(ancestor, true, {}, 1).empty())
            listedAncestors.push_back(ancestor);
    for (; !element.isNull() && !listedAncestors.empty(); element = nextElement(element, node))
        for (const qt::MovableNode& ancestor : listedAncestors)
            dropCaches(listsOf(ancestor, true, qt::localNameOf(element)));
}

void invalidateContent(const QDomDocument& document)
{
    dropCaches(listsOf(document, false));
    dropCaches(listsOf(document, true));
}

bool isAnyCached() noexcept
{
    return cachedCount != 0;
}

} // namespace kelxml::lists
