// One function for each kind of call: make it, let the model do the same, compare.

#include "support/call_machine.h"

#include "KelXmlLib/convenience.h"
#include "support/model_tree.h"

using kel::Bstr;
using kel::ComPtr;
using kel::Variant;
using model::NodePtr;

namespace
{

const wchar_t* const kTexts[] = {
    L"<a x='1' y='2'>t<b><c z='3'/>u</b><!--k--><![CDATA[cd]]><?pi d?></a>",
    L"<!DOCTYPE r [<!ENTITY e 'v'><!NOTATION n SYSTEM 's'>]><r>&e;&u;<s/></r>",
    L"<?xml version='1.0'?><q/><!--z-->",
    L"<bad",
};

/// What an object over an attribute keeps alive.
NodePtr keeperOf(const NodePtr& node)
{
    const NodePtr parent = node && node->type == NODE_ATTRIBUTE ? node->parent.lock() : nullptr;
    return parent && parent->type == NODE_ELEMENT ? parent : nullptr;
}

NodePtr at(const model::Nodes& nodes, std::size_t index)
{
    return index < nodes.size() ? nodes[index] : nullptr;
}

struct Held
{
    ComPtr<IXMLDOMNode> object;
    NodePtr node;     ///< null when the object holds none
    NodePtr document; ///< kept alive by the object
    NodePtr keeper;   ///< an attribute's element, kept alive by the object
    DOMNodeType kind; ///< the class: element, attribute, document, or 0 for the generic node

    /// The node, or one without anything.
    const model::Node& orNone() const { return node ? *node : kNone; }
    IXMLDOMDocument& asDocument() const { return static_cast<IXMLDOMDocument&>(*object); }
    inline static const model::Node kNone;
};

struct HeldList
{
    ComPtr<IXMLDOMNodeList> object;
    Held source;
    bool byTagName;
    std::wstring tag;
    unsigned cursor = 0;
};

struct HeldMap
{
    ComPtr<IXMLDOMNamedNodeMap> object;
    Held source;
};

class CallMachine
{
public:
    CallMachine(std::function<unsigned(unsigned)> choose, std::size_t documents) : m_choose(std::move(choose))
    {
        while (m_documents.size() < documents)
            m_documents.push_back(newDocument());
    }
    ~CallMachine()
    {
        while (!m_nodes.empty() || !m_lists.empty() || !m_maps.empty())
            release();
    }

    /// Makes one call. \return an empty string, or what differs from the promise
    const std::string& step()
    {
        // What is to happen more often stands there more often.
        static constexpr void (CallMachine::*kSteps[])() = {
            &CallMachine::load,         &CallMachine::create,        &CallMachine::create,
            &CallMachine::append,       &CallMachine::append,        &CallMachine::append,
            &CallMachine::append,       &CallMachine::remove,        &CallMachine::remove,
            &CallMachine::walkUpOrDown, &CallMachine::walkUpOrDown,  &CallMachine::listChildren,
            &CallMachine::listByName,   &CallMachine::useList,       &CallMachine::makeMap,
            &CallMachine::useMap,       &CallMachine::changeContent, &CallMachine::clone,
            &CallMachine::save,         &CallMachine::release};
        (this->*kSteps[m_choose(std::size(kSteps))])();
        if (m_difference.empty() && !m_nodes.empty())
            compare(oneOf(m_nodes));
        return m_difference;
    }

private:
    Held newDocument()
    {
        const auto document = kel::newDocument();
        const NodePtr node = model::make(NODE_DOCUMENT, L"#document");
        Held held{ComPtr<IXMLDOMNode>(document.get()), node, node, nullptr, NODE_DOCUMENT};
        loadInto(held, L"<i/>");
        return held;
    }
    template <class Thing>
    Thing& oneOf(std::vector<Thing>& things)
    {
        return things[m_choose(static_cast<unsigned>(things.size()))];
    }
    Held pick() { return m_nodes.empty() || m_choose(8) == 0 ? oneOf(m_documents) : oneOf(m_nodes); }

    void keep(ComPtr<IXMLDOMNode> object, const NodePtr& node, const NodePtr& document, DOMNodeType kind)
    {
        m_nodes.push_back({std::move(object), node, document, keeperOf(node), kind});
        compare(m_nodes.back());
    }
    /// Expects both or neither of object and node. \return whether there are both
    bool keepAsIs(ComPtr<IXMLDOMNode> object, const NodePtr& node, const NodePtr& document)
    {
        expect(!object == !node, "whether there is a node");
        if (!object || !node)
            return false;
        const bool hasClass = node->type == NODE_ELEMENT || node->type == NODE_ATTRIBUTE;
        keep(std::move(object), node, document,
             hasClass ? static_cast<DOMNodeType>(node->type) : NODE_INVALID);
        return true;
    }
    void expect(bool holds, const char* what)
    {
        if (!holds && m_difference.empty())
            m_difference = what;
    }

