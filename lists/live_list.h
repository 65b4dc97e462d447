// Live lists of nodes. Our lists read their nodes from the tree itself, because Qt's lists keep pointers to
// freed nodes.
//
// After every change of a document, Qt re-reads its lists from the start. So a loop over one of Qt's lists
// takes quadratic time if each step sets an attribute. Our lists cache their nodes, except for short lists of
// children. A list drops its cache only when nodes of the list are inserted or removed.

#pragma once

#include "qt/movable_node.h"

#include <QtXml/QDomDocument>
#include <vector>

namespace kelxml::lists
{

/// What a list contains: the children of `node`, or the descendant elements of `node` whose tag name is
/// `tagName`.
struct ListOrigin
{
    qt::MovableNode node;
    QString tagName; ///< null for a list of children
};

/// Creates one of Qt's own lists. A COM node list object contains such a list only because other binaries
/// rely on the layout of the object. The library never reads nodes from Qt's list.
QDomNodeList makeQtList(const ListOrigin& origin);

class LiveList
{
public:
    explicit LiveList(ListOrigin&& origin) noexcept : m_origin(std::move(origin)) {}
    ~LiveList();
    LiveList(const LiveList&) = delete;
    LiveList& operator=(const LiveList&) = delete;

    std::size_t length();
    /// Returns null if `index` is beyond the end of the list.
    qt::MovableNode item(std::size_t index);
    /// Releases the cached nodes. After that, the only node that the list keeps alive is `ListOrigin::node`.
    void dropCache();

private:
    bool isByTagName() const { return !m_origin.tagName.isNull(); }
    const std::vector<qt::MovableNode>& read(std::size_t count);
    qt::MovableNode nextNode() const;

    ListOrigin m_origin;
    std::vector<qt::MovableNode> m_nodes; ///< the cached nodes, from the start of the list
    bool m_isComplete = false;            ///< all nodes of the list are cached
    bool m_isCached = false;              ///< `m_nodes` is valid, and `invalidate` can find this list
};

/// Call this function before inserting `node` below `parent`, and before removing `node` from `parent`. Drops
/// the caches of all lists that the change affects.
void invalidate(const QDomNode& node, const QDomNode& parent);
/// Call this function before replacing the top-level nodes of `document`. Drops the caches of the lists whose
/// `ListOrigin::node` is `document`.
void invalidateContent(const QDomDocument& document);
/// Whether any list has cached nodes. If not, there is nothing to invalidate.
bool isAnyCached() noexcept;

} // namespace kelxml::lists
