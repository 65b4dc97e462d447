// Lists with cached nodes are registered by their origin. A change looks up its parent node and, if elements
// are inserted or removed, the nodes above. Lists of other nodes cost it nothing.

#include "lists/live_list.h"

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

/// Minimum length at which children are cached; shorter lists are counted from the first child. Elements
/// found by name are always cached, because a search scans the document.
constexpr std::size_t kCachedFrom = 8;

/// The node's address, whether the list is by name, the name, the list. Sorting keeps the lists of one node
/// next to each other.
using Entry = std::tuple<std::uintptr_t, bool, QString, LiveList*>;

/// A part of the registry. All threads share it; each accesses only the lists of its own documents.
struct Shelf
{
    std::mutex lock;
    std::set<Entry> lists;
};

std::atomic<int> cachedCount{0};

std::uintptr_t addressOf(const QDomNode& node)
{
    return reinterpret_cast<std::uintptr_t>(qt::MovableNode::identityOf(node));
}

Shelf& shelfOf(std::uintptr_t address)
{
    static auto& shelves = *new std::array<Shelf, 256>; // never destroyed: static objects may own lists
    // The multiplication spreads addresses that are close together; its high bits are mixed best.
    constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15;
    return shelves[(address * kOdd >> 32) % shelves.size()];
}

/// Returns up to `most` cached lists: those of the children of `node`, or those of the elements below it. Of
/// the latter, only those for `tagName`, unless it is null.
std::vector<LiveList*> listsOf(const QDomNode& node, bool areByTagName, const QString& tagName = {},
                               std::size_t most = std::numeric_limits<std::size_t>::max())
{
    std::vector<LiveList*> found;
    const std::uintptr_t address = addressOf(node);
    if (address == 0) // null nodes of all threads share it; their lists are empty and never change
        return found;
    Shelf& shelf = shelfOf(address);
    const std::lock_guard guard(shelf.lock);
    for (auto at = shelf.lists.lower_bound({address, areByTagName, tagName, nullptr});
         at != shelf.lists.end() && found.size() < most; ++at) {
        const auto& [otherAddress, isByTagName, name, list] = *at;
        if (otherAddress != address || isByTagName != areByTagName || (!tagName.isNull() && name != tagName))
            break;
        found.push_back(list);
    }
    return found;
}

void dropAll(const std::vector<LiveList*>& lists)
{
    for (LiveList* const list : lists)
        list->dropCache();
}

/// The next element in the subtree of `root`, in document order; null at the end.
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

/// The name by which Qt finds an element.
QString listedName(const QDomNode& element)
{
    const QString local = element.localName(); // null for an element of a document read without namespaces
    return local.isNull() ? element.nodeName() : local;
}

} // namespace

QDomNodeList makeList(const ListOrigin& origin)
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
        for (qt::MovableNode child = m_origin.node.firstChild(); !child.isNull() && length < kCachedFrom;
             ++length)
            child = child.nextSibling();
        if (length < kCachedFrom)
            return length;
    }
    return read(std::numeric_limits<std::size_t>::max()).size();
}

qt::MovableNode LiveList::item(std::size_t index)
{
    if (!isByTagName() && index < kCachedFrom) {
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
    Shelf& shelf = shelfOf(address);
    const std::lock_guard guard(shelf.lock);
    shelf.lists.erase({address, isByTagName(), m_origin.tagName, this});
}

/// \return the first nodes: at least `count`, or all if there are fewer
const std::vector<qt::MovableNode>& LiveList::read(std::size_t count)
{
    if (!m_isCached) {
        const std::uintptr_t address = addressOf(m_origin.node);
        Shelf& shelf = shelfOf(address);
        const std::lock_guard guard(shelf.lock);
        shelf.lists.emplace(address, isByTagName(), m_origin.tagName, this);
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
    while (!element.isNull() && listedName(element) != m_origin.tagName)
        element = nextElement(element, m_origin.node);
    return element;
}

void invalidate(const QDomNode& node, const QDomNode& parent)
{
    if (!isAnyCached())
        return;
    dropAll(listsOf(parent, false));
    qt::MovableNode element{QDomNode(node)};
    if (!element.isElement())
        element = nextElement(element, node);
    std::vector<qt::MovableNode> searched; // the ancestors that have cached lists by name
    for (qt::MovableNode above{QDomNode(parent)}; !element.isNull() && !above.isNull();
         above = above.parentNode())
        if (!listsOf(above, true, {}, 1).empty())
            searched.push_back(above);
    for (; !element.isNull() && !searched.empty(); element = nextElement(element, node))
        for (const qt::MovableNode& above : searched)
            dropAll(listsOf(above, true, listedName(element)));
}

void invalidateContent(const QDomDocument& document)
{
    dropAll(listsOf(document, false));
    dropAll(listsOf(document, true));
}

bool isAnyCached() noexcept
{
    return cachedCount != 0;
}

} // namespace kelxml::lists
