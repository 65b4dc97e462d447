// The methods of the named node map that are accepted and not carried out. Each answers S_OK at once and
// writes nothing, out-parameters included: a caller tells it from a working method by an output that stays as
// it was. To carry one out, delete its line here and give it a body in dom/named_node_map.cpp.

#include "KelXmlLib/named_node_map.h"

// One line each.
// clang-format off
HRESULT CMorvXMLDOMNamedNodeMap::setNamedItem(IXMLDOMNode*, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMNamedNodeMap::removeNamedItem(BSTR, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMNamedNodeMap::getQualifiedItem(BSTR, BSTR, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMNamedNodeMap::removeQualifiedItem(BSTR, BSTR, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMNamedNodeMap::nextNode(IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMNamedNodeMap::reset() { return S_OK; }
HRESULT CMorvXMLDOMNamedNodeMap::_newEnum(IUnknown**) { return S_OK; }
// clang-format on
