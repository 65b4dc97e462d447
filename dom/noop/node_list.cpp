// The no-ops of the node list class: each method returns S_OK and leaves its outputs unchanged. To implement
// a method, move its line to dom/node_list.cpp.

#include "KelXmlLib/node_list.h"

// clang-format off
HRESULT CMorvXMLDOMNodeList::reset() { return S_OK; }
HRESULT CMorvXMLDOMNodeList::_newEnum(IUnknown**) { return S_OK; }
// clang-format on
