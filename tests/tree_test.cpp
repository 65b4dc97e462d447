// Walking, asking, reading and changing the tree, through the vtable.

#include "support/dom_fixture.h"

namespace
{

struct Tree : DomTest
{
    static DOMNodeType typeOf(IXMLDOMNode& node)
    {
        DOMNodeType type = NODE_INVALID;
        EXPECT_EQ(S_OK, node.get_nodeType(&type));
        return type;
    }
};

TEST_F(Tree, EveryKindOfNodeReportsItsTypeNameAndValue)
{
    const auto document = documentOf(L"<?xml version='1.0'?><a>t<![CDATA[c]]><!--k--><?p d?>&u;<b/></a>");
    const auto root = rootOf(document);
    std::wstring seen;
    for (const auto& node : kel::childrenOf(*root)) {
        Variant value;
        Bstr text;
        EXPECT_EQ(S_OK, node->get_nodeValue(value.put()));
        const bool hasText = node->get_text(text.put()) == S_OK;
        seen += std::to_wstring(typeOf(*node)) + L" " + nameOf(*node);
        seen += value.type() == VT_BSTR ? L"=" + std::wstring(value.text()) : L"";
        seen += hasText ? L"/" + std::wstring(text.c_str()) + L"; " : L"; ";
    }
    EXPECT_EQ(L"3 #text=t/t; 4 #cdata-section=c/c; 8 #comment=k; 7 p=d; 5 u=; 1 b/; ", seen);
    EXPECT_EQ(L"#document", nameOf(*document));
    EXPECT_EQ(NODE_DOCUMENT, typeOf(*document));
    EXPECT_EQ(NODE_PROCESSING_INSTRUCTION, typeOf(*firstChildOf(*document)));
}

TEST_F(Tree, ParentsChildrenAndOwnersAreReachedAndMissingOnesLeaveTheOutputAlone)
{
    const auto [document, root, text, attribute, list, map] = oneOfEach(L"<a x=''>t</a>");
    const auto top = parentOf(*root);
    EXPECT_EQ(NODE_DOCUMENT, typeOf(*top));
    EXPECT_FALSE(kel::query<IXMLDOMDocument>(*top, IID_IXMLDOMDocument));
    IXMLDOMNode* preset = root.get();
    EXPECT_EQ(S_FALSE, top->get_parentNode(&preset));
    EXPECT_EQ(S_FALSE, document->get_parentNode(&preset));
    EXPECT_EQ(S_FALSE, text->get_firstChild(&preset));
    EXPECT_EQ(S_FALSE, create(*document, NODE_ATTRIBUTE, L"free")->get_parentNode(&preset));
    EXPECT_EQ(root.get(), preset);
    EXPECT_EQ(document.get(), get(*document, &IXMLDOMNode::get_ownerDocument).get());
}

TEST_F(Tree, TheFirstDocumentElementIsKeptEvenThroughAReload)
{
    const auto document = newDocument();
    const auto none = rootOf(document);
    EXPECT_EQ(L"", nameOf(*none));
    EXPECT_EQ(NODE_ELEMENT, typeOf(*none));
    EXPECT_EQ(L"", textIn(*none));
    EXPECT_EQ(S_OK, none->put_text(Bstr(L"x").get()));
    EXPECT_EQ(S_OK, document->loadXML(Bstr(L"<a><b/></a>").get(), nullptr));
    EXPECT_EQ(none.get(), rootOf(document).get());

    const auto loaded = documentOf(L"<a><b/></a>");
    const auto old = rootOf(loaded);
    EXPECT_EQ(S_OK, loaded->loadXML(Bstr(L"<other/>").get(), nullptr));
    EXPECT_EQ(L"a", nameOf(*rootOf(loaded)));
    EXPECT_FALSE(parentOf(*old)) << "the old tree is out of the document";
}

TEST_F(Tree, ListsAreLiveAndTheirCursorOnlyGrows)
{
    const auto document = documentOf(L"<r><a/><b/><c/></r>");
    const auto root = rootOf(document);
    const auto list = listOf(*root);
    IXMLDOMNode* preset = root.get();
    for (const LONG index : {3, -1, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(S_FALSE, list->get_item(index, &preset));
        EXPECT_EQ(root.get(), preset);
    }
    std::wstring seen;
    ComPtr<IXMLDOMNode> node;
    while (list->nextNode(node.put()) == S_OK) {
        seen += nameOf(*node);
        if (seen == L"a")
            root->removeChild(node.get(), nullptr);
    }
    EXPECT_EQ(L"ac", seen) << "the node that moves into a passed place is not visited";
    EXPECT_FALSE(node);
    append(*root, *create(*document, NODE_ELEMENT, L"d"));
    EXPECT_EQ(3, lengthOf(*list));
    EXPECT_EQ(S_OK, list->nextNode(node.put())) << "what is appended before the end is visited";
    EXPECT_EQ(S_OK, list->reset());
    EXPECT_EQ(S_FALSE, list->nextNode(&preset));
    EXPECT_EQ(nullptr, preset);
}

TEST_F(Tree, MapsAnswerByNameAndByIndexAndDifferFromListsOutOfRange)
{
    const auto made = oneOfEach(L"<r x='1' y='2'>t</r>");
    for (const LONG index : {2, -1}) {
        IXMLDOMNode* preset = made.root.get();
        EXPECT_EQ(S_OK, made.map->get_item(index, &preset));
        EXPECT_EQ(nullptr, preset);
    }
    IXMLDOMNode* preset = made.root.get();
    EXPECT_EQ(S_FALSE, made.map->getNamedItem(Bstr(L"z").get(), &preset));
    EXPECT_EQ(S_FALSE, made.map->getNamedItem(nullptr, &preset));
    EXPECT_EQ(made.root.get(), preset);
    EXPECT_EQ(L"2", valueOf(*attributeOf(*made.root, L"y")));
}

TEST_F(Tree, SelectNodesFindsDescendantsByTagNameOnly)
{
    const auto document = documentOf(L"<a><b/><c><b/></c></a>");
    const auto root = rootOf(document);
    // Qt takes a null name for all children.
    for (const auto& [name, found] : {std::pair{L"b", 2}, {L"a", 0}, {L"//b", 0}, {L"", 0}, {nullptr, 2}}) {
        ComPtr<IXMLDOMNodeList> list;
        EXPECT_EQ(S_OK, root->selectNodes(Bstr(name).get(), list.put()));
        EXPECT_EQ(found, lengthOf(*list)) << (name ? name : L"(null)");
    }
}

TEST_F(Tree, ANullTextTakesOutTheFirstChildAsWell)
{
    const auto document = documentOf(L"<a>old<b/></a>");
    EXPECT_EQ(S_OK, rootOf(document)->put_text(nullptr));
    EXPECT_EQ("<a>\n    <b/></a>\n", saved(document));
}

TEST_F(Tree, SetAttributeFormatsByTypeAndLeavesOtherTypesAlone)
{
    const auto root = rootOf(documentOf(L"<a/>"));
    LONG formatted = 0;
    const auto expect = [&](const wchar_t* expected, VARTYPE type, auto VARIANT::*member, auto number) {
        VARIANT value{};
        value.vt = type;
        value.*member = number;
        const std::wstring name = L"v" + std::to_wstring(type);
        EXPECT_EQ(S_FALSE, root->setAttribute(nullptr, value));
        EXPECT_EQ(S_OK, root->setAttribute(Bstr(name.c_str()).get(), value));
        if (expected) {
            EXPECT_EQ(expected, valueOf(*attributeOf(*root, name)));
            ++formatted;
        }
    };
    expect(L"-5", VT_I2, &VARIANT::iVal, SHORT{-5});
    expect(L"-6", VT_I4, &VARIANT::lVal, LONG{-6});
    expect(L"-7", VT_INT, &VARIANT::lVal, LONG{-7});
    expect(L"-9000000000", VT_I8, &VARIANT::llVal, std::int64_t{-9000000000});
    expect(L"65535", VT_UI2, &VARIANT::uiVal, USHORT{65535});
    expect(L"4294967295", VT_UI4, &VARIANT::ulVal, ULONG{4294967295u});
    expect(L"4294967294", VT_UINT, &VARIANT::ulVal, ULONG{4294967294u});
    expect(L"18446744073709551615", VT_UI8, &VARIANT::ullVal, ~std::uint64_t{0});
    expect(L"0.5", VT_R4, &VARIANT::fltVal, 0.5f);
    expect(L"-1.25", VT_R8, &VARIANT::dblVal, -1.25);
    expect(L"45000.5", VT_DATE, &VARIANT::dblVal, 45000.5);
    const Bstr text(L"s<\U0001F600");
    expect(text.c_str(), VT_BSTR, &VARIANT::bstrVal, text.get());
    for (const VARTYPE ignored : {VT_EMPTY, VT_NULL, VT_CY, VT_BOOL, VT_I1, VT_UI1, VT_DISPATCH, VT_ERROR})
        expect(nullptr, ignored, &VARIANT::lVal, LONG{1});
    LONG number = 1;
    expect(nullptr, VT_I4 | VT_BYREF, &VARIANT::plVal, &number);
    EXPECT_EQ(formatted, lengthOf(*mapOf(*root)));
}

TEST_F(Tree, NothingButElementsAndAttributesIsCreatedAndAppendingMakesANewObject)
{
    const auto document = newDocument();
    IXMLDOMNode* preset = document.get();
    EXPECT_EQ(S_FALSE, document->createNode(Variant(1).get(), nullptr, nullptr, &preset));
    for (const Variant& type : {Variant(3), Variant(0), Variant(L"element")})
        EXPECT_EQ(S_OK, document->createNode(type.get(), Bstr(L"n").get(), nullptr, &preset));
    EXPECT_EQ(document.get(), preset);
    const auto root = create(*document, NODE_ELEMENT, L"r");
    EXPECT_NE(root.get(), append(*document, *root).get());
    EXPECT_EQ("<r/>\n", saved(document));
}

} // namespace
