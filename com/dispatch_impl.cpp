// Defines the methods of the class template IDispatchImpl, and instantiates the template for the six
// interfaces that the library implements.

#include "KelXmlLib/dispatch_impl.h"

#include "KelComWrapper/export.h"
#include "KelXmlLib/guids.h"
#include "KelXmlLib/xmldom.h"

template <class Interface, const GUID* InterfaceId, const GUID* LibraryId, WORD Major, WORD Minor,
          class Holder>
HRESULT IDispatchImpl<Interface, InterfaceId, LibraryId, Major, Minor, Holder>::GetTypeInfoCount(UINT* count)
{
    if (!count)
        return E_POINTER;
    *count = 1;
    return S_OK;
}

template <class Interface, const GUID* InterfaceId, const GUID* LibraryId, WORD Major, WORD Minor,
          class Holder>
HRESULT
IDispatchImpl<Interface, InterfaceId, LibraryId, Major, Minor, Holder>::GetTypeInfo(UINT index, LCID locale,
                                                                                    ITypeInfo** typeInfo)
{
    return m_typeInfoHolder.GetTypeInfo(index, locale, typeInfo);
}

template <class Interface, const GUID* InterfaceId, const GUID* LibraryId, WORD Major, WORD Minor,
          class Holder>
HRESULT IDispatchImpl<Interface, InterfaceId, LibraryId, Major, Minor, Holder>::GetIDsOfNames(
    const GUID&, wchar_t** names, UINT count, LCID locale, DISPID* identifiers)
{
    return m_typeInfoHolder.GetIDsOfNames(names, count, locale, identifiers);
}

template <class Interface, const GUID* InterfaceId, const GUID* LibraryId, WORD Major, WORD Minor,
          class Holder>
HRESULT IDispatchImpl<Interface, InterfaceId, LibraryId, Major, Minor, Holder>::Invoke(
    DISPID member, const GUID&, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
    EXCEPINFO* exception, UINT* badArgument)
{
    return m_typeInfoHolder.Invoke(this, member, locale, flags, parameters, result, exception, badArgument);
}

template class KEL_EXPORT
    IDispatchImpl<IXMLDOMNode, &IID_IXMLDOMNode, &LIBID_MSXML, 1, 0, CComTypeInfoHolder>;
template class KEL_EXPORT
    IDispatchImpl<IXMLDOMDocument, &IID_IXMLDOMDocument, &LIBID_MSXML, 1, 0, CComTypeInfoHolder>;
template class KEL_EXPORT
    IDispatchImpl<IXMLDOMElement, &IID_IXMLDOMElement, &LIBID_MSXML, 1, 0, CComTypeInfoHolder>;
template class KEL_EXPORT
    IDispatchImpl<IXMLDOMAttribute, &IID_IXMLDOMAttribute, &LIBID_MSXML, 1, 0, CComTypeInfoHolder>;
template class KEL_EXPORT
    IDispatchImpl<IXMLDOMNodeList, &IID_IXMLDOMNodeList, &LIBID_MSXML, 1, 0, CComTypeInfoHolder>;
template class KEL_EXPORT
    IDispatchImpl<IXMLDOMNamedNodeMap, &IID_IXMLDOMNamedNodeMap, &LIBID_MSXML, 1, 0, CComTypeInfoHolder>;
