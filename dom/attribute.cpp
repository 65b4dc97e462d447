// The attribute. Its value is read with get_value and set with put_text.

#include "KelXmlLib/attribute.h"

#include "com/identity.h"
#include "dom/content.h"
#include "dom/mutation.h"
#include "dom/navigation.h"
#include "dom/wrap.h"
#include "guards/tree.h"

using kelxml::refTo;

CMorvXMLDOMAttribute::CMorvXMLDOMAttribute(kelxml::Handle&& node, const kelxml::DocumentRef& document)
    : m_node(std::move(node).as<QDomAttr>()), m_ownerDocument(kelxml::makeOwnerDocument(document.handle)),
      m_document(document.handle), m_standIn(document.keptStandIn()),
      m_ownerElement(kelxml::guards::ownerElementOf(m_node))
{}

CMorvXMLDOMAttribute::~CMorvXMLDOMAttribute()
{
    kelxml::WrapperAccess::releaseBefore(m_ownerElement, m_ownerDocument, m_document, m_node);
}

HRESULT CMorvXMLDOMAttribute::get_text(BSTR*)
{
    return S_FALSE; // an attribute is no text node, and only those have a text to give
}

// One line each, in interface order: what the classes have in common.
// clang-format off
HRESULT CMorvXMLDOMAttribute::QueryInterface(const GUID& riid, void** ppv) { return kelxml::queryInterface(*this, {&IID_IUnknown, &IID_IDispatch, &IID_IXMLDOMAttribute, &IID_IXMLDOMNode}, riid, ppv); }
ULONG CMorvXMLDOMAttribute::AddRef() { return kelxml::addReference(m_refCount); }
ULONG CMorvXMLDOMAttribute::Release() { return kelxml::releaseReference(*this, m_refCount); }
HRESULT CMorvXMLDOMAttribute::get_nodeName(BSTR* name) { return kelxml::nodeName(refTo(*this), name); }
HRESULT CMorvXMLDOMAttribute::get_nodeType(DOMNodeType* type) { return kelxml::reportType(NODE_ATTRIBUTE, type); }
HRESULT CMorvXMLDOMAttribute::get_parentNode(IXMLDOMNode** parent) { return kelxml::parentNode(refTo(*this), parent); }
HRESULT CMorvXMLDOMAttribute::get_childNodes(IXMLDOMNodeList** list) { return kelxml::childNodes(refTo(*this), list); }
HRESULT CMorvXMLDOMAttribute::get_firstChild(IXMLDOMNode** child) { return kelxml::firstChild(refTo(*this), child); }
HRESULT CMorvXMLDOMAttribute::get_attributes(IXMLDOMNamedNodeMap** map) { return kelxml::attributes(refTo(*this), map); }
HRESULT CMorvXMLDOMAttribute::removeChild(IXMLDOMNode* child, IXMLDOMNode** result) { return kelxml::removeChild(refTo(*this), child, result); }
HRESULT CMorvXMLDOMAttribute::appendChild(IXMLDOMNode* child, IXMLDOMNode** result) { return kelxml::appendChild(refTo(*this), child, result); }
HRESULT CMorvXMLDOMAttribute::hasChildNodes(VARIANT_BOOL* has) { return kelxml::hasChildNodes(refTo(*this), has); }
HRESULT CMorvXMLDOMAttribute::get_ownerDocument(IXMLDOMDocument** document) { return kelxml::ownerDocument(refTo(*this), m_ownerDocument, document); }
HRESULT CMorvXMLDOMAttribute::put_text(BSTR text) { return kelxml::setNodeValue(refTo(*this), text); }
HRESULT CMorvXMLDOMAttribute::get_value(VARIANT* value) { return kelxml::giveValue(m_node.value(), value); }
// clang-format on
