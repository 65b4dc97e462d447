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
    bool deep = false; ///< whether to select from all descendants; if false, only from children
    Node origin = {};  ///< the node whose children or descendants are selected

    bool matches(const kelxml::qt::MovableNode& node) const;
};

/// Creates a list of nodes below `origin`. If `origin` is null, the list is empty.
template <class Item>
List<Item> select(const Node& origin, Selection selection)
{
    if (!origin)
        return List<Item>(nullptr);
    selection.origin = origin;
    return List<Item>(std::make_shared<const Selection>(std::move(selection)));
}

/// Returns the first element that is named `name` among `node` and the siblings after `node`.
kelxml::qt::MovableNode firstNamed(kelxml::qt::MovableNode&& node, const QString& name);

} // namespace kel::detail
