// One function for each kind of call: make it, let the model do the same, compare.

#include "support/call_machine.h"

#include "KelComWrapper/bstr.h"
#include "KelXmlLib/guids.h"
#include "KelXmlLib/module.h"

#include <algorithm>

using kel::Bstr;
using kel::ComPtr;
using model::NodePtr;

namespace
{

const wchar_t* const kTexts[] = {
    L"<a x='1' y='2'>t<b><c z='3'/>u</b><!--k--><![CDATA[cd]]><?pi d?></a>",
    L"<!DOCTYPE r [<!ENTITY e 'v'><!NOTATION n SYSTEM 's'>]><r>&e;&u;<s/></r>",
    L"<?xml version='1.0'?><q/><!--z-->",
    L"<bad",
};

VARIANT variantOf(VARTYPE type, LONG number)
{
    VARIANT value{};
    value.vt = type;
    value.lVal = number;
    return value;
}

/// What an object over an attribute keeps alive.
NodePtr keeperOf(const NodePtr& node)
{
    const NodePtr parent = node && node->type == NODE_ATTRIBUTE ? node->parent.lock() : nullptr;
    return parent && parent->type == NODE_ELEMENT ? parent : nullptr;
}

} // namespace

CallMachine::CallMachine(std::function<unsigned(unsigned)> choose) : m_choose(std::move(choose))
{
    DllMain(nullptr, 1, nullptr);
    for (int index = 0; index < 2; ++index) {
        ComPtr<IXMLDOMDocument> document;
        DllGetClassObject(CLSID_DOMDocument, IID_IXMLDOMDocument, reinterpret_cast<void**>(document.put()));
        document->loadXML(Bstr(L"<i/>").get(), nullptr);
        QDomDocument parsed;
        parsed.setContent(QStringLiteral("<i/>"));
        const NodePtr node = model::fromQt(parsed);
        m_documents.push_back({ComPtr<IXMLDOMNode>(document.get()), node, node, nullptr, NODE_DOCUMENT});
    }
}

CallMachine::~CallMachine()
{
    while (!m_nodes.empty() || !m_lists.empty() || !m_maps.empty())
        release();
}

std::string CallMachine::step()
{
    switch (m_choose(20)) {
    case 0:
        load();
        break;
    case 1:
    case 2:
        create();
        break;
    case 3:
    case 4:
    case 5:
    case 6:
        appendOrRemove(true);
        break;
    case 7:
    case 8:
        appendOrRemove(false);
        break;
    case 9:
    case 10:
        walkUpOrDown();
        break;
    case 11:
        makeList(false);
        break;
    case 12:
        makeList(true);
        break;
    case 13:
        useList();
        break;
    case 14:
        makeMap();
        break;
    case 15:
        useMap();
        break;
    case 16:
        changeContent();
        break;
    case 17:
        clone();
        break;
    case 18:
        save();
        break;
    default:
        release();
        break;
    }
    if (m_difference.empty() && !m_nodes.empty())
        compare(m_nodes[m_choose(static_cast<unsigned>(m_nodes.size()))]);
    return m_difference;
}

CallMachine::Held CallMachine::pick()
{
    if (m_nodes.empty() || m_choose(8) == 0)
        return m_documents[m_choose(2)];
    return m_nodes[m_choose(static_cast<unsigned>(m_nodes.size()))];
}

CallMachine::Held& CallMachine::keep(ComPtr<IXMLDOMNode> object, NodePtr node, const NodePtr& document,
                                     DOMNodeType kind)
{
    const NodePtr keeper = keeperOf(node);
    m_nodes.push_back({std::move(object), std::move(node), document, keeper, kind});
    compare(m_nodes.back());
    return m_nodes.back();
}

void CallMachine::keepAsIs(ComPtr<IXMLDOMNode> object, const NodePtr& node, const NodePtr& document)
{
    const int type = node ? node->type : 0;
    keep(std::move(object), node, document,
         type == NODE_ELEMENT     ? NODE_ELEMENT
         : type == NODE_ATTRIBUTE ? NODE_ATTRIBUTE
                                  : NODE_INVALID);
}

void CallMachine::expect(bool holds, const char* what)
{
    if (!holds && m_difference.empty())
        m_difference = what;
}

