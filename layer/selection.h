// Describes which nodes a list contains.

#pragma once

#include "layer/access.h"

#include <memory>

namespace kel::detail
{

struct Selection
{
    QString name; ///< the name to select; null selects every name
    bool elementsOnly = true;
    bool deep = false; ///< whether to select descendants, not only children
    Node origin = {};  ///< the node whose children or descendants are selected

    bool matches(const kelxml::qt::MovableNode& node) const;
};

/// Creates a list. \param origin the node to search; null gives an empty list
template <class Item>
List<Item> select(const Node& origin, Selection selection)
{
    if (!origin)
        return List<Item>(nullptr);
    selection.origin = origin;
    return List<Item>(std::make_shared<const Selection>(std::move(selection)));
}

/// Returns the first element with that name among `node` and its next siblings.
kelxml::qt::MovableNode firstNamed(kelxml::qt::MovableNode&& node, const QString& name);

} // namespace kel::detail
