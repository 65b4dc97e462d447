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

/// Which nodes a list shows.
struct Selection;
/// Which nodes a loop has moved.
struct MovedNodes;

/// A walk over the nodes of a selection.
class KEL_EXPORT Walk
{
public:
    /// At the end.
    Walk() = default;
    /// At the first node.
    /// \param selection may be null
    /// \param current receives it, or null
    Walk(std::shared_ptr<const Selection> selection, Node& current);
    /// Goes to the next node. \param current the node reached last, or the value that the loop has assigned
    /// to it. Receives the next node, or null.
    void next(Node& current);

private:
    void reach(Node&& found, Node& current);

    std::shared_ptr<const Selection> m_selection;
    std::shared_ptr<MovedNodes> m_moved;
    Node m_parent;                  ///< of the current node when it was reached
    Node m_after;                   ///< its next sibling then
    const void* m_before = nullptr; ///< its previous sibling then; only compared
};

/// How many nodes are selected. \param selection may be null
KEL_EXPORT std::size_t count(const std::shared_ptr<const Selection>& selection);
/// Whether any node is selected. \param selection may be null
KEL_EXPORT bool hasAny(const std::shared_ptr<const Selection>& selection);

} // namespace detail

/// A live list: it shows the tree as it is at each step. The loop may change, move or remove the node that it
/// has reached, and may append nodes, which it then reaches too. After moving or removing the node, it
/// continues with the node's former next sibling, and ends after the last one. A node that moves within the
/// list is not reached again; its descendants are, if it moved to a later place. If the loop moves or removes
/// the node and the one after it, or earlier nodes, it can end early. `Item` is `Element` or `Node`.
template <class Item>
class List
{
public:
    /// A place in the list.
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

        /// The end.
        Iterator() = default;
        /// The first node.
        explicit Iterator(const std::shared_ptr<const detail::Selection>& selection)
            : m_walk(selection, m_item)
        {}
        /// The node.
        /// @{
        reference operator*() const noexcept { return m_item; }
        pointer operator->() const noexcept { return &m_item; }
        /// @}
        /// Goes to the next node.
        Iterator& operator++()
        {
            m_walk.next(m_item);
            return *this;
        }
        /// Goes to the next node. \return the earlier place
        Iterator operator++(int)
        {
            Iterator earlier = *this;
            ++*this;
            return earlier;
        }
        /// Compares places: equal at the same node, and at the end.
        /// @{
        bool operator==(const Iterator& other) const noexcept { return m_item == other.m_item; }
        bool operator!=(const Iterator& other) const noexcept { return !(*this == other); }
        /// @}

    private:
        mutable Item m_item; // a loop variable of type `auto&` can be changed
        detail::Walk m_walk;
    };

    /// For the library itself. \param selection null for an empty list
    explicit List(std::shared_ptr<const detail::Selection> selection) : m_selection(std::move(selection)) {}

    /// The first node.
    Iterator begin() const { return Iterator(m_selection); }
    /// The end.
    Iterator end() const { return {}; }
    /// The number of nodes. Counts them, in time proportional to the length of the list; for `descendants`,
    /// to the size of the tree.
    std::size_t size() const { return detail::count(m_selection); }
    /// \return whether there are no nodes
    bool empty() const { return !detail::hasAny(m_selection); }

private:
    std::shared_ptr<const detail::Selection> m_selection;
};

} // namespace kel
