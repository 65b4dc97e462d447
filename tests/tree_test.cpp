// What calls answer where nothing is found, and how values become text; all else is the call machine's.

#include "support/dom_fixture.h"

namespace
{

using Tree = DomTest;

TEST_F(Tree, WhatIsNotFoundLeavesTheOutputAloneButInMapsAndAtTheEndOfAWalk)
{
    const auto made = oneOfEach(L"<a x=''>t</a>");
    const auto [document, root, text, attribute, list, map] = made;
    const auto free = create(*document, NODE_ATTRIBUTE, L"free");
    IXMLDOMNode* out = root.get();
    EXPECT_EQ(S_FALSE, document->get_parentNode(&out));
    EXPECT_EQ(S_FALSE, text->get_firstChild(&out));
    EXPECT_EQ(S_FALSE, free->get_parentNode(&out));
    for (const LONG index : {1, -1, INT32_MAX, INT32_MIN})
        EXPECT_EQ(S_FALSE, list->get_item(index, &out));
    for (const wchar_t* const name : {L"z", static_cast<const wchar_t*>(nullptr)})
        EXPECT_EQ(S_FALSE, map->getNamedItem(Bstr(name).get(), &out));
    EXPECT_EQ(S_FALSE, document->createNode(Variant(1).get(), nullptr, nullptr, &out));
    for (const Variant& type : {Variant(3), Variant(0), Variant(L"element")})
        EXPECT_EQ(S_OK, document->createNode(type.get(), Bstr(L"n").get(), nullptr, &out));
    EXPECT_EQ(root.get(), out);

    for (const LONG index : {1, -1}) {
        out = root.get();
        EXPECT_EQ(S_OK, map->get_item(index, &out));
        EXPECT_EQ(nullptr, out);
    }
    ComPtr<IXMLDOMNode> node;
    EXPECT_EQ(S_OK, list->nextNode(node.put()));
    EXPECT_EQ(S_OK, list->reset());
    out = root.get();
    EXPECT_EQ(S_FALSE, list->nextNode(&out)) << "the cursor only grows";
    EXPECT_EQ(nullptr, out);
    EXPECT_NE(free.get(), append(*root, *free).get()) << "a new object";
    EXPECT_FALSE(kel::query<IXMLDOMDocument>(*parentOf(*root), IID_IXMLDOMDocument));
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

} // namespace
