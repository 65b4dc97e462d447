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
    Handle(QDomNode&& node) noexcept { swap(node); }
    Handle(const Handle&) = default;
    Handle(Handle&& other) noexcept { swap(other); }
    Handle& operator=(const Handle&) = default;
    Handle& operator=(Handle&& other) noexcept
    {
        swap(other);
        return *this;
    }
    ~Handle() = default;

    /// Which node a handle stands for, for comparing; never followed.
    static const void* identityOf(const QDomNode& node) { return node.*(&Handle::impl); }

private:
    void swap(QDomNode& other) noexcept { std::swap(impl, other.*(&Handle::impl)); }
};

} // namespace kelxml
