// One function for each kind of call: make it, let the model do the same, compare.

#include "support/call_machine.h"

#include "support/call_machine_objects.h"

using kel::Bstr;
using kel::ComPtr;
using kel::Variant;
using model::Handle;
using model::Held;
using model::HeldList;
using model::HeldMap;
using model::NodePtr;
using model::Object;
using model::ObjectPtr;
using model::Text;

namespace
{

struct Difference
{
    const char* what;
};

NodePtr at(const model::Nodes& nodes, std::size_t index)
{
    return index < nodes.size() ? nodes[index] : nullptr;
}

class CallMachine
{
public:
    CallMachine(std::function<unsigned(unsigned)> choose, std::size_t documents)
        : m_choose(std::move(choose)), m_isOneDocument(documents == 1)
    {
        while (m_documents.size() < documents)
            m_documents.push_back(newDocument());
    }
    ~CallMachine()
    {
        while (!m_nodes.empty() || !m_lists.empty() || !m_maps.empty())
            release();
    }

    /// Makes one call. \throw Difference
    void step()
    {
        // What is to happen more often stands there more often.
        static constexpr void (CallMachine::*kSteps[])() = {
            &CallMachine::load,        &CallMachine::create,        &CallMachine::create,
            &CallMachine::append,      &CallMachine::append,        &CallMachine::append,
            &CallMachine::append,      &CallMachine::moveChildren,  &CallMachine::remove,
            &CallMachine::remove,      &CallMachine::walkUpOrDown,  &CallMachine::walkUpOrDown,
            &CallMachine::askForOwner, &CallMachine::askForRoot,    &CallMachine::makeList,
            &CallMachine::makeList,    &CallMachine::useList,       &CallMachine::makeMap,
            &CallMachine::useMap,      &CallMachine::changeContent, &CallMachine::changeContent,
            &CallMachine::clone,       &CallMachine::save,          &CallMachine::close,
            &CallMachine::release};
        (this->*kSteps[m_choose(std::size(kSteps))])();
        if (!m_nodes.empty())
            compare(oneOf(m_nodes));
        if (!m_lists.empty())
            compare(oneOf(m_lists));
    }

private:
    Held newDocument()
    {
        const auto document = kel::newDocument();
        const Held held{ComPtr<IXMLDOMNode>(document.get()),
                        std::make_shared<Object>(Object{NODE_DOCUMENT, nullptr, {}})};
        held.model->address = document.get();
        if (m_isOneDocument || m_choose(2))
            loadInto(held, model::texts()[m_choose(static_cast<unsigned>(model::texts().size()))]);
        return held;
    }
    template <class Thing>
    Thing& oneOf(std::vector<Thing>& things)
    {
        return things[m_choose(static_cast<unsigned>(things.size()))];
    }
    Held pick() { return m_nodes.empty() || m_choose(8) == 0 ? oneOf(m_documents) : oneOf(m_nodes); }
    Held pickDocument()
    {
        if (m_choose(3) != 0)
            return oneOf(m_documents);
        askForOwner();
        return m_nodes.back();
    }
    /// As often as any other, a document or what stands first in it: there the long lists are.
    Held pickParent()
    {
        if (m_choose(2))
            return pick();
        const Held document = pickDocument();
        return m_choose(3) && walk(document, false) ? m_nodes.back() : document;
    }

    void keep(ComPtr<IXMLDOMNode> object, const NodePtr& node, const Handle& handle, DOMNodeType kind)
    {
        keepSame(std::move(object),
                 std::make_shared<Object>(Object{kind, node, handle, ownerElementOf(node)}));
    }
    /// Expects the object of earlier when there is one.
    void keepSame(ComPtr<IXMLDOMNode> object, const ObjectPtr& model)
    {
        expect(object && (!model->address || model->address == object.get()), "which object there is");
        model->address = object.get();
        m_nodes.push_back({std::move(object), model});
        compare(m_nodes.back());
    }
    /// Expects both or neither of object and node. \return whether there are
    bool keepAsIs(ComPtr<IXMLDOMNode> object, const NodePtr& node, const Handle& handle)
    {
        expect(!object == !node, "whether there is a node");
        if (!node)
            return false;
        const bool hasClass = node->type == NODE_ELEMENT || node->type == NODE_ATTRIBUTE;
        keep(std::move(object), node, handle, hasClass ? static_cast<DOMNodeType>(node->type) : NODE_INVALID);
        return true;
    }
    static void expect(bool holds, const char* what)
    {
        if (!holds)
            throw Difference{what};
    }

