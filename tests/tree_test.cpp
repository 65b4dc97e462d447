// Walking, asking, reading and changing the tree, through the vtable.

#include "support/dom_fixture.h"

#include <vector>

namespace
{

class Tree : public DomTest
{
protected:
    static DOMNodeType typeOf(IXMLDOMNode& node)
    {
        DOMNodeType type = NODE_INVALID;
        EXPECT_EQ(S_OK, node.get_nodeType(&type));
        return type;
    }
    static LONG lengthOf(IXMLDOMNodeList& list)
    {
        LONG length = -7;
        EXPECT_EQ(S_OK, list.get_length(&length));
        return length;
    }
    static std::wstring valueOf(IXMLDOMNode& node)
    {
        VARIANT value{};
        EXPECT_EQ(S_OK, node.get_nodeValue(&value));
        Bstr text;
        *text.put() = value.vt == VT_BSTR ? value.bstrVal : nullptr;
        return text ? std::wstring(text.c_str(), text.length()) : L"(none)";
    }
    static ComPtr<IXMLDOMElement> asElement(const ComPtr<IXMLDOMNode>& node)
    {
        ComPtr<IXMLDOMElement> element;
        EXPECT_EQ(S_OK, node->QueryInterface(IID_IXMLDOMElement, reinterpret_cast<void**>(element.put())));
        return element;
    }
    static ComPtr<IXMLDOMNode> append(IXMLDOMNode& parent, IXMLDOMNode& child)
    {
        ComPtr<IXMLDOMNode> result;
        EXPECT_EQ(S_OK, parent.appendChild(&child, result.put()));
        return result;
    }
};

TEST_F(Tree, EveryKindOfNodeReportsItsTypeNameAndValue)
{
    auto document = documentOf(L"<?xml version='1.0'?><a>t<![CDATA[c]]><!--k--><?p d?>&u;<b/></a>");
    auto root = rootOf(document);
    const struct
    {
        DOMNodeType type;
        const wchar_t* name;
        const wchar_t* value;
    } expected[] = {{NODE_TEXT, L"#text", L"t"},
                    {NODE_CDATA_SECTION, L"#cdata-section", L"c"},
                    {NODE_COMMENT, L"#comment", L"k"},
                    {NODE_PROCESSING_INSTRUCTION, L"p", L"d"},
                    {NODE_ENTITY_REFERENCE, L"u", L""}};
    LONG index = 0;
    for (const auto& node : expected) {
        auto child = childAt(*root, index++);
        ASSERT_TRUE(child);
        EXPECT_EQ(node.type, typeOf(*child));
        EXPECT_EQ(node.name, textOf(child, &IXMLDOMNode::get_nodeName));
        EXPECT_EQ(node.value, valueOf(*child));
        EXPECT_EQ(node.type == NODE_TEXT            ? L"t"
                  : node.type == NODE_CDATA_SECTION ? L"c"
                                                    : L"(result 1)",
                  textOf(child, &IXMLDOMNode::get_text));
    }
    EXPECT_EQ(L"#document", textOf(document, &IXMLDOMNode::get_nodeName));
    EXPECT_EQ(NODE_DOCUMENT, typeOf(*document));
    EXPECT_EQ(NODE_PROCESSING_INSTRUCTION, typeOf(*firstChildOf(*document)));
    VARIANT untouched = variantOf(5);
    EXPECT_EQ(S_OK, root->get_nodeValue(&untouched));
    EXPECT_EQ(5, untouched.lVal);
}

TEST_F(Tree, ParentsChildrenAndOwnersAreReachedAndMissingOnesLeaveTheOutputAlone)
{
    auto document = documentOf(L"<a x=''>t</a>");
    auto root = rootOf(document);
    ComPtr<IXMLDOMNode> top, attributeParent;
    ASSERT_EQ(S_OK, root->get_parentNode(top.put()));
    EXPECT_EQ(NODE_DOCUMENT, typeOf(*top));
    void* asDocument = nullptr;
    EXPECT_EQ(E_NOINTERFACE, top->QueryInterface(IID_IXMLDOMDocument, &asDocument));
    IXMLDOMNode* preset = root.get();
    EXPECT_EQ(S_FALSE, top->get_parentNode(&preset));
    EXPECT_EQ(S_FALSE, document->get_parentNode(&preset));
    EXPECT_EQ(S_FALSE, firstChildOf(*root)->get_firstChild(&preset));
    EXPECT_EQ(root.get(), preset);

    auto attribute = attributeOf(*root, L"x");
    VARIANT_BOOL has = 7;
    EXPECT_EQ(S_OK, attribute->hasChildNodes(&has));
    EXPECT_EQ(1, has);
    EXPECT_EQ(NODE_TEXT, typeOf(*firstChildOf(*attribute)));
    ASSERT_EQ(S_OK, attribute->get_parentNode(attributeParent.put()));
    EXPECT_EQ(NODE_ELEMENT, typeOf(*attributeParent));
    EXPECT_EQ(S_FALSE, create(*document, NODE_ATTRIBUTE, L"free")->get_parentNode(&preset));
    EXPECT_EQ(S_OK, newDocument()->hasChildNodes(&has));
    EXPECT_EQ(0, has);
    ComPtr<IXMLDOMDocument> self;
    EXPECT_EQ(S_OK, document->get_ownerDocument(self.put()));
    EXPECT_EQ(document.get(), self.get());
}

TEST_F(Tree, TheFirstDocumentElementIsKeptEvenThroughAReload)
{
    auto document = newDocument();
    auto none = rootOf(document);
    EXPECT_EQ(L"", textOf(none, &IXMLDOMNode::get_nodeName));
    EXPECT_EQ(NODE_ELEMENT, typeOf(*none));
    EXPECT_EQ(L"", textOf(none, &IXMLDOMNode::get_text));
    EXPECT_EQ(S_OK, none->put_text(Bstr(L"x").get()));
    EXPECT_EQ(S_OK, document->loadXML(Bstr(L"<a><b/></a>").get(), nullptr));
    EXPECT_EQ(none.get(), rootOf(document).get());

    auto loaded = documentOf(L"<a><b/></a>");
    auto old = rootOf(loaded);
    EXPECT_EQ(S_OK, loaded->loadXML(Bstr(L"<other/>").get(), nullptr));
    EXPECT_EQ(L"a", textOf(rootOf(loaded), &IXMLDOMNode::get_nodeName));
    IXMLDOMNode* preset = old.get();
    EXPECT_EQ(S_FALSE, old->get_parentNode(&preset)) << "the old tree is out of the document";
}

TEST_F(Tree, ListsAreLiveAndTheirCursorOnlyGrows)
{
    auto document = documentOf(L"<r><a/><b/><c/></r>");
    auto root = rootOf(document);
    ComPtr<IXMLDOMNodeList> list;
    ASSERT_EQ(S_OK, root->get_childNodes(list.put()));
    IXMLDOMNode* preset = root.get();
    for (const LONG index : {3, -1, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(S_FALSE, list->get_item(index, &preset));
        EXPECT_EQ(root.get(), preset);
    }
    std::wstring seen;
    ComPtr<IXMLDOMNode> node;
    while (list->nextNode(node.put()) == S_OK) {
        seen += textOf(node, &IXMLDOMNode::get_nodeName);
        if (seen == L"a")
            root->removeChild(node.get(), nullptr);
    }
    EXPECT_EQ(L"ac", seen) << "the node that moves into a passed place is not visited";
    EXPECT_FALSE(node);
    append(*root, *create(*document, NODE_ELEMENT, L"d"));
    EXPECT_EQ(3, lengthOf(*list));
    EXPECT_EQ(S_OK, list->nextNode(node.put())) << "what is appended before the end is visited";
    EXPECT_EQ(S_OK, list->reset());
    preset = root.get();
    EXPECT_EQ(S_FALSE, list->nextNode(&preset));
    EXPECT_EQ(nullptr, preset);
}

TEST_F(Tree, MapsAnswerByNameAndByIndexAndDifferFromListsOutOfRange)
{
    auto document = documentOf(L"<r x='1' y='2'>t</r>");
    auto root = rootOf(document);
    ComPtr<IXMLDOMNamedNodeMap> map;
    ASSERT_EQ(S_OK, root->get_attributes(map.put()));
    for (const LONG index : {2, -1}) {
        IXMLDOMNode* preset = root.get();
        EXPECT_EQ(S_OK, map->get_item(index, &preset));
        EXPECT_EQ(nullptr, preset);
    }
    IXMLDOMNode* preset = root.get();
    EXPECT_EQ(S_FALSE, map->getNamedItem(Bstr(L"z").get(), &preset));
    EXPECT_EQ(S_FALSE, map->getNamedItem(nullptr, &preset));
    EXPECT_EQ(root.get(), preset);
    VARIANT value{};
    EXPECT_EQ(S_OK, attributeOf(*root, L"y")->get_value(&value));
    EXPECT_STREQ(L"2", value.bstrVal);
    SysFreeString(value.bstrVal);
    const auto text = firstChildOf(*root);
    const auto attribute = attributeOf(*root, L"x");
    for (IXMLDOMNode* node : {static_cast<IXMLDOMNode*>(document.get()), text.get(),
                              static_cast<IXMLDOMNode*>(attribute.get())}) {
        LONG length = 7;
        EXPECT_EQ(S_OK, node->get_attributes(map.put()));
        EXPECT_EQ(S_OK, map->get_length(&length));
        EXPECT_EQ(0, length);
    }
}

TEST_F(Tree, SelectNodesFindsDescendantsByTagNameOnly)
{
    auto document = documentOf(L"<a><b/><c><b/></c></a>");
    auto root = rootOf(document);
    ComPtr<IXMLDOMNodeList> list;
    const struct
    {
        IXMLDOMNode* from;
        const wchar_t* name;
        LONG found;
    } cases[] = {{document.get(), L"b", 2}, {document.get(), L"a", 1}, {root.get(), L"a", 0},
                 {root.get(), L"b", 2},     {root.get(), L"//b", 0},   {document.get(), L"", 0},
                 {root.get(), nullptr, 2}}; // Qt takes a null name for all children
    for (const auto& test : cases) {
        EXPECT_EQ(S_OK, test.from->selectNodes(Bstr(test.name).get(), list.put()));
        EXPECT_EQ(test.found, lengthOf(*list)) << (test.name ? test.name : L"(null)");
    }
    EXPECT_EQ(S_OK, newDocument()->selectNodes(Bstr(L"b").get(), list.put()));
    EXPECT_EQ(0, lengthOf(*list));
}

TEST_F(Tree, PutTextTakesOutTheFirstChildOnly)
{
    const struct
    {
        const wchar_t* before;
        const wchar_t* text;
        const char* after;
    } cases[] = {{L"<a>old</a>", L"new", "<a>new</a>\n"},
                 {L"<a/>", L"<&>", "<a>&lt;&amp;></a>\n"},
                 {L"<a><b/><c/></a>", L"new", "<a>\n    <c/>new</a>\n"},
                 {L"<a><!--k-->x</a>", L"new", "<a>xnew</a>\n"},
                 {L"<a>old</a>", nullptr, "<a></a>\n"}};
    for (const auto& test : cases) {
        auto document = documentOf(test.before);
        EXPECT_EQ(S_OK, rootOf(document)->put_text(Bstr(test.text).get()));
        EXPECT_EQ(test.after, saved(document));
    }
    auto document = documentOf(L"<a x='1'>t</a>");
    auto root = rootOf(document);
    EXPECT_EQ(S_OK, firstChildOf(*root)->put_text(Bstr(L"u").get()));
    EXPECT_EQ(S_OK, attributeOf(*root, L"x")->put_text(Bstr(L"2").get()));
    EXPECT_EQ("<a x=\"2\">u</a>\n", saved(document));
}

TEST_F(Tree, SetAttributeFormatsByTypeAndLeavesOtherTypesAlone)
{
    auto document = documentOf(L"<a/>");
    auto root = rootOf(document);
    const auto set = [&](VARTYPE type, auto VARIANT::*member, auto number) {
        VARIANT value{};
        value.vt = type;
        value.*member = number;
        const Bstr name((L"v" + std::to_wstring(type)).c_str());
        EXPECT_EQ(S_FALSE, root->setAttribute(nullptr, value));
        EXPECT_EQ(S_OK, root->setAttribute(name.get(), value));
    };
    set(VT_I2, &VARIANT::iVal, SHORT{-5});
    set(VT_I4, &VARIANT::lVal, LONG{-6});
    set(VT_INT, &VARIANT::lVal, LONG{-7});
    set(VT_I8, &VARIANT::llVal, std::int64_t{-9000000000});
    set(VT_UI2, &VARIANT::uiVal, USHORT{65535});
    set(VT_UI4, &VARIANT::ulVal, ULONG{4294967295u});
    set(VT_UINT, &VARIANT::ulVal, ULONG{4294967294u});
    set(VT_UI8, &VARIANT::ullVal, ~std::uint64_t{0});
    set(VT_R4, &VARIANT::fltVal, 0.5f);
    set(VT_R8, &VARIANT::dblVal, -1.25);
    set(VT_DATE, &VARIANT::dblVal, 45000.5);
    Bstr text(L"s<\U0001F600");
    set(VT_BSTR, &VARIANT::bstrVal, text.get());
    for (const VARTYPE ignored : {VT_EMPTY, VT_NULL, VT_CY, VT_BOOL, VT_I1, VT_UI1, VT_DISPATCH, VT_ERROR})
        set(ignored, &VARIANT::lVal, LONG{1});
    set(VT_I4 | VT_BYREF, &VARIANT::byref, static_cast<void*>(&text));
    const struct
    {
        VARTYPE type;
        const wchar_t* text;
    } expected[] = {{VT_I2, L"-5"},           {VT_I4, L"-6"},
                    {VT_INT, L"-7"},          {VT_I8, L"-9000000000"},
                    {VT_UI2, L"65535"},       {VT_UI4, L"4294967295"},
                    {VT_UINT, L"4294967294"}, {VT_UI8, L"18446744073709551615"},
                    {VT_R4, L"0.5"},          {VT_R8, L"-1.25"},
                    {VT_DATE, L"45000.5"},    {VT_BSTR, L"s<\U0001F600"}};
    for (const auto& test : expected) {
        VARIANT value{};
        attributeOf(*root, (L"v" + std::to_wstring(test.type)).c_str())->get_value(&value);
        EXPECT_STREQ(test.text, value.bstrVal);
        SysFreeString(value.bstrVal);
    }
    ComPtr<IXMLDOMNamedNodeMap> map;
    root->get_attributes(map.put());
    LONG length = 0;
    map->get_length(&length);
    EXPECT_EQ(12, length);
}

TEST_F(Tree, TextOfAnyLengthAndAnyCodePointComesOutWhole)
{
    auto document = documentOf(L"<a/>");
    auto root = rootOf(document);
    for (const std::size_t length : {0u, 1u, 1022u, 1023u, 1024u, 1025u, 200000u}) {
        for (const wchar_t unit : {L'x', L'\u20ac', wchar_t(0x1F600)}) {
            const std::wstring text(length, unit);
            EXPECT_EQ(S_OK, root->put_text(Bstr(text.c_str()).get()));
            EXPECT_TRUE(text == textOf(root, &IXMLDOMNode::get_text)) << length;
        }
    }
    const wchar_t name[] = {0x1F600, 0};
    EXPECT_EQ(name, textOf(create(*document, NODE_ELEMENT, name), &IXMLDOMNode::get_nodeName));
}

TEST_F(Tree, ADocumentIsBuiltFromNothingAndItsPartsMovedAndCopied)
{
    auto document = newDocument();
    IXMLDOMNode* preset = document.get();
    EXPECT_EQ(S_FALSE, document->createNode(variantOf(1), nullptr, nullptr, &preset));
    const Bstr byName(L"element");
    for (const VARIANT& type : {variantOf(3), variantOf(0), variantOf(byName)})
        EXPECT_EQ(S_OK, document->createNode(type, Bstr(L"n").get(), nullptr, &preset));
    EXPECT_EQ(document.get(), preset);

    auto root = create(*document, NODE_ELEMENT, L"r");
    auto placed = append(*document, *root);
    EXPECT_NE(root.get(), placed.get());
    auto child = append(*root, *create(*document, NODE_ELEMENT, L"c"));
    child->put_text(Bstr(L"t").get());
    EXPECT_EQ("<r>\n    <c>t</c>\n</r>\n", saved(document));

    ComPtr<IXMLDOMNode> deep, shallow, removed, none;
    EXPECT_EQ(S_OK, asElement(child)->cloneNode(1, deep.put()));
    EXPECT_EQ(S_OK, asElement(child)->cloneNode(0, shallow.put()));
    append(*root, *shallow);
    append(*root, *deep);
    EXPECT_EQ("<r>\n    <c>t</c>\n    <c/>\n    <c>t</c>\n</r>\n", saved(document));
    EXPECT_EQ(S_OK, root->removeChild(child.get(), removed.put()));
    EXPECT_EQ(L"t", textOf(removed, &IXMLDOMNode::get_text));
    EXPECT_EQ(S_OK, root->removeChild(removed.get(), none.put()));
    EXPECT_EQ(L"", textOf(none, &IXMLDOMNode::get_nodeName)) << "no child of the element: it holds none";
    EXPECT_EQ(S_OK, document->removeChild(child.get(), removed.put()));
    EXPECT_EQ(L"c", textOf(removed, &IXMLDOMNode::get_nodeName))
        << "other nodes hand the argument's node back";
}

TEST_F(Tree, AWalkThatReleasesInAnyOrderLeavesNothing)
{
    QString xml = QStringLiteral("<r>");
    for (int index = 0; index < 2000; ++index)
        xml += QStringLiteral("<a x='%1'><b>t</b><!--k--></a>").arg(index);
    const std::wstring text = (xml + QStringLiteral("</r>")).toStdWString();
    for (const bool oldestFirst : {false, true}) {
        expectNothingLeft([&] {
            std::vector<ComPtr<IUnknown>> held;
            auto document = documentOf(text.c_str());
            const auto hold = [&](auto pointer) { held.push_back(ComPtr<IUnknown>(pointer.get())); };
            ComPtr<IXMLDOMNodeList> list;
            rootOf(document)->get_childNodes(list.put());
            ComPtr<IXMLDOMNode> node;
            while (list->nextNode(node.put()) == S_OK) {
                ComPtr<IXMLDOMNamedNodeMap> map;
                ComPtr<IXMLDOMDocument> owner;
                node->get_attributes(map.put());
                node->get_ownerDocument(owner.put());
                hold(node);
                hold(map);
                hold(owner);
                hold(attributeOf(*node, L"x"));
                hold(firstChildOf(*node));
            }
            hold(list);
            list.reset();
            document.reset();
            if (oldestFirst)
                for (auto& object : held)
                    object.reset();
            while (!held.empty())
                held.pop_back();
        });
    }
}

} // namespace
