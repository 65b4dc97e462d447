// The working methods of the generic node, in interface order. It answers for text and for every other node
// that is neither an element nor an attribute.

#include "KelXmlLib/node.h"

#include "com/identity.h"
#include "dom/content.h"
#include "dom/inside.h"
#include "dom/mutation.h"
#include "dom/navigation.h"
#include "dom/text.h"
#include "dom/tree_guards.h"
#include "dom/wrap.h"

using kelxml::Inside;

CMorvXMLDOMNode::CMorvXMLDOMNode(const QDomNode& node, const kelxml::DocumentRef& document)
    : m_node(node), m_ownerDocument(kelxml::makeOwnerDocument(document.handle)), m_document(document.handle),
      m_standIn(document.keptStandIn())
{}

CMorvXMLDOMNode::~CMorvXMLDOMNode()
{
    m_ownerDocument.reset(); // first; the members follow in the promised order by themselves
}

HRESULT CMorvXMLDOMNode::QueryInterface(const GUID& riid, void** ppv)
{
    return kelxml::queryInterface(*this, {&IID_IUnknown, &IID_IDispatch, &IID_IXMLDOMNode}, riid, ppv);
}

ULONG CMorvXMLDOMNode::AddRef()
{
    return kelxml::addReference(m_refCount);
}

ULONG CMorvXMLDOMNode::Release()
{
    return kelxml::releaseReference(*this, m_refCount);
}

HRESULT CMorvXMLDOMNode::get_nodeName(BSTR* name)
{
    return kelxml::nodeName(Inside::refTo(*this), name);
}

HRESULT CMorvXMLDOMNode::get_nodeValue(VARIANT* value)
{
    return kelxml::nodeValue(m_node.isText() ? m_node.toText().data() : m_node.nodeValue(), value);
}

HRESULT CMorvXMLDOMNode::get_nodeType(DOMNodeType* type)
{
    return kelxml::reportType(static_cast<DOMNodeType>(m_node.nodeType()), type);
}

HRESULT CMorvXMLDOMNode::get_parentNode(IXMLDOMNode** parent)
{
    return kelxml::parentNode(Inside::refTo(*this), parent);
}

HRESULT CMorvXMLDOMNode::get_childNodes(IXMLDOMNodeList** children)
{
    return kelxml::childNodes(Inside::refTo(*this), children);
}

HRESULT CMorvXMLDOMNode::get_firstChild(IXMLDOMNode** child)
{
    return kelxml::firstChild(Inside::refTo(*this), child);
}

HRESULT CMorvXMLDOMNode::get_attributes(IXMLDOMNamedNodeMap** attributes)
{
    return kelxml::attributes(Inside::refTo(*this), attributes);
}

HRESULT CMorvXMLDOMNode::removeChild(IXMLDOMNode* child, IXMLDOMNode** result)
{
    return kelxml::removeChild(Inside::refTo(*this), child, result);
}

HRESULT CMorvXMLDOMNode::appendChild(IXMLDOMNode* child, IXMLDOMNode** result)
{
    return kelxml::appendChild(Inside::refTo(*this), child, result);
}

HRESULT CMorvXMLDOMNode::hasChildNodes(VARIANT_BOOL* hasChildren)
{
    return kelxml::hasChildNodes(Inside::refTo(*this), hasChildren);
}

HRESULT CMorvXMLDOMNode::get_ownerDocument(IXMLDOMDocument** document)
{
    return kelxml::ownerDocument(Inside::refTo(*this), m_ownerDocument, document);
}

HRESULT CMorvXMLDOMNode::get_text(BSTR* text)
{
    if (!text || !m_node.isText())
        return S_FALSE;
    *text = kelxml::toBstr(m_node.toText().data());
    return S_OK;
}

HRESULT CMorvXMLDOMNode::put_text(BSTR text)
{
    return kelxml::setNodeValue(Inside::refTo(*this), text);
}
