// What Qt's handles lack.

#pragma once

#include <QtXml/QDomNode>

#include <utility>

namespace kelxml
{

/// A handle that can be moved. Qt's own can only be copied, and the two atomic counts of a copy are most of
/// what a step from node to node costs.
class Handle : public QDomNode
{
public:
    Handle() = default;
    Handle(QDomNode&& node) noexcept { exchange(*this, node); }
    Handle(const Handle&) = default;
    Handle(Handle&& other) noexcept { exchange(*this, other); }
    Handle& operator=(const Handle&) = default;
    Handle& operator=(Handle&& other) noexcept
    {
        exchange(*this, other);
        return *this;
    }
    ~Handle() = default;

    /// The same node under the type of its kind, which the caller knows it to be of.
    template <class Kind>
    Kind as() &&
    {
        Kind node;
        exchange(node, *this);
        return node;
    }

    /// Which node a handle stands for, for comparing; never followed.
    static const void* identityOf(const QDomNode& node) { return node.*(&Handle::impl); }

    static void exchange(QDomNode& one, QDomNode& other) noexcept
    {
        std::swap(one.*(&Handle::impl), other.*(&Handle::impl));
    }
};

} // namespace kelxml