    /// What every node answers for itself.
    void compare(IXMLDOMNode& object, const model::Node& node, int type)
    {
        DOMNodeType given = NODE_INVALID;
        object.get_nodeType(&given);
        expect(static_cast<int>(given) == type, "type");
        Bstr name, text;
        expect(object.get_nodeName(name.put()) == S_OK && name.c_str() == node.name, "name");
        const bool hasText = type == NODE_ELEMENT || type == NODE_TEXT || type == NODE_CDATA_SECTION;
        const HRESULT answer = object.get_text(text.put());
        expect(type == NODE_DOCUMENT || answer == (hasText ? S_OK : S_FALSE), "get_text's answer");
        expect(text.c_str() == node.text(), "text");
    }
    void compare(const Held& held)
    {
        const model::Node& node = held.orNone();
        compare(*held.object, node, held->kind != NODE_INVALID ? held->kind : held->node ? node.type : 21);
        VARIANT_BOOL has = 7;
        held.object->hasChildNodes(&has);
        expect(has == !node.children.empty(), "children");
        ComPtr<IXMLDOMNode> parent;
        const HRESULT answer = held.object->get_parentNode(parent.put());
        const NodePtr above = node.parent.lock();
        expect(!parent == !above && answer == (above ? S_OK : S_FALSE), "parent");
        if (above)
            expect(kel::textOf(*parent, &IXMLDOMNode::get_nodeName) == above->name, "parent's name");
        Variant value;
        if (held->kind == NODE_ATTRIBUTE)
            static_cast<IXMLDOMAttribute&>(*held.object).get_value(value.put());
        else
            held.object->get_nodeValue(value.put());
        const auto given = value.type() == VT_BSTR ? value.text() : std::wstring_view();
        expect(held->kind == NODE_ELEMENT || (value.type() == VT_BSTR && given == node.value), "value");
    }
    void compare(HeldList& list)
    {
        const model::Nodes expected = list.read();
        LONG length = -1;
        list.object->get_length(&length);
        expect(static_cast<std::size_t>(length) == expected.size(), "length of a list");
        ComPtr<IXMLDOMNode> item;
        for (LONG index = 0; index < length; ++index) {
            expect(list.object->get_item(index, item.put()) == S_OK, "item of a list");
            const model::Node& node = *expected[static_cast<std::size_t>(index)];
            compare(*item, node, node.type);
        }
        expect(list.object->get_item(length, item.put()) == S_FALSE, "end of a list");
    }

    /// Gives a document a tree, as the first thing that is made in it does.
    static void begin(Object& document)
    {
        if (!document.node)
            document.node = document.handle.document = model::make(NODE_DOCUMENT, L"#document");
    }
    void loadInto(const Held& held, const Text& text)
    {
        const HRESULT answer = held.asDocument().loadXML(Bstr(text.xml.c_str()).get(), nullptr);
        expect(answer == (text.isLoaded ? S_OK : S_FALSE), "verdict");
        begin(*held.model);
        for (const NodePtr& child : held->node->children)
            child->parent.reset();
        held->node->children = model::copyOf(*text.tree, true)->children;
        for (const NodePtr& child : held->node->children)
            child->parent = held->node;
    }
    void load()
    {
        const Held held = pickDocument();
        if (m_choose(8) == 0)
            expect(held.asDocument().loadXML(Bstr(L"").get(), nullptr) == S_FALSE, "verdict on nothing");
        else
            loadInto(held, model::texts()[m_choose(static_cast<unsigned>(model::texts().size()))]);
    }

    void create()
    {
        const Held held = pickDocument();
        const int type = m_choose(3) != 0 ? NODE_ELEMENT : NODE_ATTRIBUTE;
        const wchar_t* const name =
            type == NODE_ELEMENT ? (m_choose(2) ? L"e" : L"c") : kAttributes[m_choose(3)];
        ComPtr<IXMLDOMNode> made;
        held.asDocument().createNode(Variant(type).get(), Bstr(name).get(), nullptr, made.put());
        begin(*held.model);
        keepAsIs(made, model::make(type, name), held.handle());
    }

    /// The result of a change wraps the child, whatever became of it.
    void keepResult(ComPtr<IXMLDOMNode> result, const Held& parent, const Held& child, const NodePtr& node)
    {
        Handle handle = parent.handle();
        if (!handle.document && !handle.standIn)
            handle.standIn = child.handle().document ? child.handle().document : child.handle().standIn;
        keep(std::move(result), node, handle, child->kind == NODE_DOCUMENT ? NODE_INVALID : child->kind);
    }
    void append()
    {
        const Held parent = pick();
        const Held child = pick();
        ComPtr<IXMLDOMNode> result;
        expect(parent.object->appendChild(child.object.get(), result.put()) == S_OK, "appendChild's answer");
        model::append(parent->node, child->node);
        keepResult(result, parent, child, child->node);
    }
    void moveChildren()
    {
        const Held from = pickParent();
        const Held to = pick();
        std::vector<ComPtr<IXMLDOMNode>> objects;
        for (const auto& object : kel::childrenOf(*from.object))
            objects.push_back(object);
        const model::Nodes children = from.orNone().children;
        expect(objects.size() == children.size(), "number of children");
        for (std::size_t index = 0; index < children.size(); ++index) {
            to.object->appendChild(objects[index].get(), nullptr);
            model::append(to->node, children[index]);
        }
    }

