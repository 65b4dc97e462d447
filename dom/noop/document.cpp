// The no-ops of the document class: each method returns S_OK and leaves its outputs unchanged. To implement a
// method, move its line to dom/document.cpp.

#include "KelXmlLib/document.h"

// clang-format off
HRESULT CMorvXMLDOMDocument::put_nodeValue(VARIANT) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_lastChild(IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_previousSibling(IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_nextSibling(IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::insertBefore(IXMLDOMNode*, VARIANT, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::replaceChild(IXMLDOMNode*, IXMLDOMNode*, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::cloneNode(VARIANT_BOOL, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_nodeTypeString(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_text(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_specified(VARIANT_BOOL*) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_definition(IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_nodeTypedValue(VARIANT*) { return S_OK; }
HRESULT CMorvXMLDOMDocument::put_nodeTypedValue(VARIANT) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_dataType(VARIANT*) { return S_OK; }
HRESULT CMorvXMLDOMDocument::put_dataType(BSTR) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_xml(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMDocument::transformNode(IXMLDOMNode*, BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMDocument::selectSingleNode(BSTR, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_parsed(VARIANT_BOOL*) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_namespaceURI(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_prefix(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_baseName(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMDocument::transformNodeToObject(IXMLDOMNode*, VARIANT) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_doctype(IXMLDOMDocumentType**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_implementation(IXMLDOMImplementation**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::putref_documentElement(IXMLDOMElement*) { return S_OK; }
HRESULT CMorvXMLDOMDocument::createElement(BSTR, IXMLDOMElement**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::createDocumentFragment(IXMLDOMDocumentFragment**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::createTextNode(BSTR, IXMLDOMText**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::createComment(BSTR, IXMLDOMComment**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::createCDATASection(BSTR, IXMLDOMCDATASection**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::createProcessingInstruction(BSTR, BSTR, IXMLDOMProcessingInstruction**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::createAttribute(BSTR, IXMLDOMAttribute**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::createEntityReference(BSTR, IXMLDOMEntityReference**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::getElementsByTagName(BSTR, IXMLDOMNodeList**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::nodeFromID(BSTR, IXMLDOMNode**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_readyState(LONG*) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_parseError(IXMLDOMParseError**) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_url(BSTR*) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_async(VARIANT_BOOL*) { return S_OK; }
HRESULT CMorvXMLDOMDocument::put_async(VARIANT_BOOL) { return S_OK; }
HRESULT CMorvXMLDOMDocument::abort() { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_validateOnParse(VARIANT_BOOL*) { return S_OK; }
HRESULT CMorvXMLDOMDocument::put_validateOnParse(VARIANT_BOOL) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_resolveExternals(VARIANT_BOOL*) { return S_OK; }
HRESULT CMorvXMLDOMDocument::put_resolveExternals(VARIANT_BOOL) { return S_OK; }
HRESULT CMorvXMLDOMDocument::get_preserveWhiteSpace(VARIANT_BOOL*) { return S_OK; }
HRESULT CMorvXMLDOMDocument::put_preserveWhiteSpace(VARIANT_BOOL) { return S_OK; }
HRESULT CMorvXMLDOMDocument::put_onreadystatechange(VARIANT) { return S_OK; }
HRESULT CMorvXMLDOMDocument::put_ondataavailable(VARIANT) { return S_OK; }
HRESULT CMorvXMLDOMDocument::put_ontransformnode(VARIANT) { return S_OK; }
// clang-format on
