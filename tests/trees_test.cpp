// Long lists and maps, numbers as texts, external entities, and the results of calls that find nothing or are
// refused. tree_calls.txt has the changes that would crash Qt.

#include "KelXmlLib/kel.h"
#include "support/compare_with_qt.h"
#include "support/dom_fixture.h"

#include <cfenv>
#include <cstring>
#include <set>

namespace
{

using Trees = DomTest;

TEST_F(Trees, TheLongListOfAnAttributeFollowsChangesAndEndsWithNull)
{
    const auto document = documentOf(L"<a x='1'/>");
    const auto root = rootOf(document);
    const auto attribute = attributeOf(*root, L"x");
    const auto list = listOf(*attribute);
    std::wstring last = L"#text";
    for (int count = 0; count < 40; ++count) {
        EXPECT_EQ(last, nameOf(*get(*list, &IXMLDOMNodeList::nextNode))) << "call " << count;
        last = L"e" + std::to_wstring(count);
        append(*attribute, *create(*document, NODE_ELEMENT, last.c_str()));
    }
    EXPECT_EQ(41, lengthOf(*list));
    root->setAttribute(Bstr(L"x").get(), Variant(2).get()); // removes the first child, and appends a text
    EXPECT_EQ(L"e0", nameOf(*itemsOf(*list)[0]));
    const std::uint32_t cursor = 0x80000000; // the cursor after 2^31 calls of nextNode
    std::memcpy(reinterpret_cast<std::byte*>(list.get()) + 80, &cursor, sizeof cursor);
    EXPECT_FALSE(get(*list, &IXMLDOMNodeList::nextNode));
}

TEST_F(Trees, ALargeMapReturnsEachAttributeOnceEvenAfterChanges)
{
    const auto document = documentOf(L"<a/>");
    const auto root = rootOf(document);
    const auto map = mapOf(*root);
    for (const int count : {2001, 2002}) {
        for (int number = 0; number < count; ++number)
            kel::Element(*root).setAttribute(L"a" + std::to_wstring(number), "v");
        std::set<std::wstring> names;
        for (const auto& attribute : itemsOf(*map))
            names.insert(nameOf(*attribute));
        EXPECT_EQ(static_cast<std::size_t>(count), names.size());
        kel::Element(*root).removeAttribute("a1");
        EXPECT_EQ(count - 1, lengthOf(*map));
    }
}

TEST_F(Trees, ANumberBecomesTheSameTextInAnyFloatingPointEnvironment)
{
    const auto root = rootOf(documentOf(L"<a/>"));
    const auto textOf = [&](double number) {
        root->setAttribute(Bstr(L"n").get(), Variant(number).get());
        return kel::Element(*root).attribute("n", "");
    };
    using Limits = std::numeric_limits<double>;
    for (const double number : {0.1, Limits::signaling_NaN(), Limits::denorm_min()}) {
        const std::string expected = textOf(number);
        feenableexcept(FE_ALL_EXCEPT);
        fesetround(FE_UPWARD);
        EXPECT_EQ(expected, textOf(number));
        EXPECT_EQ(FE_ALL_EXCEPT, fegetexcept()) << "the call must keep the environment, number " << number;
        fesetenv(FE_DFL_ENV);
    }
}

TEST_F(Trees, AForeignChildIsRefusedAndANullChildChangesNothing)
{
    const auto made = oneOfEach(L"<a x='1'>t<b/></a>");
    // The foreign object is a pointer to a vtable with null slots, so a call of a method would crash.
    const void* const vtable[120] = {};
    const void* const* foreignObject[1] = {vtable};
    auto* const foreign = reinterpret_cast<IXMLDOMNode*>(foreignObject);
    for (IXMLDOMNode* node : made.nodes()) {
        IXMLDOMNode* preset = made.root.get();
        EXPECT_EQ(S_OK, node->appendChild(nullptr, &preset)) << kel::Node(*node).name();
        EXPECT_EQ(S_OK, node->removeChild(nullptr, &preset)) << kel::Node(*node).name();
        EXPECT_EQ(S_FALSE, node->appendChild(foreign, &preset)) << kel::Node(*node).name();
        EXPECT_EQ(S_FALSE, node->removeChild(foreign, &preset)) << kel::Node(*node).name();
        EXPECT_EQ(made.root.get(), preset) << kel::Node(*node).name();
    }
    EXPECT_EQ("<a x=\"1\">t<b/>\n</a>\n", saved(*made.document));
}

TEST_F(Trees, ACallThatFindsNothingKeepsItsOutputOrSetsItToNull)
{
    const auto [document, root, text, attribute, list, map] = oneOfEach(L"<a x=''>t</a>");
    const auto free = create(*document, NODE_ATTRIBUTE, L"free");
    IXMLDOMNode* out = root.get();
    EXPECT_EQ(S_FALSE, document->get_parentNode(&out));
    EXPECT_EQ(S_FALSE, text->get_firstChild(&out));
    EXPECT_EQ(S_FALSE, free->get_parentNode(&out));
    for (const LONG index : {1, -1, INT32_MAX, INT32_MIN})
        EXPECT_EQ(S_FALSE, list->get_item(index, &out)) << "index " << index;
    for (const wchar_t* const name : {L"z", static_cast<const wchar_t*>(nullptr)})
        EXPECT_EQ(S_FALSE, map->getNamedItem(Bstr(name).get(), &out)) << (name ? "z" : "null");
    EXPECT_EQ(S_FALSE, document->createNode(Variant(1).get(), nullptr, nullptr, &out));
    for (const Variant& type : {Variant(3), Variant(0), Variant(L"element")})
        EXPECT_EQ(S_OK, document->createNode(type.get(), Bstr(L"n").get(), nullptr, &out));
    EXPECT_EQ(root.get(), out) << "none of the calls may write the output";

    for (const LONG index : {1, -1}) {
        out = root.get();
        EXPECT_EQ(S_OK, map->get_item(index, &out)) << index;
        EXPECT_EQ(nullptr, out) << index;
    }
    EXPECT_EQ(L"#text", nameOf(*get(*list, &IXMLDOMNodeList::nextNode)));
    EXPECT_EQ(S_OK, list->reset());
    out = root.get();
    EXPECT_EQ(S_FALSE, list->nextNode(&out)) << "reset must not move the cursor";
    EXPECT_EQ(nullptr, out);
    EXPECT_NE(free.get(), append(*root, *free).get()) << "appendChild must return a new object";

    const Variant number(1), path(pathOf("x").toStdWString());
    for (const VARIANT& value : {number.get(), path.get()}) { // the calls below do not accept VT_BYREF
        VARIANT reference = value, target = value;
        reference.vt = static_cast<VARTYPE>(VT_BYREF | value.vt);
        reference.byref = &target.llVal;
        EXPECT_EQ(S_OK, root->setAttribute(Bstr(L"none").get(), reference)) << value.vt;
        EXPECT_EQ(S_FALSE, document->load(reference, nullptr)) << value.vt;
        EXPECT_EQ(S_FALSE, document->save(reference)) << value.vt;
    }
    EXPECT_EQ(1, lengthOf(*map));
}

TEST_F(Trees, ExternalEntitiesAreNotRead)
{
    const std::wstring path = pathOf("external").toStdWString();
    for (const char* const content : {"secret", "<!ENTITY e 'secret'>"}) {
        write(QString::fromStdWString(path), content);
        for (const std::wstring& type :
             {L"a [<!ENTITY e SYSTEM '" + path + L"'>]", L"a SYSTEM '" + path + L"'",
              L"a [<!ENTITY % p SYSTEM '" + path + L"'> %p;]"}) {
            const auto document = newDocument();
            document->loadXML(Bstr((L"<!DOCTYPE " + type + L"><a>&e;</a>").c_str()).get(), nullptr);
            EXPECT_EQ(std::string::npos, saved(*document).find("secret")) << content << " in " << shown(type);
        }
    }
}

} // namespace
