// The no-ops of the element class: each method returns S_OK and leaves its outputs unchanged. To implement a
// method, move its line to dom/element.cpp.

#include "KelXmlLib/element.h"

// clang-format off
HRESULT CMorvXMLDOMElement::get_nodeValue(VARIANT*) { return S_OK; }
HRESULT CMorvXMLDOMElement::put_nodeValue(VARIANT) { return S_OK; }
HRESULT CMorvXMLDOMElement::get_lastChild(IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMElement::get_previousSibling(IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMElement::get_nextSibling(IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMElement::insertBefore(IXMLDOMNode*, VARIANT, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMElement::replaceChild(IXMLDOMNode*, IXMLDOMNode*, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMElement::get_nodeTypeString(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMElement::get_specified(VARIANT_BOOL*) { return S_OK; }
HRESULT CMorvXMLDOMElement::get_definition(IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMElement::get_nodeTypedValue(VARIANT*) { return S_OK; }
HRESULT CMorvXMLDOMElement::put_nodeTypedValue(VARIANT) { return S_OK; }
HRESULT CMorvXMLDOMElement::get_dataType(VARIANT*) { return S_OK; }
HRESULT CMorvXMLDOMElement::put_dataType(BSTR) { return S_OK; }
HRESULT CMorvXMLDOMElement::get_xml(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMElement::transformNode(IXMLDOMNode*, BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMElement::selectSingleNode(BSTR, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMElement::get_parsed(VARIANT_BOOL*) { return S_OK; }
HRESULT CMorvXMLDOMElement::get_namespaceURI(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMElement::get_prefix(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMElement::get_baseName(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMElement::transformNodeToObject(IXMLDOMNode*, VARIANT) { return S_OK; }
HRESULT CMorvXMLDOMElement::get_tagName(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMElement::getAttribute(BSTR, VARIANT*) { return S_OK; }
HRESULT CMorvXMLDOMElement::removeAttribute(BSTR) { return S_OK; }
HRESULT CMorvXMLDOMElement::getAttributeNode(BSTR, IXMLDOMAttribute**) { return S_OK; }
HRESULT CMorvXMLDOMElement::setAttributeNode(IXMLDOMAttribute*, IXMLDOMAttribute**) { return S_OK; }
HRESULT CMorvXMLDOMElement::removeAttributeNode(IXMLDOMAttribute*, IXMLDOMAttribute**) { return S_OK; }
HRESULT CMorvXMLDOMElement::getElementsByTagName(BSTR, IXMLDOMNodeList**) { return S_OK; }
HRESULT CMorvXMLDOMElement::normalize() { return S_OK; }
// clang-format on
