// The no-ops of the generic node class: each method returns S_OK and leaves its outputs unchanged. To
// implement a method, move its line to dom/node.cpp.

#include "KelXmlLib/node.h"

// clang-format off
HRESULT CMorvXMLDOMNode::put_nodeValue(VARIANT) { return S_OK; }
HRESULT CMorvXMLDOMNode::get_lastChild(IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMNode::get_previousSibling(IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMNode::get_nextSibling(IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMNode::insertBefore(IXMLDOMNode*, VARIANT, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMNode::replaceChild(IXMLDOMNode*, IXMLDOMNode*, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMNode::cloneNode(VARIANT_BOOL, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMNode::get_nodeTypeString(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMNode::get_specified(VARIANT_BOOL*) { return S_OK; }
HRESULT CMorvXMLDOMNode::get_definition(IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMNode::get_nodeTypedValue(VARIANT*) { return S_OK; }
HRESULT CMorvXMLDOMNode::put_nodeTypedValue(VARIANT) { return S_OK; }
HRESULT CMorvXMLDOMNode::get_dataType(VARIANT*) { return S_OK; }
HRESULT CMorvXMLDOMNode::put_dataType(BSTR) { return S_OK; }
HRESULT CMorvXMLDOMNode::get_xml(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMNode::transformNode(IXMLDOMNode*, BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMNode::selectNodes(BSTR, IXMLDOMNodeList**) { return S_OK; }
HRESULT CMorvXMLDOMNode::selectSingleNode(BSTR, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMNode::get_parsed(VARIANT_BOOL*) { return S_OK; }
HRESULT CMorvXMLDOMNode::get_namespaceURI(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMNode::get_prefix(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMNode::get_baseName(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMNode::transformNodeToObject(IXMLDOMNode*, VARIANT) { return S_OK; }
// clang-format on
