// The attribute object. `get_value` returns the value of the attribute, and `put_text` sets the value.

#include "KelXmlLib/attribute.h"

#include "com/identity.h"
#include "dom/append_remove.h"
#include "dom/content.h"
#include "dom/navigation.h"
#include "dom/wrap.h"
#include "trees/owners.h"

using namespace kelxml;
using dom::refTo;

CMorvXMLDOMAttribute::CMorvXMLDOMAttribute(qt::MovableNode&& node, const qt::DocumentRef& document)
    : m_node(std::move(node).as<QDomAttr>()), m_ownerDocument(dom::makeOwnerDocument(document.handle)),
      m_document(document.handle), m_fallbackDocument(document.copyOfFallback()),
      m_ownerElement(trees::ownerElementOf(m_node))
{}

CMorvXMLDOMAttribute::~CMorvXMLDOMAttribute()
{
    dom::WrapperAccess::releaseAllBefore(m_ownerElement, m_ownerDocument, m_document, m_node);
}

HRESULT CMorvXMLDOMAttribute::get_text(BSTR*)
{
    return S_FALSE; // only text nodes and elements return a text
}

// Methods that share their implementation with other classes: one line each, in interface order.
// clang-format off
HRESULT CMorvXMLDOMAttribute::QueryInterface(const GUID& riid, void** ppv) { return com::queryInterface(*this, {&IID_IUnknown, &IID_IDispatch, &IID_IXMLDOMAttribute, &IID_IXMLDOMNode}, riid, ppv); }
ULONG CMorvXMLDOMAttribute::AddRef() { return com::addReference(m_refCount); }
ULONG CMorvXMLDOMAttribute::Release() { return com::releaseReference(*this, m_refCount); }
HRESULT CMorvXMLDOMAttribute::get_nodeName(BSTR* name) { return dom::nodeName(refTo(*this), name); }
HRESULT CMorvXMLDOMAttribute::get_nodeType(DOMNodeType* type) { return dom::storeType(NODE_ATTRIBUTE, type); }
HRESULT CMorvXMLDOMAttribute::get_parentNode(IXMLDOMNode** parent) { return dom::parentNode(refTo(*this), parent); }
HRESULT CMorvXMLDOMAttribute::get_childNodes(IXMLDOMNodeList** list) { return dom::childNodes(refTo(*this), list); }
HRESULT CMorvXMLDOMAttribute::get_firstChild(IXMLDOMNode** child) { return dom::firstChild(refTo(*this), child); }
HRESULT CMorvXMLDOMAttribute::get_attributes(IXMLDOMNamedNodeMap** map) { return dom::attributes(refTo(*this), map); }
HRESULT CMorvXMLDOMAttribute::removeChild(IXMLDOMNode* child, IXMLDOMNode** result) { return dom::removeChild(refTo(*this), child, result); }
HRESULT CMorvXMLDOMAttribute::appendChild(IXMLDOMNode* child, IXMLDOMNode** result) { return dom::appendChild(refTo(*this), child, result); }
HRESULT CMorvXMLDOMAttribute::hasChildNodes(VARIANT_BOOL* has) { return dom::hasChildNodes(refTo(*this), has); }
HRESULT CMorvXMLDOMAttribute::get_ownerDocument(IXMLDOMDocument** document) { return dom::ownerDocument(refTo(*this), m_ownerDocument, document); }
HRESULT CMorvXMLDOMAttribute::put_text(BSTR text) { return dom::setNodeValue(refTo(*this), text); }
HRESULT CMorvXMLDOMAttribute::get_value(VARIANT* value) { return dom::storeValue(m_node.value(), value); }
// clang-format on
