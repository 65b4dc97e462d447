// The methods of the node list that are accepted and not carried out. Each answers S_OK at once and writes
// nothing, out-parameters included: a caller tells it from a working method by an output that stays as it
// was. To carry one out, delete its line here and give it a body in dom/node_list.cpp.

#include "KelXmlLib/node_list.h"

// One line each.
// clang-format off
HRESULT CMorvXMLDOMNodeList::reset() { return S_OK; }
HRESULT CMorvXMLDOMNodeList::_newEnum(IUnknown**) { return S_OK; }
// clang-format on
