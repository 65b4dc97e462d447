// The generic node: text and every other node that is neither an element nor an attribute.

#include "KelXmlLib/node.h"

#include "com/identity.h"
#include "dom/content.h"
#include "dom/mutation.h"
#include "dom/navigation.h"
#include "dom/wrap.h"

using kelxml::refTo;

CMorvXMLDOMNode::CMorvXMLDOMNode(kelxml::Handle&& node, const kelxml::DocumentRef& document)
    : m_node(std::move(node).as<QDomNode>()), m_ownerDocument(kelxml::makeOwnerDocument(document.handle)),
      m_document(document.handle), m_standIn(document.keptStandIn())
{}

CMorvXMLDOMNode::~CMorvXMLDOMNode()
{
    m_ownerDocument.reset(); // first; the members follow in the promised order by themselves
}

HRESULT CMorvXMLDOMNode::get_nodeValue(VARIANT* value)
{
    return kelxml::giveValue(m_node.nodeValue(), value);
}

HRESULT CMorvXMLDOMNode::get_text(BSTR* text)
{
    return m_node.isText() ? kelxml::giveText(m_node.nodeValue(), text) : S_FALSE;
}

// One line each, in interface order: what the classes have in common.
// clang-format off
HRESULT CMorvXMLDOMNode::QueryInterface(const GUID& riid, void** ppv) { return kelxml::queryInterface(*this, {&IID_IUnknown, &IID_IDispatch, &IID_IXMLDOMNode}, riid, ppv); }
ULONG CMorvXMLDOMNode::AddRef() { return kelxml::addReference(m_refCount); }
ULONG CMorvXMLDOMNode::Release() { return kelxml::releaseReference(*this, m_refCount); }
HRESULT CMorvXMLDOMNode::get_nodeName(BSTR* name) { return kelxml::nodeName(refTo(*this), name); }
HRESULT CMorvXMLDOMNode::get_nodeType(DOMNodeType* type) { return kelxml::reportType(static_cast<DOMNodeType>(m_node.nodeType()), type); }
HRESULT CMorvXMLDOMNode::get_parentNode(IXMLDOMNode** parent) { return kelxml::parentNode(refTo(*this), parent); }
HRESULT CMorvXMLDOMNode::get_childNodes(IXMLDOMNodeList** list) { return kelxml::childNodes(refTo(*this), list); }
HRESULT CMorvXMLDOMNode::get_firstChild(IXMLDOMNode** child) { return kelxml::firstChild(refTo(*this), child); }
HRESULT CMorvXMLDOMNode::get_attributes(IXMLDOMNamedNodeMap** map) { return kelxml::attributes(refTo(*this), map); }
HRESULT CMorvXMLDOMNode::removeChild(IXMLDOMNode* child, IXMLDOMNode** result) { return kelxml::removeChild(refTo(*this), child, result); }
HRESULT CMorvXMLDOMNode::appendChild(IXMLDOMNode* child, IXMLDOMNode** result) { return kelxml::appendChild(refTo(*this), child, result); }
HRESULT CMorvXMLDOMNode::hasChildNodes(VARIANT_BOOL* has) { return kelxml::hasChildNodes(refTo(*this), has); }
HRESULT CMorvXMLDOMNode::get_ownerDocument(IXMLDOMDocument** document) { return kelxml::ownerDocument(refTo(*this), m_ownerDocument, document); }
HRESULT CMorvXMLDOMNode::put_text(BSTR text) { return kelxml::setNodeValue(refTo(*this), text); }
// clang-format on
