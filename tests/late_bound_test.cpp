// Calls by name: what every working member gives, and what the holder of the type information answers.

#include "support/dom_fixture.h"

#include <vector>

namespace
{

struct LateBound : DomTest
{
    static constexpr HRESULT kAnySuccess = 7;

    /// Calls a member by its name, with arguments in their order. \return what it gives back
    static Variant call(IDispatch& object, const wchar_t* name, const std::vector<Variant>& arguments = {},
                        HRESULT expected = S_OK, WORD flags = DISPATCH_METHOD | DISPATCH_PROPERTYGET)
    {
        const Bstr text(name);
        wchar_t* names = text.get();
        DISPID member = 0;
        EXPECT_EQ(S_OK, object.GetIDsOfNames(IID_IUnknown, &names, 1, 0, &member)) << name;
        std::vector<VARIANT> reversed;
        for (const Variant& argument : arguments)
            reversed.insert(reversed.begin(), argument.get());
        DISPID put = DISPID_PROPERTYPUT;
        const bool isPut = flags == DISPATCH_PROPERTYPUT;
        DISPPARAMS parameters{reversed.data(), isPut ? &put : nullptr, static_cast<UINT>(reversed.size()),
                              isPut};
        Variant result;
        const HRESULT answer = object.Invoke(member, IID_IUnknown, 0, flags, &parameters,
                                             isPut ? nullptr : result.put(), nullptr, nullptr);
        EXPECT_EQ(expected == kAnySuccess ? answer & S_FALSE : expected, answer) << name;
        return result;
    }

    /// A value in words, objects by the name of their node.
    static std::wstring words(const Variant& value)
    {
        switch (value.type()) {
        case VT_BSTR:
            return L"s:" + std::wstring(value.text());
        case VT_BOOL:
            return L"n:" + std::to_wstring(value.get().boolVal);
        case VT_I4:
            return L"n:" + std::to_wstring(value.integer());
        case VT_DISPATCH: {
            const auto node = kel::query<IXMLDOMNode>(*value.object(), IID_IXMLDOMNode);
            return node ? L"o:" + nameOf(*node) : L"o";
        }
        default:
            return L"-";
        }
    }

    /// What the readers of every node give, one after the other.
    static std::wstring readersOf(IDispatch& node)
    {
        std::wstring all;
        for (const wchar_t* const name :
             {L"nodeName", L"nodeType", L"parentNode", L"firstChild", L"childNodes", L"attributes",
              L"ownerDocument", L"hasChildNodes", L"nodeValue", L"text", L"lastChild", L"nodeTypeString"})
            all += words(call(node, name, {}, kAnySuccess)) + L' ';
        return all;
    }
};

TEST_F(LateBound, EveryWorkingReaderGivesWhatItsSlotDoesAndAnyOtherNothing)
{
    const auto made = oneOfEach(L"<?xml version='1.0'?><a x='1'>t<b>u</b></a>");
    EXPECT_EQ(L"s:#document n:9 - o:xml o o o:#document n:1 s: - - - ", readersOf(*made.document));
    EXPECT_EQ(L"s:a n:1 o:#document o:#text o o o:#document n:1 - s:tu - - ", readersOf(*made.root));
    EXPECT_EQ(L"s:#text n:3 o:a - o o o:#document n:0 s:t s:t - - ", readersOf(*made.text));
    EXPECT_EQ(L"s:x n:2 o:a o:#text o o o:#document n:1 - - - - ", readersOf(*made.attribute));
    EXPECT_EQ(L"s:1", words(call(*made.attribute, L"value")));
    EXPECT_EQ(made.root.get(), call(*made.document, L"documentElement").object().get());
    EXPECT_EQ(L"n:2", words(call(*made.list, L"length")));
    EXPECT_EQ(L"o:b", words(call(*made.list, L"item", {Variant(1)})));
    EXPECT_EQ(L"o:#text", words(call(*made.list, L"nextNode")));
    EXPECT_EQ(L"n:1", words(call(*made.map, L"LENGTH")));
    EXPECT_EQ(L"o:x", words(call(*made.map, L"item", {Variant(0)})));
    EXPECT_EQ(L"o:x", words(call(*made.map, L"getNamedItem", {Variant(L"x")})));
}

TEST_F(LateBound, ADocumentIsBuiltSavedAndLoadedByNameAlone)
{
    expectNothingLeft([this] {
        const auto document = newDocument();
        const Variant path(pathOf("late.xml").toStdWString());
        const auto create = [&](const wchar_t* name) {
            return call(*document, L"createNode", {Variant(1), Variant(name), Variant(L"")});
        };
        const auto root = call(*document, L"appendChild", {create(L"r")}).object();
        const auto child = call(*root, L"appendChild", {create(L"c")}).object();
        call(*child, L"setAttribute", {Variant(L"k"), Variant(5)});
        call(*child, L"text", {Variant(L"t<")}, S_OK, DISPATCH_PROPERTYPUT);
        call(*root, L"appendChild", {call(*child, L"cloneNode", {Variant(1)})});
        call(*root, L"removeChild", {Variant(child)});
        call(*document, L"save", {path});
        EXPECT_EQ("<r xmlns=\"\">\n    <c xmlns=\"\" k=\"5\">t&lt;</c>\n</r>\n", saved(document));
        EXPECT_EQ(L"n:-1", words(call(*document, L"load", {path})));
        EXPECT_EQ(L"o", words(call(*document, L"selectNodes", {Variant(L"c")})));
        EXPECT_EQ(L"n:0", words(call(*document, L"loadXML", {Variant(L"")}, S_FALSE)));
    });
}

TEST_F(LateBound, TheHolderAnswersForItselfAndTriesAgainAfterAFailure)
{
    const auto document = newDocument();
    UINT count = 7;
    EXPECT_EQ(S_OK, document->GetTypeInfoCount(&count));
    EXPECT_EQ(1u, count);
    EXPECT_EQ(E_POINTER, document->GetTypeInfoCount(nullptr));
    EXPECT_EQ(DISP_E_BADINDEX, document->GetTypeInfo(1, 0, nullptr));
    EXPECT_EQ(E_POINTER, document->GetTypeInfo(0, 0, nullptr));

    ASSERT_EQ(S_OK, KelTypelib::UnRegisterTypeLib(LIBID_MSXML));
    ComPtr<ITypeInfo> first, second;
    DISPPARAMS nothing{};
    EXPECT_EQ(TYPE_E_LIBNOTREGISTERED, document->GetTypeInfo(0, 0, first.put()));
    EXPECT_FALSE(first);
    EXPECT_EQ(TYPE_E_LIBNOTREGISTERED, document->Invoke(2, IID_IUnknown, 0, DISPATCH_PROPERTYGET, &nothing,
                                                        nullptr, nullptr, nullptr));
    SetUpTestSuite();
    EXPECT_EQ(S_OK, document->GetTypeInfo(0, 0, first.put()));
    EXPECT_EQ(S_OK, document->GetTypeInfo(0, 0, second.put()));
    EXPECT_EQ(first.get(), second.get());

    wchar_t load[] = L"LOAD", unknown[] = L"lode";
    wchar_t* names[] = {load, unknown};
    DISPID identifiers[2] = {};
    EXPECT_EQ(DISP_E_UNKNOWNNAME, document->GetIDsOfNames(IID_IUnknown, names, 2, 0, identifiers));
    EXPECT_EQ(58, identifiers[0]);
    EXPECT_EQ(-1, identifiers[1]);
}

} // namespace