void CallMachine::compare(const Held& held)
{
    DOMNodeType type = NODE_INVALID;
    held.object->get_nodeType(&type);
    const int expected = held.kind != NODE_INVALID ? held.kind : held.node ? held.node->type : 21;
    expect(static_cast<int>(type) == expected, "type");
    Bstr name;
    held.object->get_nodeName(name.put());
    expect(name.c_str() == (held.node ? held.node->name : std::wstring()), "name");
    VARIANT_BOOL has = 7;
    held.object->hasChildNodes(&has);
    expect(has == (held.node && !held.node->children.empty()), "children");
    ComPtr<IXMLDOMNode> parent;
    held.object->get_parentNode(parent.put());
    const NodePtr above = held.node ? held.node->parent.lock() : nullptr;
    expect(static_cast<bool>(parent) == static_cast<bool>(above), "parent");
    if (parent && above) {
        parent->get_nodeName(name.put());
        expect(name.c_str() == above->name, "parent's name");
    }
    if (held.kind == NODE_ELEMENT) {
        Bstr text;
        held.object->get_text(text.put());
        expect(text.c_str() == (held.node ? held.node->text() : std::wstring()), "text");
    }
    if (held.kind == NODE_INVALID || held.kind == NODE_ATTRIBUTE) {
        VARIANT value{};
        if (held.kind == NODE_ATTRIBUTE)
            static_cast<IXMLDOMAttribute&>(*held.object).get_value(&value);
        else
            held.object->get_nodeValue(&value);
        Bstr owned;
        owned.reset(value.bstrVal);
        expect(owned.c_str() == (held.node ? held.node->value : std::wstring()), "value");
    }
}

void CallMachine::load()
{
    if (m_choose(3) != 0)
        return;
    Held& document = m_documents[m_choose(2)];
    const wchar_t* const text = kTexts[m_choose(4)];
    QDomDocument parsed;
    const bool verdict = parsed.setContent(QString::fromWCharArray(text));
    const HRESULT result = static_cast<IXMLDOMDocument&>(*document.object).loadXML(Bstr(text).get(), nullptr);
    expect(result == (verdict ? S_OK : S_FALSE), "verdict");
    for (const NodePtr& child : document.node->children)
        child->parent.reset();
    const NodePtr fresh = model::fromQt(parsed);
    document.node->children = fresh->children;
    for (const NodePtr& child : document.node->children)
        child->parent = document.node;
}

void CallMachine::create()
{
    Held& document = m_documents[m_choose(2)];
    const bool element = m_choose(3) != 0;
    const wchar_t* const name = element ? L"e" : m_choose(2) ? L"x" : L"w";
    ComPtr<IXMLDOMNode> made;
    static_cast<IXMLDOMDocument&>(*document.object)
        .createNode(variantOf(VT_I4, element ? 1 : 2), Bstr(name).get(), nullptr, made.put());
    keepAsIs(made, model::make(element ? NODE_ELEMENT : NODE_ATTRIBUTE, name), document.document);
}

void CallMachine::appendOrRemove(bool append)
{
    const Held parent = pick();
    Held child = pick();
    if (!append && m_choose(2) && parent.node && !parent.node->children.empty()) {
        const auto index = m_choose(static_cast<unsigned>(parent.node->children.size()));
        ComPtr<IXMLDOMNodeList> list;
        parent.object->get_childNodes(list.put());
        ComPtr<IXMLDOMNode> item;
        if (list->get_item(static_cast<LONG>(index), item.put()) != S_OK)
            return expect(false, "item of a list of children");
        keepAsIs(item, parent.node->children[index], parent.document);
        child = m_nodes.back();
    }
    ComPtr<IXMLDOMNode> result;
    NodePtr wrapped = child.node;
    if (append) {
        expect(parent.object->appendChild(child.object.get(), result.put()) == S_OK, "appendChild's answer");
        model::append(parent.node, child.node);
    } else {
        expect(parent.object->removeChild(child.object.get(), result.put()) == S_OK, "removeChild's answer");
        const bool removed = model::remove(parent.node, child.node);
        if (parent.kind == NODE_ELEMENT && child.kind == NODE_ELEMENT && !removed)
            wrapped = nullptr;
    }
    const DOMNodeType kind = child.kind == NODE_DOCUMENT ? NODE_INVALID : child.kind;
    keep(result, wrapped, parent.document, kind);
}

void CallMachine::walkUpOrDown()
{
    const Held from = pick();
    ComPtr<IXMLDOMNode> found;
    NodePtr expected;
    if (m_choose(2)) {
        from.object->get_parentNode(found.put());
        expected = from.node ? from.node->parent.lock() : nullptr;
    } else {
        from.object->get_firstChild(found.put());
        expected = from.node && !from.node->children.empty() ? from.node->children.front() : nullptr;
    }
    expect(static_cast<bool>(found) == static_cast<bool>(expected), "whether there is a node");
    if (found && expected)
        keepAsIs(found, expected, from.document);
}

void CallMachine::makeList(bool byTagName)
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

