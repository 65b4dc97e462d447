// The generic node object, for texts and all other nodes that have no class of their own.

#include "KelXmlLib/node.h"

#include "com/identity.h"
#include "dom/append_remove.h"
#include "dom/content.h"
#include "dom/navigation.h"
#include "dom/wrap.h"

using namespace kelxml;
using dom::refTo;

CMorvXMLDOMNode::CMorvXMLDOMNode(qt::MovableNode&& node, const qt::DocumentRef& document)
    : m_node(std::move(node).as<QDomNode>()), m_ownerDocument(dom::makeOwnerDocument(document.handle)),
      m_document(document.handle), m_fallbackDocument(document.copyOfFallback())
{}

CMorvXMLDOMNode::~CMorvXMLDOMNode()
{
    // The owner document must be released first. C++ then releases the other members in the right order.
    m_ownerDocument.reset();
}

HRESULT CMorvXMLDOMNode::get_nodeValue(VARIANT* value)
{
    return dom::storeValue(m_node.nodeValue(), value);
}

HRESULT CMorvXMLDOMNode::get_text(BSTR* text)
{
    return m_node.isText() ? dom::storeText(m_node.nodeValue(), text) : S_FALSE;
}

// Methods that share their implementation with other classes: one line each, in interface order.
// clang-format off
HRESULT CMorvXMLDOMNode::QueryInterface(const GUID& riid, void** ppv) { return com::queryInterface(*this, {&IID_IUnknown, &IID_IDispatch, &IID_IXMLDOMNode}, riid, ppv); }
ULONG CMorvXMLDOMNode::AddRef() { return com::addReference(m_refCount); }
ULONG CMorvXMLDOMNode::Release() { return com::releaseReference(*this, m_refCount); }
HRESULT CMorvXMLDOMNode::get_nodeName(BSTR* name) { return dom::nodeName(refTo(*this), name); }
HRESULT CMorvXMLDOMNode::get_nodeType(DOMNodeType* type) { return dom::storeType(static_cast<DOMNodeType>(m_node.nodeType()), type); }
HRESULT CMorvXMLDOMNode::get_parentNode(IXMLDOMNode** parent) { return dom::parentNode(refTo(*this), parent); }
HRESULT CMorvXMLDOMNode::get_childNodes(IXMLDOMNodeList** list) { return dom::childNodes(refTo(*this), list); }
HRESULT CMorvXMLDOMNode::get_firstChild(IXMLDOMNode** child) { return dom::firstChild(refTo(*this), child); }
HRESULT CMorvXMLDOMNode::get_attributes(IXMLDOMNamedNodeMap** map) { return dom::attributes(refTo(*this), map); }
HRESULT CMorvXMLDOMNode::removeChild(IXMLDOMNode* child, IXMLDOMNode** result) { return dom::removeChild(refTo(*this), child, result); }
HRESULT CMorvXMLDOMNode::appendChild(IXMLDOMNode* child, IXMLDOMNode** result) { return dom::appendChild(refTo(*this), child, result); }
HRESULT CMorvXMLDOMNode::hasChildNodes(VARIANT_BOOL* has) { return dom::hasChildNodes(refTo(*this), has); }
HRESULT CMorvXMLDOMNode::get_ownerDocument(IXMLDOMDocument** document) { return dom::ownerDocument(refTo(*this), m_ownerDocument, document); }
HRESULT CMorvXMLDOMNode::put_text(BSTR text) { return dom::setNodeValue(refTo(*this), text); }
// clang-format on
