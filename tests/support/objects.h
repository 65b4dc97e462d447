// Short functions that create the library's objects and read from them.

#pragma once

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/variant_owner.h"
#include "KelXmlLib/guids.h"
#include "KelXmlLib/module.h"
#include "KelXmlLib/xmldom.h"
#include "support/require.h"

#include <vector>

using kel::Bstr, kel::ComPtr, kel::Variant;

/// Creates a document without a tree.
inline ComPtr<IXMLDOMDocument> newDocument()
{
    [[maybe_unused]] static const int isAttached = DllMain(nullptr, 1, nullptr);
    void* document = nullptr;

    requireOk(DllGetClassObject(CLSID_DOMDocument, IID_IXMLDOMDocument, &document), "DllGetClassObject");
    return ComPtr<IXMLDOMDocument>::adopt(static_cast<IXMLDOMDocument*>(document));
}

/// Casts without a check: `object` must implement `To`.
template <class To, class From>
ComPtr<To> as(const ComPtr<From>& object)
{
    return ComPtr<To>(static_cast<To*>(object.get()));
}

/// Calls a getter, which must return an object and `S_OK`, or null and `S_FALSE`.
template <class Object, class Interface, class Out>
ComPtr<Out> get(Object& object, HRESULT (Interface::*getter)(Out**))
{
    ComPtr<Out> out;
    const HRESULT code = (object.*getter)(out.put());
    requireOk(code, out ? "a getter that outputs an object" : "a getter that outputs null", bool(out));
    return out;
}

inline std::wstring nameOf(IXMLDOMNode& node)
{
    Bstr name;
    requireOk(node.get_nodeName(name.put()), "get_nodeName");
    return name.c_str();
}

/// All nodes of a list or a map, read by index.
template <class List>
std::vector<ComPtr<IXMLDOMNode>> itemsOf(List& list)
{
    std::vector<ComPtr<IXMLDOMNode>> items(1);
    for (LONG index = 0; list.get_item(index, items.back().put()), items.back(); ++index)
        items.emplace_back();
    items.pop_back();
    return items;
}
