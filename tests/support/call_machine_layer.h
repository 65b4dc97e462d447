// The C++ layer's share of the call machine: values for the same trees, each with its model.

#pragma once

#include "KelXmlLib/kel.h"
#include "support/call_machine_objects.h"

namespace model
{

/// A value, and what it keeps alive.
struct HeldValue
{
    kel::Node value;
    ObjectPtr model;

    const Object* operator->() const { return model.get(); }
};

inline HeldValue holdValue(const kel::Node& value, const NodePtr& node, const NodePtr& document)
{
    require(bool(value) == bool(node), node ? "there is a node" : "there is no node");
    const bool isDocument = node && node->type == NODE_DOCUMENT;
    return {value, makeObject(NODE_INVALID, node, {isDocument ? node : document, nullptr})};
}

/// Calls `use` with the parent as an `Element` or a `Document`, because the layer's changes need that type.
inline void withContainer(const kel::Node& value, const std::function<void(kel::Container&)>& use)
{
    kel::Element element(value);
    kel::Document document = value.document();
    use(value.kind() == kel::NodeKind::document ? static_cast<kel::Container&>(document) : element);
}

inline void compare(const HeldValue& held)
{
    const kel::Node& value = held.value;
    const Node& node = held->orNone();
    requireEqual(static_cast<int>(value.kind()), held->node ? node.type : 0, "kind");
    if (!held->node)
        return;
    requireEqual(value.name<std::wstring>(), node.name, "name");
    const bool isElement = node.type == NODE_ELEMENT;
    requireEqual(value.text<std::wstring>(), isElement ? node.text() : node.value, "text");
    const NodePtr parent = node.parent.lock();
    const bool isBelowElement = parent && parent->type == NODE_ELEMENT;
    requireEqual(value.parent().name<std::wstring>(), isBelowElement ? parent->name : L"", "parent");
    const auto compareNames = [](const auto& list, const Nodes& nodes, const char* rule) {
        std::wstring names, expected;
        for (const auto& item : list)
            names += item.template name<std::wstring>() + L' ';
        for (const NodePtr& item : nodes)
            expected += item->name + L' ';
        requireEqual(names, expected, rule);
    };
    withContainer(value, [&](const kel::Container& container) {
        Nodes elements;
        if (container) {
            compareNames(container.nodes(), node.children, "nodes");
            collect(held->node, L"e", elements);
        }
        compareNames(container.descendants("e"), elements, "descendants");
    });
    requireEqual(kel::Element(value).attributes().size(), isElement ? node.attributes.size() : 0,
                 "attributes");
}

/// \return whether the layer accepts `child` below `parent`. \param leaving a child that `child` replaces
inline bool fitsInLayer(const NodePtr& parent, const NodePtr& child, const NodePtr& leaving = nullptr)
{
    if (!parent || (parent->type != NODE_ELEMENT && parent->type != NODE_DOCUMENT) || !fits(parent, child) ||
        child->type == NODE_ATTRIBUTE)
        return false;
    if (parent->type == NODE_ELEMENT)
        return true;
    const NodePtr root =
        first(parent->children, [](const NodePtr& node) { return node->type == NODE_ELEMENT; });
    const bool isText = child->type == NODE_TEXT || child->type == NODE_CDATA_SECTION;
    return !isText && (child->type != NODE_ELEMENT || !root || root == child || root == leaving);
}

class LayerCalls
{
public:
    explicit LayerCalls(const Choose& choose) : m_choose(choose) {}

    void take(const Held& held)
    {
        keep(holdValue(kel::Node(*held.object), held->node, held->handle.documentOrFallback()));
    }
    /// \param use receives an interface's object, its node and its handle
    template <class Use>
    void give(Use use)
    {
        if (m_values.empty())
            return;
        const HeldValue held = pick();
        use(held.value.get(), held->node, held->handle);
    }

    void navigate()
    {
        if (m_values.empty())
            return;
        const HeldValue held = pick();
        const NodePtr parent = held->orNone().parent.lock();
        const auto keepNext = [&](const kel::Node& value, const NodePtr& node) {
            keep(holdValue(value, node, held->handle.document));
        };
        const unsigned kind = m_choose(5);
        if (kind == 0)
            keepNext(held.value.nextSibling(), sibling(held->node, 1));
        else if (kind == 1)
            keepNext(held.value.previousSibling(), sibling(held->node, -1));
        else if (kind == 2)
            keepNext(held.value.parent(), parent && parent->type == NODE_ELEMENT ? parent : nullptr);
        else if (kind == 3 && held->node && held->node->type != NODE_DOCUMENT)
            keepNext(held.value.clone(), copyOf(*held->node, true));
        else if (kind == 4)
            for (const kel::Attribute& attribute : kel::Element(held.value).attributes())
                keepNext(attribute, held->node->attribute(attribute.name<std::wstring>()));
    }