void CallMachine::useList()
{
    if (m_lists.empty())
        return;
    HeldList& list = m_lists[m_choose(static_cast<unsigned>(m_lists.size()))];
    std::vector<NodePtr> expected;
    if (list.source.node && list.byTagName)
        model::collect(list.source.node, list.tag, expected);
    else if (list.source.node)
        expected = list.source.node->children;
    LONG length = -1;
    list.object->get_length(&length);
    if (static_cast<std::size_t>(length) != expected.size())
        return expect(false, "length of a list");
    ComPtr<IXMLDOMNode> item;
    if (m_choose(2)) {
        const bool atEnd = list.cursor >= expected.size();
        expect(list.object->nextNode(item.put()) == (atEnd ? S_FALSE : S_OK), "nextNode's answer");
        if (item && !atEnd)
            keepAsIs(item, expected[list.cursor++], list.source.document);
    } else {
        const unsigned index = m_choose(4);
        expect(list.object->get_item(static_cast<LONG>(index), item.put()) ==
                   (index < expected.size() ? S_OK : S_FALSE),
               "get_item's answer");
        if (item && index < expected.size())
            keepAsIs(item, expected[index], list.source.document);
    }
}

void CallMachine::makeMap()
{
    HeldMap map{nullptr, pick()};
    map.source.object->get_attributes(map.object.put());
    map.source.object.reset();
    map.source.keeper = nullptr;
    if (map.source.node && map.source.node->type != NODE_ELEMENT)
        map.source.node = nullptr;
    if (map.source.node && map.source.node->type != NODE_ELEMENT)
        map.source.node = nullptr; // without attributes, nothing is kept
    m_maps.push_back(std::move(map));
}

void CallMachine::useMap()
{
    if (m_maps.empty())
        return;
    const HeldMap& map = m_maps[m_choose(static_cast<unsigned>(m_maps.size()))];
    const std::size_t expected = map.source.node ? map.source.node->attributes.size() : 0;
    LONG length = -1;
    map.object->get_length(&length);
    expect(static_cast<std::size_t>(length) == expected, "length of a map");
    ComPtr<IXMLDOMNode> item;
    map.object->getNamedItem(Bstr(L"x").get(), item.put());
    const NodePtr attribute = map.source.node ? map.source.node->attribute(L"x") : nullptr;
    expect(static_cast<bool>(item) == static_cast<bool>(attribute), "whether there is an attribute");
    if (item && attribute)
        keepAsIs(item, attribute, map.source.document);
    map.object->get_item(static_cast<LONG>(m_choose(3)), item.put());
}

void CallMachine::changeContent()
{
    const Held held = pick();
    const bool attribute = held.kind == NODE_ELEMENT && m_choose(2);
    if (attribute) {
        static_cast<IXMLDOMElement&>(*held.object).setAttribute(Bstr(L"x").get(), variantOf(VT_I4, 9));
        model::setAttribute(held.node, L"x", L"9");
        return;
    }
    expect(held.object->put_text(Bstr(L"val").get()) == S_OK, "put_text's answer");
    held.kind == NODE_ELEMENT ? model::setText(held.node, L"val") : model::setValue(held.node, L"val");
}

void CallMachine::clone()
{
    const Held held = pick();
    if (held.kind != NODE_ELEMENT)
        return;
    const bool deep = m_choose(2);
    ComPtr<IXMLDOMNode> copy;
    expect(held.object->cloneNode(deep ? VARIANT_TRUE : VARIANT_FALSE, copy.put()) == S_OK,
           "cloneNode's answer");
    expect(static_cast<bool>(copy) == static_cast<bool>(held.node), "whether there is a copy");
    if (copy && held.node)
        keepAsIs(copy, model::copyOf(*held.node, deep), held.document);
}

void CallMachine::save()
{
    VARIANT path = variantOf(VT_BSTR, 0);
    const Bstr name(L"/dev/null");
    path.bstrVal = name.get();
    expect(static_cast<IXMLDOMDocument&>(*m_documents[m_choose(2)].object).save(path) == S_OK,
           "save's answer");
}

void CallMachine::release()
{
    const auto drop = [this](auto& held) {
        if (!held.empty())
            held.erase(held.begin() + m_choose(static_cast<unsigned>(held.size())));
    };
    drop(m_nodes);
    drop(m_nodes);
    drop(m_lists);
    drop(m_maps);
    if (m_choose(6) != 0)
        return;
    // A document that the host lets go of, and a new one in its place.
    Held& document = m_documents[m_choose(2)];
    ComPtr<IXMLDOMDocument> fresh;
    DllGetClassObject(CLSID_DOMDocument, IID_IXMLDOMDocument, reinterpret_cast<void**>(fresh.put()));
    fresh->loadXML(Bstr(L"<i/>").get(), nullptr);
    QDomDocument parsed;
    parsed.setContent(QStringLiteral("<i/>"));
    const NodePtr node = model::fromQt(parsed);
    document = {ComPtr<IXMLDOMNode>(fresh.get()), node, node, nullptr, NODE_DOCUMENT};
}
