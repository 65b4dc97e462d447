// A live list of nodes that a loop can read while it changes the tree.
//
// Qt makes a list anew after every change of its document: a loop over a long list that sets an attribute at
// each step takes time with the square of its length. A long list here keeps its nodes, and is made anew only
// after a change that can concern it.

#pragma once

#include "guards/handle.h"
#include "guards/list_changes.h"
#include "guards/node_ref.h"

#include <limits>
#include <memory>
#include <vector>

namespace kelxml::guards
{

/// What a list shows: the children of a node, or the elements below it that have a name.
struct ListOrigin
{
    Handle node;
    QString tagName; ///< null for the children
};

/// The list as Qt makes it.
QDomNodeList makeList(const ListOrigin& origin, const DocumentRef& document);

/// Reads a list of Qt's, which is a member of the object because other binaries rely on its place there. It
/// is made anew where Qt would be wrong about it: where its node has come into another document (see
/// `documentChanges`), and where memory ran out in the last reading.
class LiveList
{
public:
    /// To be made right after its list.
    explicit LiveList(ListOrigin&& origin);

    int length(QDomNodeList& list, const DocumentRef& document);
    /// Null beyond the end.
    QDomNode item(int index, QDomNodeList& list, const DocumentRef& document);

private:
    /// The nodes of a long list, and what they go by.
    struct Kept
    {
        ListWatch watch;
        std::uint64_t changes; ///< see `changesNow`
        std::vector<QDomNode> nodes;
    };

    bool isByTagName() const { return !m_origin.tagName.isNull(); }
    /// From how many nodes on they are kept. To find elements costs the document, however few they are.
    int keptFrom() const { return isByTagName() ? 4 : 32; }
    template <class Read>
    auto read(QDomNodeList& list, const DocumentRef& document, Read read);
    std::uint64_t changesNow() const;
    bool isKept() const;
    void keep(int length, const QDomNodeList& list);

    /// No count of changes: a list made at it is made anew.
    static constexpr std::uint64_t kNeverMade = std::numeric_limits<std::uint64_t>::max();

    ListOrigin m_origin;
    std::uint64_t m_madeAt;
    /// An index from here on may mean a long list: its length is asked first. Of children most have few.
    int m_firstUnsure = isByTagName() ? 0 : 2;
    std::unique_ptr<const Kept> m_kept; ///< null, or of a long list
};

} // namespace kelxml::guards
