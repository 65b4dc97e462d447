// The no-ops of the named node map class: each method returns S_OK and leaves its outputs unchanged. To
// implement a method, move its line to dom/named_node_map.cpp.

#include "KelXmlLib/named_node_map.h"

// clang-format off
HRESULT CMorvXMLDOMNamedNodeMap::setNamedItem(IXMLDOMNode*, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMNamedNodeMap::removeNamedItem(BSTR, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMNamedNodeMap::getQualifiedItem(BSTR, BSTR, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMNamedNodeMap::removeQualifiedItem(BSTR, BSTR, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMNamedNodeMap::nextNode(IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMNamedNodeMap::reset() { return S_OK; }
HRESULT CMorvXMLDOMNamedNodeMap::_newEnum(IUnknown**) { return S_OK; }
// clang-format on
