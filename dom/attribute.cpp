// The working methods of the attribute, in interface order. Its value is read with get_value and set with
// put_text.

#include "KelXmlLib/attribute.h"

#include "com/identity.h"
#include "dom/content.h"
#include "dom/inside.h"
#include "dom/mutation.h"
#include "dom/navigation.h"
#include "dom/tree_guards.h"
#include "dom/wrap.h"

using kelxml::Inside;

CMorvXMLDOMAttribute::CMorvXMLDOMAttribute(const QDomNode& node, const kelxml::DocumentRef& document)
    : m_node(node.toAttr()), m_ownerDocument(kelxml::makeOwnerDocument(document.handle)),
      m_document(document.handle), m_standIn(document.keptStandIn()), m_keeper(kelxml::keeperOf(node))
{}

CMorvXMLDOMAttribute::~CMorvXMLDOMAttribute()
{
    Inside::letGoBefore(m_keeper, m_ownerDocument, m_document, m_node);
}

HRESULT CMorvXMLDOMAttribute::QueryInterface(const GUID& riid, void** ppv)
{
    return kelxml::queryInterface(
        *this, {&IID_IUnknown, &IID_IDispatch, &IID_IXMLDOMAttribute, &IID_IXMLDOMNode}, riid, ppv);
}

ULONG CMorvXMLDOMAttribute::AddRef()
{
    return kelxml::addReference(m_refCount);
}

ULONG CMorvXMLDOMAttribute::Release()
{
    return kelxml::releaseReference(*this, m_refCount);
}

HRESULT CMorvXMLDOMAttribute::get_nodeName(BSTR* name)
{
    return kelxml::nodeName(Inside::refTo(*this), name);
}

HRESULT CMorvXMLDOMAttribute::get_nodeType(DOMNodeType* type)
{
    return kelxml::reportType(NODE_ATTRIBUTE, type);
}

HRESULT CMorvXMLDOMAttribute::get_parentNode(IXMLDOMNode** parent)
{
    return kelxml::parentNode(Inside::refTo(*this), parent);
}

HRESULT CMorvXMLDOMAttribute::get_childNodes(IXMLDOMNodeList** children)
{
    return kelxml::childNodes(Inside::refTo(*this), children);
}

HRESULT CMorvXMLDOMAttribute::get_firstChild(IXMLDOMNode** child)
{
    return kelxml::firstChild(Inside::refTo(*this), child);
}

HRESULT CMorvXMLDOMAttribute::get_attributes(IXMLDOMNamedNodeMap** attributes)
{
    return kelxml::attributes(Inside::refTo(*this), attributes);
}

HRESULT CMorvXMLDOMAttribute::removeChild(IXMLDOMNode* child, IXMLDOMNode** result)
{
    return kelxml::removeChild(Inside::refTo(*this), child, result);
}

HRESULT CMorvXMLDOMAttribute::appendChild(IXMLDOMNode* child, IXMLDOMNode** result)
{
    return kelxml::appendChild(Inside::refTo(*this), child, result);
}

HRESULT CMorvXMLDOMAttribute::hasChildNodes(VARIANT_BOOL* hasChildren)
{
    return kelxml::hasChildNodes(Inside::refTo(*this), hasChildren);
}

HRESULT CMorvXMLDOMAttribute::get_ownerDocument(IXMLDOMDocument** document)
{
    return kelxml::ownerDocument(Inside::refTo(*this), m_ownerDocument, document);
}

HRESULT CMorvXMLDOMAttribute::get_text(BSTR*)
{
    return S_FALSE; // an attribute is no text node, and only those have a text to give
}

HRESULT CMorvXMLDOMAttribute::put_text(BSTR text)
{
    return kelxml::setNodeValue(Inside::refTo(*this), text);
}

HRESULT CMorvXMLDOMAttribute::get_value(VARIANT* value)
{
    return kelxml::nodeValue(m_node.value(), value);
}
