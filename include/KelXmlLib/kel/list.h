/// \file
/// Lists of nodes for range-based `for` loops. KelXmlLib/kel.h includes this header.

#pragma once

#include "KelComWrapper/export.h"
#include "KelXmlLib/kel/node.h"

#include <cstddef>
#include <iterator>
#include <memory>
#include <utility>

namespace kel
{

namespace detail
{

/// Describes which nodes a list contains.
struct Selection;
/// Records which nodes the body of a loop has moved.
struct MovedNodes;

/// Visits the nodes of a selection one after the other. Every loop over a list uses a `Walk`.
class KEL_EXPORT Walk
{
public:
    /// Creates a walk that has ended.
    Walk() = default;
    /// Starts a walk.
    /// \param selection the nodes to visit; may be null
    /// \param current receives the first selected node; null if no node is selected
    Walk(std::shared_ptr<const Selection> selection, Node& current);
    /// Moves to the next node.
    /// \param current the loop variable. Before the call: the node that the walk reached last, unless the
    ///        body of the loop has assigned another node to the variable. After the call: the next node; null
    ///        at the end.
    void next(Node& current);

private:
    void reach(Node&& found, Node& current);

    std::shared_ptr<const Selection> m_selection;
    std::shared_ptr<MovedNodes> m_moved;
    // The neighbours that the current node had when the walk reached the current node.
    Node m_parent; ///< the parent
    Node m_after;  ///< the next sibling
    /// The address of the previous sibling, for comparison only: the sibling may no longer exist.
    const void* m_before = nullptr;
};

/// Counts the selected nodes. \param selection may be null
KEL_EXPORT std::size_t count(const std::shared_ptr<const Selection>& selection);
/// \param selection may be null
/// \return whether any node is selected
KEL_EXPORT bool hasAny(const std::shared_ptr<const Selection>& selection);

} // namespace detail

/// A live list of nodes: each step of a loop reads the tree as it is at that time. `Item` is `Element` or
/// `Node`.
///
/// - The body of a loop may change, move or remove the current node. If the body moves or removes the current
///   node, the loop continues with the sibling that followed this node when the loop reached it. If this node
///   was the last sibling at that time, a loop over children ends, and a loop over descendants continues with
///   the node that followed all descendants of the former parent.
/// - The body may append nodes. If the list includes the appended nodes, the loop visits them too, unless the
///   body moves or removes the current node and this node was the last sibling when the loop reached it.
/// - If the body moves the current node, the loop does not visit this node again, unless a later step moves
///   it again. If the node's new place is later in the list, a loop over descendants visits the node's
///   descendants there, including nodes that the loop visited before they were moved below the current node.
/// - A loop can end early or visit nodes again in two cases: if the body moves or removes both the current
///   node and its next sibling, or if the body moves or removes an ancestor of the current node.
template <class Item>
class List
{
public:
    /// A position in a loop over the list.
    class Iterator
    {
    public:
        /// The types that the standard library requires of an iterator.
        /// @{
        using value_type = Item;
        using difference_type = std::ptrdiff_t;
        using reference = Item&;
        using pointer = Item*;
        using iterator_category = std::input_iterator_tag;
        /// @}

        /// Creates the end iterator.
        Iterator() = default;
        /// Creates an iterator at the first node of the list.
        explicit Iterator(const std::shared_ptr<const detail::Selection>& selection)
            : m_walk(selection, m_item)
        {}
        /// Accesses the current node.
        /// @{
        reference operator*() const noexcept { return m_item; }
        pointer operator->() const noexcept { return &m_item; }
        /// @}
        /// Advances to the next node.
        Iterator& operator++()
        {
            m_walk.next(m_item);
            return *this;
        }
        /// Advances to the next node. \return a copy of the iterator as it was before the call
        Iterator operator++(int)
        {
            Iterator earlier = *this;
            ++*this;
            return earlier;
        }
        /// Compares two iterators. Two iterators are equal if both are at the same node, or if both are at
        /// the end.
        /// @{
        bool operator==(const Iterator& other) const noexcept { return m_item == other.m_item; }
        bool operator!=(const Iterator& other) const noexcept { return !(*this == other); }
        /// @}

    private:
        mutable Item m_item; // mutable, so that the body of a loop with `auto&` can change the item
        detail::Walk m_walk;
    };

    /// For use inside the library. \param selection the nodes of the list; null creates an empty list
    explicit List(std::shared_ptr<const detail::Selection> selection) : m_selection(std::move(selection)) {}

    /// Starts a loop over the list. \return an iterator at the first node
    Iterator begin() const { return Iterator(m_selection); }
    /// Returns the end iterator.
    Iterator end() const { return {}; }
    /// Counts the nodes of the list. For a list of children, counting takes time proportional to the number
    /// of all children. For a list of descendants, counting takes time proportional to the number of all
    /// descendants.
    std::size_t size() const { return detail::count(m_selection); }
    /// \return whether the list has no nodes
    bool empty() const { return !detail::hasAny(m_selection); }

private:
    std::shared_ptr<const detail::Selection> m_selection;
};

} // namespace kel
