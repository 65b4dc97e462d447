// The same scenario through the vtable and by name: every working member answers alike on both roads.

#include "support/dom_fixture.h"

#include <functional>
#include <vector>

namespace
{

/// An owner for what a call by name gives back.
class Result
{
public:
    Result() = default;
    Result(const Result&) = delete;
    Result& operator=(const Result&) = delete;
    ~Result()
    {
        if (m_value.vt == VT_BSTR)
            SysFreeString(m_value.bstrVal);
        if (m_value.vt == VT_DISPATCH && m_value.pdispVal)
            m_value.pdispVal->Release();
    }
    VARIANT* operator&() { return &m_value; }
    const VARIANT& get() const { return m_value; }

private:
    VARIANT m_value{};
};

class LateBound : public DomTest
{
protected:
    static HRESULT invoke(IDispatch& object, const wchar_t* name, WORD flags, std::vector<VARIANT> arguments,
                          VARIANT* result, EXCEPINFO* exception = nullptr)
    {
        Bstr text(name);
        wchar_t* names = text.get();
        DISPID member = 0;
        const HRESULT found = object.GetIDsOfNames(IID_IUnknown, &names, 1, 0, &member);
        if (FAILED(found))
            return found;
        std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
        DISPID put = DISPID_PROPERTYPUT;
        const bool isPut = flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF);
        DISPPARAMS parameters{reversed.data(), isPut ? &put : nullptr, static_cast<UINT>(reversed.size()),
                              isPut};
        return object.Invoke(member, IID_IUnknown, 0, flags, &parameters, result, exception, nullptr);
    }

    static HRESULT get(IDispatch& object, const wchar_t* name, VARIANT* result,
                       std::vector<VARIANT> arguments = {})
    {
        return invoke(object, name, DISPATCH_METHOD | DISPATCH_PROPERTYGET, std::move(arguments), result);
    }

    static VARIANT variantOf(IDispatch* object)
    {
        VARIANT value{};
        value.vt = VT_DISPATCH;
        value.pdispVal = object;
        return value;
    }
    using DomTest::SetUpTestSuite;

    /// A value in words, objects by the name of their node.
    static std::wstring words(const VARIANT& value)
    {
        switch (value.vt) {
        case VT_BSTR:
            return std::wstring(L"s:") + (value.bstrVal ? value.bstrVal : L"");
        case VT_BOOL:
        case VT_I4:
            return L"n:" + std::to_wstring(value.vt == VT_BOOL ? value.boolVal : value.lVal);
        case VT_DISPATCH: {
            ComPtr<IXMLDOMNode> node;
            if (value.pdispVal)
                value.pdispVal->QueryInterface(IID_IXMLDOMNode, reinterpret_cast<void**>(node.put()));
            return node             ? L"o:" + textOf(node, &IXMLDOMNode::get_nodeName)
                   : value.pdispVal ? L"o"
                                    : L"o:null";
        }
        default:
            return L"-";
        }
    }
};

VARIANT text(const Bstr& value)
{
    return ::variantOf(value);
}

template <class Out>
std::wstring outWords(HRESULT, Out* object)
{
    ComPtr<IXMLDOMNode> node;
    if (object)
        object->QueryInterface(IID_IXMLDOMNode, reinterpret_cast<void**>(node.put()));
    return !object ? L"-" : node ? L"o:" + textOf(node, &IXMLDOMNode::get_nodeName) : L"o";
}

TEST_F(LateBound, EveryWorkingReaderAnswersAsItsSlotDoes)
{
    const auto [document, root, textNode, attribute, list, map] =
        oneOfEach(L"<?xml version='1.0'?><a x='1'>t<b>u</b></a>");
    for (IXMLDOMNode* node :
         {static_cast<IXMLDOMNode*>(document.get()), static_cast<IXMLDOMNode*>(root.get()), textNode.get(),
          static_cast<IXMLDOMNode*>(attribute.get())}) {
        const auto compare = [&](const wchar_t* name, HRESULT early, const std::wstring& expected) {
            Result late;
            EXPECT_EQ(early, get(*node, name, &late)) << name;
            EXPECT_EQ(expected, words(late.get())) << name;
        };
        Bstr string;
        HRESULT result = node->get_nodeName(string.put());
        compare(L"nodeName", result, std::wstring(L"s:") + string.c_str());
        result = node->get_text(string.put());
        compare(L"text", result, string ? std::wstring(L"s:") + string.c_str() : L"-");
        DOMNodeType type = NODE_INVALID;
        result = node->get_nodeType(&type);
        compare(L"nodeType", result, L"n:" + std::to_wstring(type));
        VARIANT_BOOL has = 7;
        result = node->hasChildNodes(&has);
        compare(L"hasChildNodes", result, L"n:" + std::to_wstring(has));
        ComPtr<IXMLDOMNode> out;
        result = node->get_parentNode(out.put());
        compare(L"parentNode", result, outWords(result, out.get()));
        result = node->get_firstChild(out.put());
        compare(L"firstChild", result, outWords(result, out.get()));
        compare(L"childNodes", S_OK, L"o");
        compare(L"attributes", S_OK, L"o");
        compare(L"ownerDocument", S_OK, L"o:#document");
        Result early;
        result = node->get_nodeValue(&early);
        compare(L"nodeValue", result, words(early.get()));
        for (const wchar_t* notCarriedOut :
             {L"lastChild", L"xml", L"nodeTypeString", L"specified", L"namespaceURI"})
            compare(notCarriedOut, S_OK, L"-");
    }
    Result value, element, item, next, named, length, state;
    EXPECT_EQ(S_OK, get(*attribute, L"value", &value));
    EXPECT_EQ(L"s:1", words(value.get()));
    EXPECT_EQ(S_OK, get(*document, L"documentElement", &element));
    EXPECT_EQ(root.get(), element.get().pdispVal);
    EXPECT_EQ(S_OK, get(*document, L"readyState", &state));
    EXPECT_EQ(VT_EMPTY, state.get().vt);
    EXPECT_EQ(S_OK, get(*list, L"item", &item, {::variantOf(1)}));
    EXPECT_EQ(L"o:b", words(item.get()));
    EXPECT_EQ(S_OK, get(*list, L"nextNode", &next));
    EXPECT_EQ(L"o:#text", words(next.get()));
    EXPECT_EQ(S_OK, get(*map, L"LENGTH", &length));
    EXPECT_EQ(L"n:1", words(length.get()));
    EXPECT_EQ(S_OK, get(*map, L"getNamedItem", &named, {text(Bstr(L"x"))}));
    EXPECT_EQ(L"o:x", words(named.get()));
}

