/// \file
/// Lists of nodes for range-for. Included by KelXmlLib/kel.h.

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
/// Records which nodes a loop has moved.
struct MovedNodes;

/// Visits the nodes of a selection, one after the other.
class KEL_EXPORT Walk
{
public:
    /// Creates a walk that has ended.
    Walk() = default;
    /// Starts a walk.
    /// \param selection may be null
    /// \param current receives the first node, or null
    Walk(std::shared_ptr<const Selection> selection, Node& current);
    /// Moves to the next node.
    /// \param current the current node, or a node that the body of the loop has assigned to the loop
    ///        variable; receives the next node, or null
    void next(Node& current);

private:
    void reach(Node&& found, Node& current);

    std::shared_ptr<const Selection> m_selection;
    std::shared_ptr<MovedNodes> m_moved;
    // The neighbours of the current node, as they were when the walk reached it.
    Node m_parent;                  ///< the parent
    Node m_after;                   ///< the next sibling
    const void* m_before = nullptr; ///< the address of the previous sibling; may be stale, only compared
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
/// - A loop may change, move or remove the current node. After moving or removing it, the loop continues with
///   the sibling that followed it. If it was the last sibling, a loop over children ends, and a loop over
///   descendants continues after the former parent.
/// - A loop may append nodes. It reaches them too.
/// - A loop that moves a node does not visit this node again. If the node's new place is later in the list,
///   the loop visits the node's descendants there, even if it has visited them before.
/// - A loop can end early in two cases: if it moves or removes the current node together with the next
///   sibling, and if it moves or removes an ancestor of the current node.
template <class Item>
class List
{
public:
    /// A position in a loop over the list.
    class Iterator
    {
    public:
        /// The types that the standard library requires.
        /// @{
        using value_type = Item;
        using difference_type = std::ptrdiff_t;
        using reference = Item&;
        using pointer = Item*;
        using iterator_category = std::input_iterator_tag;
        /// @}

        /// Creates the end iterator.
        Iterator() = default;
        /// Creates an iterator at the first node.
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
        /// Advances to the next node. \return a copy of the iterator from before the call
        Iterator operator++(int)
        {
            Iterator earlier = *this;
            ++*this;
            return earlier;
        }
        /// Compares two iterators. They are equal if both are at the same node, or both at the end.
        /// @{
        bool operator==(const Iterator& other) const noexcept { return m_item == other.m_item; }
        bool operator!=(const Iterator& other) const noexcept { return !(*this == other); }
        /// @}

    private:
        mutable Item m_item; // so that a loop with `auto&` can change the node
        detail::Walk m_walk;
    };

    /// For internal use. \param selection null for an empty list
    explicit List(std::shared_ptr<const detail::Selection> selection) : m_selection(std::move(selection)) {}

    /// Starts a loop.
    Iterator begin() const { return Iterator(m_selection); }
    /// Returns the end iterator.
    Iterator end() const { return {}; }
    /// Counts the nodes. This takes time proportional to the number of children. For `descendants`, it takes
    /// time proportional to the size of the tree.
    std::size_t size() const { return detail::count(m_selection); }
    /// \return whether there are no nodes
    bool empty() const { return !detail::hasAny(m_selection); }

private:
    std::shared_ptr<const detail::Selection> m_selection;
};

} // namespace kel