    void remove()
    {
        const Held parent = pick();
        Held child = pick();
        if (m_choose(2) && !parent.orNone().children.empty()) {
            const auto index = m_choose(static_cast<unsigned>(parent->node->children.size()));
            ComPtr<IXMLDOMNodeList> list;
            parent.object->get_childNodes(list.put());
            ComPtr<IXMLDOMNode> item;
            list->get_item(static_cast<LONG>(index), item.put());
            keepAsIs(item, parent->node->children[index], parent.handle());
            child = m_nodes.back();
        }
        ComPtr<IXMLDOMNode> result;
        expect(parent.object->removeChild(child.object.get(), result.put()) == S_OK, "removeChild's answer");
        const bool holdsNone = !model::remove(parent->node, child->node) && parent->kind == NODE_ELEMENT &&
                               child->kind == NODE_ELEMENT;
        keepResult(result, parent, child, holdsNone ? nullptr : child->node);
    }

    void walkUpOrDown()
    {
        const Held from = pick();
        walk(from, m_choose(2));
    }
    /// \return whether there was a node
    bool walk(const Held& from, bool isUp)
    {
        ComPtr<IXMLDOMNode> found;
        isUp ? from.object->get_parentNode(found.put()) : from.object->get_firstChild(found.put());
        const model::Node& node = from.orNone();
        return keepAsIs(found, isUp ? node.parent.lock() : at(node.children, 0), from.handle());
    }
    void askForOwner()
    {
        const Held from = pick();
        ComPtr<IXMLDOMDocument> owner;
        expect(from.object->get_ownerDocument(owner.put()) == S_OK, "get_ownerDocument's answer");
        if (from->kind != NODE_DOCUMENT && !from->ownerDocument)
            from.model->ownerDocument = std::make_shared<Object>(
                Object{NODE_DOCUMENT, from.handle().document, {from.handle().document, nullptr}});
        keepSame(ComPtr<IXMLDOMNode>(owner.get()),
                 from->kind == NODE_DOCUMENT ? from.model : from->ownerDocument);
    }
    void askForRoot()
    {
        const Held from = pickDocument();
        ComPtr<IXMLDOMElement> root;
        expect(from.asDocument().get_documentElement(root.put()) == S_OK, "get_documentElement's answer");
        const model::Nodes& children = from.orNone().children;
        const auto found = std::find_if(children.begin(), children.end(),
                                        [](const NodePtr& child) { return child->type == NODE_ELEMENT; });
        if (!from->root)
            from.model->root = std::make_shared<Object>(
                Object{NODE_ELEMENT, found == children.end() ? nullptr : *found, from.handle()});
        keepSame(ComPtr<IXMLDOMNode>(root.get()), from->root);
    }

    void makeList()
    {
        const Held source = pickParent();
        const bool isAble = source->kind == NODE_ELEMENT || source->kind == NODE_DOCUMENT;
        // Qt takes a null name for all children.
        static constexpr const wchar_t* kTags[] = {L"e", L"c", nullptr};
        const bool isSearch = isAble && m_choose(3);
        HeldList list{nullptr, source->node, source.handle(), ownerElementOf(source->node),
                      isSearch ? kTags[m_choose(3)] : nullptr};
        expect((isSearch ? source.object->selectNodes(Bstr(list.tag).get(), list.object.put())
                         : source.object->get_childNodes(list.object.put())) == S_OK,
               "a list's making");
        m_lists.push_back(std::move(list));
    }
    void useList()
    {
        if (m_lists.empty())
            return;
        HeldList& list = oneOf(m_lists);
        const model::Nodes expected = list.read();
        const bool isNext = m_choose(2);
        const unsigned index = isNext ? list.cursor : m_choose(static_cast<unsigned>(expected.size()) + 1);
        const NodePtr node = at(expected, index);
        ComPtr<IXMLDOMNode> item;
        const HRESULT answer = isNext ? list.object->nextNode(item.put())
                                      : list.object->get_item(static_cast<LONG>(index), item.put());
        expect(answer == (node ? S_OK : S_FALSE), "a list's answer");
        list.cursor += isNext && node ? 1 : 0;
        keepAsIs(item, node, list.handle());
    }

