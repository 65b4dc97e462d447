// The working methods of the element, in interface order: beside what all nodes do, it copies itself, sets
// its text and its attributes, and finds its descendants by tag name.

#include "KelXmlLib/element.h"

#include "com/identity.h"
#include "dom/content.h"
#include "dom/inside.h"
#include "dom/mutation.h"
#include "dom/navigation.h"
#include "dom/text.h"
#include "dom/tree_guards.h"
#include "dom/values.h"
#include "dom/wrap.h"

using kelxml::Inside;

CMorvXMLDOMElement::CMorvXMLDOMElement(const QDomNode& node, const kelxml::DocumentRef& document)
    : m_node(node.toElement()), m_ownerDocument(kelxml::makeOwnerDocument(document.handle)),
      m_document(document.handle), m_standIn(document.keptStandIn())
{}

CMorvXMLDOMElement::~CMorvXMLDOMElement()
{
    m_ownerDocument.reset(); // first; the members follow in the promised order by themselves
}

HRESULT CMorvXMLDOMElement::QueryInterface(const GUID& riid, void** ppv)
{
    return kelxml::queryInterface(
        *this, {&IID_IUnknown, &IID_IDispatch, &IID_IXMLDOMElement, &IID_IXMLDOMNode}, riid, ppv);
}

ULONG CMorvXMLDOMElement::AddRef()
{
    return kelxml::addReference(m_refCount);
}

ULONG CMorvXMLDOMElement::Release()
{
    return kelxml::releaseReference(*this, m_refCount);
}

HRESULT CMorvXMLDOMElement::get_nodeName(BSTR* name)
{
    return kelxml::nodeName(Inside::refTo(*this), name);
}

HRESULT CMorvXMLDOMElement::get_nodeType(DOMNodeType* type)
{
    return kelxml::reportType(NODE_ELEMENT, type);
}

HRESULT CMorvXMLDOMElement::get_parentNode(IXMLDOMNode** parent)
{
    return kelxml::parentNode(Inside::refTo(*this), parent);
}

HRESULT CMorvXMLDOMElement::get_childNodes(IXMLDOMNodeList** children)
{
    return kelxml::childNodes(Inside::refTo(*this), children);
}

HRESULT CMorvXMLDOMElement::get_firstChild(IXMLDOMNode** child)
{
    return kelxml::firstChild(Inside::refTo(*this), child);
}

HRESULT CMorvXMLDOMElement::get_attributes(IXMLDOMNamedNodeMap** attributes)
{
    return kelxml::attributes(Inside::refTo(*this), attributes);
}

HRESULT CMorvXMLDOMElement::removeChild(IXMLDOMNode* child, IXMLDOMNode** result)
{
    return kelxml::removeChildOfElement(Inside::refTo(*this), child, result);
}

HRESULT CMorvXMLDOMElement::appendChild(IXMLDOMNode* child, IXMLDOMNode** result)
{
    return kelxml::appendChild(Inside::refTo(*this), child, result);
}

HRESULT CMorvXMLDOMElement::hasChildNodes(VARIANT_BOOL* hasChildren)
{
    return kelxml::hasChildNodes(Inside::refTo(*this), hasChildren);
}

HRESULT CMorvXMLDOMElement::get_ownerDocument(IXMLDOMDocument** document)
{
    return kelxml::ownerDocument(Inside::refTo(*this), m_ownerDocument, document);
}

HRESULT CMorvXMLDOMElement::cloneNode(VARIANT_BOOL deep, IXMLDOMNode** result)
{
    if (!result)
        return S_OK;
    kelxml::settle(Inside::refTo(*this));
    const QDomNode copy = m_node.cloneNode(deep != VARIANT_FALSE);
    if (copy.isElement())
        kelxml::wrapAs(NODE_ELEMENT, copy, Inside::documentOf(*this), result);
    return S_OK;
}

HRESULT CMorvXMLDOMElement::get_text(BSTR* text)
{
    if (!text)
        return S_FALSE;
    *text = kelxml::toBstr(m_node.text());
    return S_OK;
}

HRESULT CMorvXMLDOMElement::put_text(BSTR text)
{
    const QString data = kelxml::fromWide(text);
    if (!m_ownerDocument)
        return S_FALSE;
    if (m_node.isNull())
        return S_OK;
    kelxml::settle(Inside::refTo(*this));
    QDomDocument document = Inside::documentOf(*this).living();
    const QDomNode replacement = document.createTextNode(data);
    m_node.removeChild(m_node.firstChild());
    m_node.appendChild(replacement);
    return S_OK;
}

HRESULT CMorvXMLDOMElement::selectNodes(BSTR query, IXMLDOMNodeList** list)
{
    return kelxml::elementsByTagName(Inside::refTo(*this), query, list);
}

HRESULT CMorvXMLDOMElement::setAttribute(BSTR name, VARIANT value)
{
    if (!name)
        return S_FALSE;
    kelxml::settle(Inside::refTo(*this));
    kelxml::setAttributeValue(m_node, kelxml::fromWide(name), value);
    return S_OK;
}
