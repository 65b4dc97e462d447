// The element object. In addition to the methods that all node classes implement, the element class
// implements methods that copy the element, set its text and attributes, and find descendants by tag name.

#include "KelXmlLib/element.h"

#include "com/identity.h"
#include "dom/append_remove.h"
#include "dom/content.h"
#include "dom/navigation.h"
#include "dom/wrap.h"
#include "text/strings.h"
#include "trees/content.h"

using namespace kelxml;
using dom::refTo;

CMorvXMLDOMElement::CMorvXMLDOMElement(qt::MovableNode&& node, const qt::DocumentRef& document)
    : m_node(std::move(node).as<QDomElement>()), m_ownerDocument(dom::makeOwnerDocument(document.handle)),
      m_document(document.handle), m_fallbackDocument(document.copyOfFallback())
{}

CMorvXMLDOMElement::~CMorvXMLDOMElement()
{
    // The owner document must be released first. C++ then releases the other members in the right order.
    m_ownerDocument.reset();
}

HRESULT CMorvXMLDOMElement::cloneNode(VARIANT_BOOL deep, IXMLDOMNode** result)
{
    if (!result)
        return S_OK;
    qt::MovableNode copy = trees::cloneNode(refTo(*this), deep != VARIANT_FALSE);
    if (copy.isElement())
        dom::wrapAs(NODE_ELEMENT, std::move(copy), dom::documentOf(*this), result);
    return S_OK;
}

HRESULT CMorvXMLDOMElement::put_text(BSTR text)
{
    const QString data = text::fromWide(text);
    if (!m_ownerDocument)
        return S_FALSE;
    if (!m_node.isNull())
        trees::replaceFirstChild(refTo(*this), data);
    return S_OK;
}

// If `child` is an element but not a child of this element, `result` gets an object without a Qt node.
HRESULT CMorvXMLDOMElement::removeChild(IXMLDOMNode* child, IXMLDOMNode** result)
{
    return dom::removeChildOfElement(refTo(*this), child, result);
}

// Methods that share their implementation with other classes: one line each, in interface order.
// clang-format off
HRESULT CMorvXMLDOMElement::QueryInterface(const GUID& riid, void** ppv) { return com::queryInterface(*this, {&IID_IUnknown, &IID_IDispatch, &IID_IXMLDOMElement, &IID_IXMLDOMNode}, riid, ppv); }
ULONG CMorvXMLDOMElement::AddRef() { return com::addReference(m_refCount); }
ULONG CMorvXMLDOMElement::Release() { return com::releaseReference(*this, m_refCount); }
HRESULT CMorvXMLDOMElement::get_nodeName(BSTR* name) { return dom::nodeName(refTo(*this), name); }
HRESULT CMorvXMLDOMElement::get_nodeType(DOMNodeType* type) { return dom::storeType(NODE_ELEMENT, type); }
HRESULT CMorvXMLDOMElement::get_parentNode(IXMLDOMNode** parent) { return dom::parentNode(refTo(*this), parent); }
HRESULT CMorvXMLDOMElement::get_childNodes(IXMLDOMNodeList** list) { return dom::childNodes(refTo(*this), list); }
HRESULT CMorvXMLDOMElement::get_firstChild(IXMLDOMNode** child) { return dom::firstChild(refTo(*this), child); }
HRESULT CMorvXMLDOMElement::get_attributes(IXMLDOMNamedNodeMap** map) { return dom::attributes(refTo(*this), map); }
HRESULT CMorvXMLDOMElement::appendChild(IXMLDOMNode* child, IXMLDOMNode** result) { return dom::appendChild(refTo(*this), child, result); }
HRESULT CMorvXMLDOMElement::hasChildNodes(VARIANT_BOOL* has) { return dom::hasChildNodes(refTo(*this), has); }
HRESULT CMorvXMLDOMElement::get_ownerDocument(IXMLDOMDocument** document) { return dom::ownerDocument(refTo(*this), m_ownerDocument, document); }
HRESULT CMorvXMLDOMElement::get_text(BSTR* text) { return dom::storeText(m_node.text(), text); }
HRESULT CMorvXMLDOMElement::selectNodes(BSTR query, IXMLDOMNodeList** list) { return dom::elementsByTagName(refTo(*this), query, list); }
HRESULT CMorvXMLDOMElement::setAttribute(BSTR name, VARIANT value) { return dom::setAttribute(refTo(*this), name, value); }
// clang-format on