    void compare(const Held& held)
    {
        const model::Node& node = held.orNone();
        DOMNodeType type = NODE_INVALID;
        held.object->get_nodeType(&type);
        const int expected = held.kind != NODE_INVALID ? held.kind : held.node ? node.type : 21;
        expect(static_cast<int>(type) == expected, "type");
        expect(kel::textOf(*held.object, &IXMLDOMNode::get_nodeName) == node.name, "name");
        VARIANT_BOOL has = 7;
        held.object->hasChildNodes(&has);
        expect(has == !node.children.empty(), "children");
        ComPtr<IXMLDOMNode> parent;
        held.object->get_parentNode(parent.put());
        const NodePtr above = node.parent.lock();
        expect(!parent == !above, "parent");
        if (parent && above)
            expect(kel::textOf(*parent, &IXMLDOMNode::get_nodeName) == above->name, "parent's name");
        Bstr text;
        held.object->get_text(text.put());
        expect(text.c_str() == node.text(), "text");
        Variant value;
        if (held.kind == NODE_ATTRIBUTE)
            static_cast<IXMLDOMAttribute&>(*held.object).get_value(value.put());
        else if (held.kind == NODE_INVALID)
            held.object->get_nodeValue(value.put());
        const bool hasNone = held.kind == NODE_ELEMENT || held.kind == NODE_DOCUMENT;
        const auto given = value.type() == VT_BSTR ? value.text() : std::wstring_view();
        expect(hasNone || given == node.value, "value");
    }

    void loadInto(const Held& held, const wchar_t* text)
    {
        QDomDocument parsed;
        const bool verdict = parsed.setContent(QString::fromWCharArray(text));
        const HRESULT answer = held.asDocument().loadXML(Bstr(text).get(), nullptr);
        expect(answer == (verdict ? S_OK : S_FALSE), "verdict");
        for (const NodePtr& child : held.node->children)
            child->parent.reset();
        held.node->children = model::fromQt(parsed)->children;
        for (const NodePtr& child : held.node->children)
            child->parent = held.node;
    }
    void load()
    {
        if (m_choose(3) == 0)
            loadInto(oneOf(m_documents), kTexts[m_choose(std::size(kTexts))]);
    }

    void create()
    {
        const Held& held = oneOf(m_documents);
        const int type = m_choose(3) != 0 ? NODE_ELEMENT : NODE_ATTRIBUTE;
        const wchar_t* const name = type == NODE_ELEMENT ? L"e" : m_choose(2) ? L"x" : L"w";
        ComPtr<IXMLDOMNode> made;
        held.asDocument().createNode(Variant(type).get(), Bstr(name).get(), nullptr, made.put());
        keepAsIs(made, model::make(type, name), held.document);
    }

    void append()
    {
        const Held parent = pick();
        const Held child = pick();
        ComPtr<IXMLDOMNode> result;
        expect(parent.object->appendChild(child.object.get(), result.put()) == S_OK, "appendChild's answer");
        model::append(parent.node, child.node);
        keep(result, child.node, parent.document, child.kind == NODE_DOCUMENT ? NODE_INVALID : child.kind);
    }

    void remove()
    {
        const Held parent = pick();
        Held child = pick();
        if (m_choose(2) && parent.node && !parent.node->children.empty()) {
            const auto index = m_choose(static_cast<unsigned>(parent.node->children.size()));
            ComPtr<IXMLDOMNodeList> list;
            parent.object->get_childNodes(list.put());
            ComPtr<IXMLDOMNode> item;
            list->get_item(static_cast<LONG>(index), item.put());
            if (!keepAsIs(item, parent.node->children[index], parent.document))
                return;
            child = m_nodes.back();
        }
        ComPtr<IXMLDOMNode> result;
        expect(parent.object->removeChild(child.object.get(), result.put()) == S_OK, "removeChild's answer");
        const bool holdsNone = !model::remove(parent.node, child.node) && parent.kind == NODE_ELEMENT &&
                               child.kind == NODE_ELEMENT;
        keep(result, holdsNone ? nullptr : child.node, parent.document,
             child.kind == NODE_DOCUMENT ? NODE_INVALID : child.kind);
    }

    void walkUpOrDown()
    {
        const Held from = pick();
        const bool isUp = m_choose(2);
        ComPtr<IXMLDOMNode> found;
        isUp ? from.object->get_parentNode(found.put()) : from.object->get_firstChild(found.put());
        const model::Node& node = from.orNone();
        keepAsIs(found, isUp ? node.parent.lock() : at(node.children, 0), from.document);
    }

