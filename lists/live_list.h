// Live lists of nodes, read from the tree itself, because Qt's lists keep pointers to freed nodes.
//
// Qt reads a list from the start after every change of its document. A loop over a long list that sets an
// attribute at each step then takes time with the square of its length. A long list here caches its nodes
// until a change concerns them.

#pragma once

#include "qt/movable_node.h"

#include <QtXml/QDomDocument>
#include <vector>

namespace kelxml::lists
{

/// What a list contains: the children of a node, or the elements below it with a tag name.
struct ListOrigin
{
    qt::MovableNode node;
    QString tagName; ///< null for the children
};

/// Qt's list. Used only for a member of our objects whose position other binaries rely on.
QDomNodeList makeList(const ListOrigin& origin);

class LiveList
{
public:
    explicit LiveList(ListOrigin&& origin) noexcept : m_origin(std::move(origin)) {}
    ~LiveList();
    LiveList(const LiveList&) = delete;
    LiveList& operator=(const LiveList&) = delete;

    std::size_t length();
    /// Null beyond the end.
    qt::MovableNode item(std::size_t index);
    /// Releases the cached nodes. The list then keeps only its origin alive.
    void dropCache();

private:
    bool isByTagName() const { return !m_origin.tagName.isNull(); }
    const std::vector<qt::MovableNode>& read(std::size_t count);
    qt::MovableNode nextNode() const;

    ListOrigin m_origin;
    std::vector<qt::MovableNode> m_nodes; ///< cached: the first ones of the list
    bool m_isComplete = false;
    bool m_isCached = false; ///< whether changes invalidate it
};

/// Invalidates the caches of the lists that contain, or will contain, nodes of the subtree `node`. To be
/// called before `node` is inserted below `parent` or removed from there.
void invalidate(const QDomNode& node, const QDomNode& parent);
/// Invalidates the lists of a document. To be called before its top-level nodes are replaced.
void invalidateContent(const QDomDocument& document);
/// Whether any list has cached nodes. If not, there is nothing to invalidate.
bool isAnyCached() noexcept;

} // namespace kelxml::lists
