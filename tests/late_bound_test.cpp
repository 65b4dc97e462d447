// The same scenario through the vtable and by name: every working member answers alike on both roads.

#include "support/dom_fixture.h"

#include <vector>

namespace
{

class LateBound : public DomTest
{
protected:
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
        EXPECT_EQ(expected, object.Invoke(member, IID_IUnknown, 0, flags, &parameters,
                                          isPut ? nullptr : result.put(), nullptr, nullptr))
            << name;
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
            const auto object = value.object();
            const auto node = object ? kel::query<IXMLDOMNode>(*object, IID_IXMLDOMNode) : nullptr;
            return node ? L"o:" + nameOf(*node) : object ? L"o" : L"o:null";
        }
        default:
            return L"-";
        }
    }

    static Variant owned(BSTR text)
    {
        Bstr owner;
        owner.reset(text);
        return text ? Variant(std::move(owner)) : Variant();
    }
    static Variant owned(LONG number) { return Variant(number); }
    static Variant owned(IDispatch* object) { return Variant(ComPtr<IDispatch>::adopt(object)); }
    static Variant owned(const VARIANT& value) { return Variant::adopt(value); }

    /// Holds what comes by name against what the slot gives out.
    template <class Object, class Interface, class Out>
    static void compare(Object& object, const wchar_t* name, HRESULT (Interface::*getter)(Out*))
    {
        Out out{};
        const HRESULT answer = (object.*getter)(&out);
        const std::wstring expected = answer == S_OK ? words(owned(out)) : L"-";
        EXPECT_EQ(expected, words(call(object, name, {}, answer))) << name;
    }
};

TEST_F(LateBound, EveryWorkingReaderAnswersAsItsSlotDoes)
{
    const auto made = oneOfEach(L"<?xml version='1.0'?><a x='1'>t<b>u</b></a>");
    for (IXMLDOMNode* node : made.nodes()) {
        compare(*node, L"nodeName", &IXMLDOMNode::get_nodeName);
        compare(*node, L"text", &IXMLDOMNode::get_text);
        compare(*node, L"nodeType", &IXMLDOMNode::get_nodeType);
        compare(*node, L"hasChildNodes", &IXMLDOMNode::hasChildNodes);
        compare(*node, L"parentNode", &IXMLDOMNode::get_parentNode);
        compare(*node, L"firstChild", &IXMLDOMNode::get_firstChild);
        compare(*node, L"childNodes", &IXMLDOMNode::get_childNodes);
        compare(*node, L"attributes", &IXMLDOMNode::get_attributes);
        compare(*node, L"ownerDocument", &IXMLDOMNode::get_ownerDocument);
        compare(*node, L"nodeValue", &IXMLDOMNode::get_nodeValue);
        for (const wchar_t* notCarriedOut :
             {L"lastChild", L"xml", L"nodeTypeString", L"specified", L"namespaceURI"})
            EXPECT_EQ(L"-", words(call(*node, notCarriedOut)));
    }
    compare(*made.attribute, L"value", &IXMLDOMAttribute::get_value);
    compare(*made.map, L"LENGTH", &IXMLDOMNamedNodeMap::get_length);
    EXPECT_EQ(made.root.get(), call(*made.document, L"documentElement").object().get());
    EXPECT_EQ(L"-", words(call(*made.document, L"readyState")));
    EXPECT_EQ(L"o:b", words(call(*made.list, L"item", {Variant(1)})));
    EXPECT_EQ(L"o:#text", words(call(*made.list, L"nextNode")));
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
