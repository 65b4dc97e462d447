// Live lists of nodes, read from the tree itself: Qt's own remember raw nodes, which may be freed.
//
// Qt reads a list from the start after every change of its document, so a loop over a long list that sets an
// attribute at each step takes time with the square of its length. A long list here keeps its nodes until a
// change concerns them.

#pragma once

#include "qt/movable_node.h"

#include <QtXml/QDomDocument>
#include <vector>

namespace kelxml::lists
{

/// What a list shows: the children of a node, or the elements below it that have a name.
struct ListOrigin
{
    qt::MovableNode node;
    QString tagName; ///< null for the children
};

/// The list as Qt makes it, for the objects that have one as a member: other binaries rely on its place
/// there.
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
    /// Drops the nodes that are kept, so that a list keeps alive only its origin.
    void forget();

private:
    bool isByTagName() const { return !m_origin.tagName.isNull(); }
    const std::vector<qt::MovableNode>& read(std::size_t count);
    qt::MovableNode nextNode() const;

    ListOrigin m_origin;
    std::vector<qt::MovableNode> m_nodes; ///< the first ones
    bool m_isComplete = false;
    bool m_isKept = false; ///< whether changes are noted for it
};

/// To be called before `node` is put below `parent`, and before it is removed from there: makes the lists
/// forget their nodes that this concerns.
void noteChild(const QDomNode& node, const QDomNode& parent);
/// To be called before the top-level nodes of a document are replaced.
void noteReplacedContent(const QDomDocument& document);
/// Whether any list keeps nodes. If not, changes need not be noted.
bool areNodesKept() noexcept;

} // namespace kelxml::lists
