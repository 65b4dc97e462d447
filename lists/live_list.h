// Live lists of nodes, read from the tree itself, because Qt's lists keep pointers to freed nodes.
//
// After every change of a document, Qt reads its lists again from the start. So if a loop over a list sets an
// attribute at each step, it takes quadratic time. Our long lists cache their nodes, and only a change that
// inserts or removes nodes of the list drops the cache.

#pragma once

#include "qt/movable_node.h"

#include <QtXml/QDomDocument>
#include <vector>

namespace kelxml::lists
{

/// What a list contains: the children of `node`, or its descendant elements with a tag name.
struct ListOrigin
{
    qt::MovableNode node;
    QString tagName; ///< null for a list of children
};

/// Creates Qt's own list. A node list object contains one only because other binaries rely on the layout of
/// the object. The library never reads nodes from it.
QDomNodeList makeQtList(const ListOrigin& origin);

class LiveList
{
public:
    explicit LiveList(ListOrigin&& origin) noexcept : m_origin(std::move(origin)) {}
    ~LiveList();
    LiveList(const LiveList&) = delete;
    LiveList& operator=(const LiveList&) = delete;

    std::size_t length();
    /// Returns null if `index` is beyond the end.
    qt::MovableNode item(std::size_t index);
    /// Releases the cached nodes. The list then keeps only the node of its origin alive.
    void dropCache();

private:
    bool isByTagName() const { return !m_origin.tagName.isNull(); }
    const std::vector<qt::MovableNode>& read(std::size_t count);
    qt::MovableNode nextNode() const;

    ListOrigin m_origin;
    std::vector<qt::MovableNode> m_nodes; ///< the cached nodes, from the start of the list
    bool m_isComplete = false;            ///< all nodes of the list are cached
    bool m_isCached = false;              ///< the list is registered, and `m_nodes` is valid
};

/// Call this before inserting `node` below `parent`, and before removing it from `parent`. Drops the caches
/// of all lists that the change affects.
void invalidate(const QDomNode& node, const QDomNode& parent);
/// Call this before replacing the top-level nodes of `document`. Drops the caches of the lists of `document`.
void invalidateContent(const QDomDocument& document);
/// Whether any list has cached nodes. If not, there is nothing to invalidate.
bool isAnyCached() noexcept;

} // namespace kelxml::lists
