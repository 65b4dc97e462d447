// Describes which nodes a list contains.

#pragma once

#include "layer/access.h"

#include <memory>

namespace kel::detail
{

struct Selection
{
    QString name; ///< null selects every name
    bool elementsOnly = true;
    bool deep = false; ///< all descendants, not only children
    Node origin = {};

    bool matches(const kelxml::qt::MovableNode& node) const;
};

/// \return an empty list for null
template <class Item>
List<Item> select(const Node& origin, Selection selection)
{
    if (!origin)
        return List<Item>(nullptr);
    selection.origin = origin;
    return List<Item>(std::make_shared<const Selection>(std::move(selection)));
}

/// The first element with that name, starting at a node and going through its next siblings.
kelxml::qt::MovableNode firstNamed(kelxml::qt::MovableNode&& node, const QString& name);

} // namespace kel::detail