    void makeMap()
    {
        const Held source = pick();
        HeldMap map{nullptr, source.orNone().type == NODE_ELEMENT ? source->node : nullptr, source.handle()};
        expect(source.object->get_attributes(map.object.put()) == S_OK, "a map's making");
        m_maps.push_back(std::move(map));
    }
    void useMap()
    {
        if (m_maps.empty())
            return;
        const HeldMap& map = oneOf(m_maps);
        const model::Nodes expected = map.element ? map.element->attributes : model::Nodes();
        std::size_t length = 0;
        for (const auto& item : kel::each(map.object)) { // in an order that is Qt's
            const std::wstring name = kel::textOf(*item, &IXMLDOMNode::get_nodeName);
            const NodePtr node = map.element ? map.element->attribute(name) : nullptr;
            expect(node && ++length <= expected.size(), "item of a map");
            compare(*item, *node, NODE_ATTRIBUTE);
        }
        expect(length == expected.size(), "length of a map");
        const wchar_t* const name = kAttributes[m_choose(3)];
        ComPtr<IXMLDOMNode> item;
        map.object->getNamedItem(Bstr(name).get(), item.put());
        keepAsIs(item, map.element ? map.element->attribute(name) : nullptr, map.handle());
    }

    void changeContent()
    {
        const Held held = pick();
        // Each its own, to tell apart what has the same name; now and then none.
        const std::wstring text = m_choose(8) ? std::to_wstring(++m_texts) : std::wstring();
        if (held->kind == NODE_ELEMENT && m_choose(2)) {
            const wchar_t* const name = kAttributes[m_choose(3)];
            auto& element = static_cast<IXMLDOMElement&>(*held.object);
            expect(element.setAttribute(Bstr(name).get(), Variant(text.c_str()).get()) == S_OK,
                   "setAttribute's answer");
            return model::setAttribute(held->node, name, text);
        }
        const Bstr given(text.empty() ? nullptr : text.c_str());
        expect(held.object->put_text(given.get()) == S_OK, "put_text's answer");
        held->kind == NODE_ELEMENT ? model::setText(held->node, text) : model::setValue(held->node, text);
    }

    void clone()
    {
        const Held held = pick();
        if (held->kind != NODE_ELEMENT)
            return;
        const bool deep = m_choose(2);
        ComPtr<IXMLDOMNode> copy;
        const HRESULT answer = held.object->cloneNode(deep ? VARIANT_TRUE : VARIANT_FALSE, copy.put());
        expect(answer == S_OK, "cloneNode's answer");
        keepAsIs(copy, held->node ? model::copyOf(*held->node, deep) : nullptr, held.handle());
    }

    void save()
    {
        const HRESULT answer = pickDocument().asDocument().save(Variant(L"/dev/null").get());
        expect(answer == S_OK, "save's answer");
    }

    void release()
    {
        const auto drop = [this](auto& held) {
            if (!held.empty())
                held.erase(held.begin() + m_choose(static_cast<unsigned>(held.size())));
        };
        // Often most of the nodes: what is left has to keep alive what it needs.
        for (unsigned count = m_choose(static_cast<unsigned>(m_nodes.size()) + 1); count > 0; --count)
            drop(m_nodes);
        drop(m_lists);
        drop(m_maps);
    }
    /// The host lets go of a document and of what was reached from it. What was reached from others lives on.
    void close()
    {
        if (m_isOneDocument)
            return;
        Held& document = oneOf(m_documents);
        const auto drop = [gone = document->node](auto& held) {
            const auto isReached = [&gone](const auto& one) { return one.handle().document == gone; };
            held.erase(std::remove_if(held.begin(), held.end(), isReached), held.end());
        };
        drop(m_nodes);
        drop(m_lists);
        drop(m_maps);
        document = newDocument();
    }

    static constexpr const wchar_t* kAttributes[] = {L"x", L"w", L"z"};

    std::function<unsigned(unsigned)> m_choose;
    bool m_isOneDocument;
    unsigned m_texts = 1000;
    std::vector<Held> m_documents;
    std::vector<Held> m_nodes;
    std::vector<HeldList> m_lists;
    std::vector<HeldMap> m_maps;
};

} // namespace

std::string makeCalls(std::function<unsigned(unsigned)> choose, const std::function<bool()>& goesOn,
                      std::size_t documents)
try {
    CallMachine machine(std::move(choose), documents);
    while (goesOn())
        machine.step();
    return {};
} catch (const Difference& difference) {
    return difference.what;
}
