// The no-ops of the attribute class: each method returns S_OK and leaves its outputs unchanged. To implement
// a method, move its line to dom/attribute.cpp.

#include "KelXmlLib/attribute.h"

// clang-format off
HRESULT CMorvXMLDOMAttribute::get_nodeValue(VARIANT*) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::put_nodeValue(VARIANT) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::get_lastChild(IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::get_previousSibling(IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::get_nextSibling(IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::insertBefore(IXMLDOMNode*, VARIANT, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::replaceChild(IXMLDOMNode*, IXMLDOMNode*, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::cloneNode(VARIANT_BOOL, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::get_nodeTypeString(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::get_specified(VARIANT_BOOL*) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::get_definition(IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::get_nodeTypedValue(VARIANT*) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::put_nodeTypedValue(VARIANT) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::get_dataType(VARIANT*) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::put_dataType(BSTR) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::get_xml(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::transformNode(IXMLDOMNode*, BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::selectNodes(BSTR, IXMLDOMNodeList**) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::selectSingleNode(BSTR, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::get_parsed(VARIANT_BOOL*) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::get_namespaceURI(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::get_prefix(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::get_baseName(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::transformNodeToObject(IXMLDOMNode*, VARIANT) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::get_name(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMAttribute::put_value(VARIANT) { return S_OK; }
// clang-format on