    void change()
    {
        if (m_values.empty())
            return;
        const HeldValue parent = pick(), child = pick();
        const NodePtr at = parent->node, node = child->node;
        const Nodes children = parent->orNone().children;
        const HeldValue other = m_choose(4) && !children.empty() ? childOf(parent) : pick();
        const NodePtr place = other->node;
        const bool isChild = at && std::count(children.begin(), children.end(), place) != 0;
        const unsigned kind = m_choose(5);
        if (kind == 0 &&
            expect("append", parent, fitsInLayer(at, node), [&](auto& to) { to.append(child.value); }))
            append(at, node);
        else if (kind == 1 && expect("insertBefore", parent, isChild && fitsInLayer(at, node),
                                     [&](auto& to) { to.insertBefore(child.value, other.value); }))
            insertBefore(at, node, place);
        else if (kind == 2 && expect("replace", parent, isChild && fitsInLayer(at, node, place),
                                     [&](auto& to) { to.replace(other.value, child.value); })) {
            insertBefore(at, node, place);
            remove(at, node == place ? nullptr : place);
        } else if (kind == 3 && expect("remove", parent, isChild && isContainer(at),
                                       [&](auto& to) { to.remove(other.value); }))
            remove(at, place);
        else if (kind == 4)
            setContent(parent);
    }

    void release()
    {
        for (unsigned count = m_choose(m_values.size() + 1); count > 0; --count)
            m_values.erase(m_values.begin() + m_choose(m_values.size()));
    }
    /// \param isReached receives a value and returns whether to release it
    template <class Predicate>
    void drop(Predicate isReached)
    {
        m_values.erase(std::remove_if(m_values.begin(), m_values.end(), isReached), m_values.end());
    }
    bool isEmpty() const { return m_values.empty(); }

private:
    HeldValue pick() { return m_values[m_choose(m_values.size())]; }
    void keep(const HeldValue& held)
    {
        compare(held);
        m_values.push_back(held);
    }
    static bool isContainer(const NodePtr& node)
    {
        return node && (node->type == NODE_ELEMENT || node->type == NODE_DOCUMENT);
    }
    HeldValue childOf(const HeldValue& parent)
    {
        HeldValue child = parent;
        withContainer(parent.value, [&](const kel::Container& container) {
            const Nodes& children = parent->node->children;
            if (!container)
                return;
            const unsigned index = m_choose(children.size());
            child = holdValue(*std::next(container.nodes().begin(), index), children[index],
                              parent->handle.document);
        });
        return child;
    }
    static NodePtr sibling(const NodePtr& node, int step)
    {
        const NodePtr parent = node ? node->parent.lock() : nullptr;
        if (!parent)
            return nullptr;
        const auto& all = parent->children;
        const auto place = std::find(all.begin(), all.end(), node);
        const bool isThere = place != all.end() && (step > 0 ? place + 1 != all.end() : place != all.begin());
        return isThere ? place[step] : nullptr;
    }

    /// Makes a change and expects it to throw unless it is possible. \return whether it is possible
    template <class Change>
    static bool expect(const char* name, const HeldValue& parent, bool isPossible, Change change)
    {
        bool isMade = true;
        try {
            withContainer(parent.value, change);
        } catch (const kel::Error&) {
            isMade = false;
        }
        requireEqual(isMade, isPossible, name);
        return isMade;
    }

    void setContent(const HeldValue& held)
    {
        const NodePtr node = held->node;
        kel::Element element(held.value);
        if (!element)
            return;
        if (m_choose(3) != 0) {
            const NodePtr attribute = node->attribute(L"x");
            requireEqual(element.removeAttribute("x"), attribute != nullptr, "removeAttribute");
            Nodes& all = node->attributes;
            all.erase(std::remove(all.begin(), all.end(), attribute), all.end());
            return;
        }
        element.setText("all");
        while (!node->children.empty())
            remove(node, node->children.back());
        append(node, model::make(NODE_TEXT, L"#text", L"all"));
    }

    const Choose& m_choose;
    std::vector<HeldValue> m_values;
};

} // namespace model
