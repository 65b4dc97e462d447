// The part of the call machine (the random-call test in call_machine.h) that calls the C++ layer. In this
// file, a value is a `kel::Node`, and an object is an `IXMLDOMNode`. Values and objects refer to the same
// trees.

#pragma once

#include "KelXmlLib/kel.h"
#include "support/call_machine_objects.h"

namespace model
{

using HeldValue = HeldAs<kel::Node>;

inline HeldValue holdValue(const kel::Node& value, const NodePtr& node, const NodePtr& document)
{
    requireEqual(bool(value), bool(node), "a value has a node if and only if the model has one");
    const bool isDocument = node && node->type == NODE_DOCUMENT;
    return {value, makeObject(NODE_INVALID, node, {isDocument ? node : document, nullptr})};
}

/// Calls `use` with the value as a `Document` or an `Element`, because only these types can change the tree.
/// The `Element` is null if the value is neither a document nor an element.
inline void withContainer(const kel::Node& value, const std::function<void(kel::Container&)>& use)
{
    kel::Element element(value);
    kel::Document document = value.document();
    use(value.kind() == kel::NodeKind::document ? static_cast<kel::Container&>(document) : element);
}

inline void compare(const HeldValue& held)
{
    const kel::Node& value = held.object;
    const Node& node = held->nodeOrEmpty();
    requireEqual(static_cast<int>(value.kind()), held->node ? node.type : 0, "kind() fits the model");
    if (!held->node)
        return;
    requireEqual(value.name<std::wstring>(), node.name, "name() fits the model");
    const bool isElement = node.type == NODE_ELEMENT;
    requireEqual(value.text<std::wstring>(), isElement ? node.text() : node.value, "text() fits the model");
    const NodePtr parent = node.parent.lock();
    const bool isBelowElement = parent && parent->type == NODE_ELEMENT;
    requireEqual(value.parent().name<std::wstring>(), isBelowElement ? parent->name : L"",
                 "parent() fits the model");
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
            compareNames(container.nodes(), node.children, "nodes() fits the model");
            collect(held->node, L"e", elements);
        }
        compareNames(container.descendants("e"), elements, "descendants() fits the model");
    });
    requireEqual(kel::Element(value).attributes().size(), isElement ? node.attributes.size() : 0,
                 "attributes() fits the model");
}

/// \param replaced the node that `child` replaces, or null
/// \return whether the layer accepts `child` as a child of `parent`
inline bool fitsInLayer(const NodePtr& parent, const NodePtr& child, const NodePtr& replaced = nullptr)
{
    if (!parent || (parent->type != NODE_ELEMENT && parent->type != NODE_DOCUMENT) || !fits(parent, child) ||
        child->type == NODE_ATTRIBUTE)
        return false;
    if (parent->type == NODE_ELEMENT)
        return true;
    const NodePtr root =
        first(parent->children, [](const NodePtr& node) { return node->type == NODE_ELEMENT; });
    const bool isText = child->type == NODE_TEXT || child->type == NODE_CDATA_SECTION;
    return !isText && (child->type != NODE_ELEMENT || !root || root == child || root == replaced);
}

class LayerCalls
{
public:
    explicit LayerCalls(const Choose& choose) : m_choose(choose) {}

    /// Creates a value from an object, and keeps the value.
    void wrap(const Held& held)
    {
        keep(holdValue(kel::Node(*held.object), held->node, held->handle.documentOrFallback()));
    }
    /// Gets the object of a value. \param use receives the object, and the node and the handle of the model
    template <class Use>
    void unwrap(Use use)
    {
        if (m_values.empty())
            return;
        const HeldValue held = pick();
        use(held.object.get(), held->node, held->handle);
    }

    void navigate()
    {
        if (m_values.empty())
            return;
        const HeldValue held = pick();
        const NodePtr parent = held->nodeOrEmpty().parent.lock();
        const auto keepNext = [&](const kel::Node& value, const NodePtr& node) {
            keep(holdValue(value, node, held->handle.document));
        };
        const unsigned kind = m_choose(5);
        if (kind == 0)
            keepNext(held.object.nextSibling(), sibling(held->node, 1));
        else if (kind == 1)
            keepNext(held.object.previousSibling(), sibling(held->node, -1));
        else if (kind == 2)
            keepNext(held.object.parent(), parent && parent->type == NODE_ELEMENT ? parent : nullptr);
        else if (kind == 3 && held->node && held->node->type != NODE_DOCUMENT)
            keepNext(held.object.clone(), copyOf(*held->node, true));
        else if (kind == 4)
            for (const kel::Attribute& attribute : kel::Element(held.object).attributes())
                keepNext(attribute, held->node->attribute(attribute.name<std::wstring>()));
    }

    void change()
    {
        if (m_values.empty())
            return;
        const HeldValue parent = pick(), child = pick();
        const NodePtr at = parent->node, node = child->node;
        const Nodes children = parent->nodeOrEmpty().children;
        const HeldValue other = m_choose(4) && !children.empty() ? childOf(parent) : pick();
        const NodePtr place = other->node;
        const bool isChild = at && std::count(children.begin(), children.end(), place) != 0;
        const unsigned kind = m_choose(5);
        if (kind == 0 &&
            expect("append", parent, fitsInLayer(at, node), [&](auto& to) { to.append(child.object); }))
            append(at, node);
        else if (kind == 1 && expect("insertBefore", parent, isChild && fitsInLayer(at, node),
                                     [&](auto& to) { to.insertBefore(child.object, other.object); }))
            insertBefore(at, node, place);
        else if (kind == 2 && expect("replace", parent, isChild && fitsInLayer(at, node, place),
                                     [&](auto& to) { to.replace(other.object, child.object); })) {
            insertBefore(at, node, place);
            remove(at, node == place ? nullptr : place);
        } else if (kind == 3 && expect("remove", parent, isChild && isContainer(at),
                                       [&](auto& to) { to.remove(other.object); }))
            remove(at, place);
        else if (kind == 4)
            setContent(parent);
    }

    void release()
    {
        for (unsigned count = m_choose(m_values.size() + 1); count > 0; --count)
            m_values.erase(m_values.begin() + m_choose(m_values.size()));
    }
    /// Releases each value for which `isDropped` returns true.
    template <class Predicate>
    void drop(Predicate isDropped)
    {
        m_values.erase(std::remove_if(m_values.begin(), m_values.end(), isDropped), m_values.end());
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
        withContainer(parent.object, [&](const kel::Container& container) {
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

    /// Calls `change`, which must throw if and only if `isPossible` is false. \return `isPossible`
    template <class Change>
    static bool expect(const std::string& name, const HeldValue& parent, bool isPossible, Change change)
    {
        std::string refusal;
        try {
            withContainer(parent.object, change);
        } catch (const kel::Error& error) {
            refusal = error.what();
        }
        if (isPossible != refusal.empty())
            fail(name + (isPossible ? " must succeed, but it throws: " : " must throw, but it does not") +
                 refusal);
        return isPossible;
    }

    void setContent(const HeldValue& held)
    {
        const NodePtr node = held->node;
        kel::Element element(held.object);
        if (!element)
            return;
        if (m_choose(3) != 0) {
            const NodePtr attribute = node->attribute(L"x");
            requireEqual(element.removeAttribute("x"), bool(attribute), "removeAttribute() fits the model");
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