TEST_F(LateBound, ADocumentIsBuiltSavedAndLoadedByNameAlone)
{
    expectNothingLeft([this] {
        auto document = newDocument();
        const Bstr name(L"r"), none(L""), childName(L"c"), key(L"k"), words_(L"t<");
        const Bstr path(pathOf("late.xml").toStdWString().c_str());
        Result root, placed, child, placedChild, copy, success, again, list, ignored;
        EXPECT_EQ(S_OK, get(*document, L"createNode", &root, {::variantOf(1), text(name), text(none)}));
        EXPECT_EQ(S_OK, get(*document, L"appendChild", &placed, {root.get()}));
        EXPECT_EQ(S_OK, get(*document, L"createNode", &child, {::variantOf(1), text(childName), text(none)}));
        EXPECT_EQ(S_OK, get(*placed.get().pdispVal, L"appendChild", &placedChild, {child.get()}));
        IDispatch& c = *placedChild.get().pdispVal;
        EXPECT_EQ(S_OK, get(c, L"setAttribute", nullptr, {text(key), ::variantOf(5)}));
        EXPECT_EQ(S_OK, invoke(c, L"text", DISPATCH_PROPERTYPUT, {text(words_)}, nullptr));
        EXPECT_EQ(S_OK, get(c, L"cloneNode", &copy, {::variantOf(1)}));
        EXPECT_EQ(S_OK, get(*placed.get().pdispVal, L"appendChild", nullptr, {copy.get()}));
        EXPECT_EQ(S_OK, get(*placed.get().pdispVal, L"removeChild", nullptr, {placedChild.get()}));
        EXPECT_EQ(S_OK, get(*document, L"save", nullptr, {text(path)}));
        EXPECT_EQ("<r xmlns=\"\">\n    <c xmlns=\"\" k=\"5\">t&lt;</c>\n</r>\n", saved(document));
        EXPECT_EQ(S_OK, get(*document, L"load", &success, {text(path)}));
        EXPECT_EQ(L"n:-1", words(success.get()));
        EXPECT_EQ(S_OK, get(*document, L"selectNodes", &list, {text(childName)}));
        EXPECT_EQ(L"o", words(list.get()));
        EXPECT_EQ(S_FALSE, get(*document, L"loadXML", &again, {text(none)}));
        EXPECT_EQ(L"n:0", words(again.get()));
    });
}

TEST_F(LateBound, TheHolderAnswersForItselfAndTriesAgainAfterAFailure)
{
    auto document = newDocument();
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
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(S_OK, first->GetTypeAttr(&attributes));
    EXPECT_EQ(69, attributes->cFuncs);
    first->ReleaseTypeAttr(attributes);

    wchar_t exact[] = L"load", otherCase[] = L"LOAD", unknown[] = L"lode";
    wchar_t* names[] = {exact, unknown};
    DISPID identifiers[2] = {};
    EXPECT_EQ(S_OK, document->GetIDsOfNames(IID_IUnknown, names, 1, 0, identifiers));
    EXPECT_EQ(58, identifiers[0]);
    names[0] = otherCase;
    EXPECT_EQ(S_OK, document->GetIDsOfNames(IID_IUnknown, names, 1, 0, identifiers));
    EXPECT_EQ(58, identifiers[0]);
    EXPECT_EQ(DISP_E_UNKNOWNNAME, document->GetIDsOfNames(IID_IUnknown, names, 2, 0, identifiers));
    EXPECT_EQ(-1, identifiers[1]);
}

} // namespace
