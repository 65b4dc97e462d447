// The document object, which is also the root node of its tree. Loading and saving are in document_io.cpp.

#include "KelXmlLib/document.h"

#include "com/identity.h"
#include "dom/append_remove.h"
#include "dom/content.h"
#include "dom/navigation.h"
#include "dom/wrap.h"
#include "text/strings.h"

using namespace kelxml;
using dom::refTo;

namespace
{

/// Returns the number in `value` if `value` is a signed integer of 16 or 32 bits. Returns 0 for a value of
/// any other type, and for a value with the flag `VT_BYREF`.
int readInteger(const VARIANT& value)
{
    switch (value.vt) {
    case VT_I2:
        return value.iVal;
    case VT_I4:
    case VT_INT:
        return value.lVal;
    default:
        return 0;
    }
}

} // namespace

CMorvXMLDOMDocument::CMorvXMLDOMDocument(const QDomDocument& document) : m_document(document) {}

CMorvXMLDOMDocument::~CMorvXMLDOMDocument()
{
    m_documentElement.reset();
}

HRESULT CMorvXMLDOMDocument::CreateMe(void*, const GUID&, void** object)
{
    kel::ComPtr<CMorvXMLDOMDocument> document = dom::makeOwnerDocument(QDomDocument());
    *object = static_cast<IXMLDOMDocument*>(document.detach());
    return S_OK;
}

HRESULT CMorvXMLDOMDocument::get_ownerDocument(IXMLDOMDocument** document)
{
    if (!document)
        return S_FALSE;
    AddRef();
    *document = this;
    return S_OK;
}

HRESULT CMorvXMLDOMDocument::get_documentElement(IXMLDOMElement** element)
{
    if (!element)
        return S_FALSE;
    if (!m_documentElement) {
        m_documentElement = kel::ComPtr<CMorvXMLDOMElement>(
            new CMorvXMLDOMElement(m_document.documentElement(), dom::documentOf(*this)));
    }
    *element = kel::ComPtr<CMorvXMLDOMElement>(m_documentElement).detach();
    return S_OK;
}

HRESULT CMorvXMLDOMDocument::createNode(VARIANT type, BSTR name, BSTR namespaceURI, IXMLDOMNode** node)
{
    if (!name)
        return S_FALSE;
    const int nodeType = readInteger(type);
    if (nodeType != NODE_ELEMENT && nodeType != NODE_ATTRIBUTE)
        return S_OK;
    if (!node)
        return S_FALSE;
    const QString qualifiedName = text::fromWide(name);
    const QString uri = text::fromWide(namespaceURI);
    qt::MovableNode made = nodeType == NODE_ELEMENT
                               ? QDomNode(m_document.createElementNS(uri, qualifiedName))
                               : QDomNode(m_document.createAttributeNS(uri, qualifiedName));
    dom::wrapAs(static_cast<DOMNodeType>(nodeType), std::move(made), dom::documentOf(*this), node);
    return S_OK;
}

// Methods that share their implementation with other classes: one line each, in interface order.
// clang-format off
HRESULT CMorvXMLDOMDocument::QueryInterface(const GUID& riid, void** ppv) { return com::queryInterface(*this, {&IID_IUnknown, &IID_IDispatch, &IID_IXMLDOMDocument, &IID_IXMLDOMNode}, riid, ppv); }
ULONG CMorvXMLDOMDocument::AddRef() { return com::addReference(m_refCount); }
ULONG CMorvXMLDOMDocument::Release() { return com::releaseReference(*this, m_refCount); }
HRESULT CMorvXMLDOMDocument::get_nodeName(BSTR* name) { return dom::nodeName(refTo(*this), name); }
HRESULT CMorvXMLDOMDocument::get_nodeValue(VARIANT* value) { return dom::storeValue(m_document.nodeValue(), value); }
HRESULT CMorvXMLDOMDocument::get_nodeType(DOMNodeType* type) { return dom::storeType(NODE_DOCUMENT, type); }
HRESULT CMorvXMLDOMDocument::get_parentNode(IXMLDOMNode** parent) { return dom::parentNode(refTo(*this), parent); }
HRESULT CMorvXMLDOMDocument::get_childNodes(IXMLDOMNodeList** list) { return dom::childNodes(refTo(*this), list); }
HRESULT CMorvXMLDOMDocument::get_firstChild(IXMLDOMNode** child) { return dom::firstChild(refTo(*this), child); }
HRESULT CMorvXMLDOMDocument::get_attributes(IXMLDOMNamedNodeMap** map) { return dom::attributes(refTo(*this), map); }
HRESULT CMorvXMLDOMDocument::removeChild(IXMLDOMNode* child, IXMLDOMNode** result) { return dom::removeChild(refTo(*this), child, result); }
HRESULT CMorvXMLDOMDocument::appendChild(IXMLDOMNode* child, IXMLDOMNode** result) { return dom::appendChild(refTo(*this), child, result); }
HRESULT CMorvXMLDOMDocument::hasChildNodes(VARIANT_BOOL* has) { return dom::hasChildNodes(refTo(*this), has); }
HRESULT CMorvXMLDOMDocument::put_text(BSTR text) { return dom::setNodeValue(refTo(*this), text); }
HRESULT CMorvXMLDOMDocument::selectNodes(BSTR query, IXMLDOMNodeList** list) { return dom::elementsByTagName(refTo(*this), query, list); }
// clang-format on