    void makeList(bool byTagName)
    {
        const Held source = pick();
        if (byTagName && source.kind != NODE_ELEMENT && source.kind != NODE_DOCUMENT)
            return;
        HeldList list{nullptr, source, byTagName, m_choose(2) ? L"e" : L"c"};
        list.source.keeper = keeperOf(source.node);
        if (byTagName)
            source.object->selectNodes(Bstr(list.tag.c_str()).get(), list.object.put());
        else
            source.object->get_childNodes(list.object.put());
        list.source.object.reset();
        m_lists.push_back(std::move(list));
    }
    void listChildren() { makeList(false); }
    void listByName() { makeList(true); }

    void useList()
    {
        if (m_lists.empty())
            return;
        HeldList& list = oneOf(m_lists);
        model::Nodes expected;
        if (list.source.node && list.byTagName)
            model::collect(list.source.node, list.tag, expected);
        else if (list.source.node)
            expected = list.source.node->children;
        LONG length = -1;
        list.object->get_length(&length);
        if (static_cast<std::size_t>(length) != expected.size())
            return expect(false, "length of a list");
        const bool isNext = m_choose(2);
        const unsigned index = isNext ? list.cursor : m_choose(4);
        const NodePtr node = at(expected, index);
        ComPtr<IXMLDOMNode> item;
        const HRESULT answer = isNext ? list.object->nextNode(item.put())
                                      : list.object->get_item(static_cast<LONG>(index), item.put());
        expect(answer == (node ? S_OK : S_FALSE), "a list's answer");
        list.cursor += isNext && node ? 1 : 0;
        keepAsIs(item, node, list.source.document);
    }

    void makeMap()
    {
        HeldMap map{nullptr, pick()};
        map.source.object->get_attributes(map.object.put());
        map.source.object.reset();
        map.source.keeper = nullptr;
        if (map.source.node && map.source.node->type != NODE_ELEMENT)
            map.source.node = nullptr; // without attributes, nothing is kept
        m_maps.push_back(std::move(map));
    }

    void useMap()
    {
        if (m_maps.empty())
            return;
        const HeldMap& map = oneOf(m_maps);
        const model::Node& node = map.source.orNone();
        LONG length = -1;
        map.object->get_length(&length);
        expect(static_cast<std::size_t>(length) == node.attributes.size(), "length of a map");
        ComPtr<IXMLDOMNode> item;
        map.object->getNamedItem(Bstr(L"x").get(), item.put());
        keepAsIs(item, node.attribute(L"x"), map.source.document);
        map.object->get_item(static_cast<LONG>(m_choose(3)), item.put());
    }

    void changeContent()
    {
        const Held held = pick();
        if (held.kind == NODE_ELEMENT && m_choose(2)) {
            static_cast<IXMLDOMElement&>(*held.object).setAttribute(Bstr(L"x").get(), Variant(9).get());
            return model::setAttribute(held.node, L"x", L"9");
        }
        expect(held.object->put_text(Bstr(L"val").get()) == S_OK, "put_text's answer");
        held.kind == NODE_ELEMENT ? model::setText(held.node, L"val") : model::setValue(held.node, L"val");
    }

    void clone()
    {
        const Held held = pick();
        if (held.kind != NODE_ELEMENT)
            return;
        const bool deep = m_choose(2);
        ComPtr<IXMLDOMNode> copy;
        const HRESULT answer = held.object->cloneNode(deep ? VARIANT_TRUE : VARIANT_FALSE, copy.put());
        expect(answer == S_OK, "cloneNode's answer");
        keepAsIs(copy, held.node ? model::copyOf(*held.node, deep) : nullptr, held.document);
    }

    void save()
    {
        const HRESULT answer = oneOf(m_documents).asDocument().save(Variant(L"/dev/null").get());
        expect(answer == S_OK, "save's answer");
    }

    void release()
    {
        const auto drop = [this](auto& held) {
            if (!held.empty())
                held.erase(held.begin() + m_choose(static_cast<unsigned>(held.size())));
        };
        drop(m_nodes);
        drop(m_nodes);
        drop(m_lists);
        drop(m_maps);
        if (m_documents.size() > 1 && m_choose(6) == 0)
            oneOf(m_documents) = newDocument(); // the host lets go of one
    }

    std::function<unsigned(unsigned)> m_choose;
    std::string m_difference;
    std::vector<Held> m_documents;
    std::vector<Held> m_nodes;
    std::vector<HeldList> m_lists;
    std::vector<HeldMap> m_maps;
};

} // namespace

std::string makeCalls(std::function<unsigned(unsigned)> choose, const std::function<bool()>& goesOn,
                      std::size_t documents)
{
    CallMachine machine(std::move(choose), documents);
    while (goesOn()) {
        const std::string& difference = machine.step();
        if (!difference.empty())
            return difference;
    }
    return {};
}
