// The working methods of the document, in interface order, but for loading and saving (document_io.cpp). The
// document object is its tree's topmost node as well.

#include "KelXmlLib/document.h"

#include "com/identity.h"
#include "dom/content.h"
#include "dom/inside.h"
#include "dom/mutation.h"
#include "dom/navigation.h"
#include "dom/text.h"
#include "dom/values.h"
#include "dom/wrap.h"

using kelxml::Inside;

CMorvXMLDOMDocument::CMorvXMLDOMDocument(const QDomDocument& document) : m_document(document) {}

CMorvXMLDOMDocument::~CMorvXMLDOMDocument()
{
    m_documentElement.reset();
}

HRESULT CMorvXMLDOMDocument::CreateMe(void*, const GUID&, void** object)
{
    kel::ComPtr<CMorvXMLDOMDocument> document = kelxml::makeOwnerDocument(QDomDocument());
    *object = static_cast<IXMLDOMDocument*>(document.detach());
    return S_OK;
}

HRESULT CMorvXMLDOMDocument::QueryInterface(const GUID& riid, void** ppv)
{
    return kelxml::queryInterface(
        *this, {&IID_IUnknown, &IID_IDispatch, &IID_IXMLDOMDocument, &IID_IXMLDOMNode}, riid, ppv);
}

ULONG CMorvXMLDOMDocument::AddRef()
{
    return kelxml::addReference(m_refCount);
}

ULONG CMorvXMLDOMDocument::Release()
{
    return kelxml::releaseReference(*this, m_refCount);
}

HRESULT CMorvXMLDOMDocument::get_nodeName(BSTR* name)
{
    return kelxml::nodeName(Inside::refTo(*this), name);
}

HRESULT CMorvXMLDOMDocument::get_nodeValue(VARIANT* value)
{
    return kelxml::nodeValue(m_document.nodeValue(), value);
}

HRESULT CMorvXMLDOMDocument::get_nodeType(DOMNodeType* type)
{
    return kelxml::reportType(NODE_DOCUMENT, type);
}

HRESULT CMorvXMLDOMDocument::get_parentNode(IXMLDOMNode** parent)
{
    return kelxml::parentNode(Inside::refTo(*this), parent);
}

HRESULT CMorvXMLDOMDocument::get_childNodes(IXMLDOMNodeList** children)
{
    return kelxml::childNodes(Inside::refTo(*this), children);
}

HRESULT CMorvXMLDOMDocument::get_firstChild(IXMLDOMNode** child)
{
    return kelxml::firstChild(Inside::refTo(*this), child);
}

HRESULT CMorvXMLDOMDocument::get_attributes(IXMLDOMNamedNodeMap** attributes)
{
    return kelxml::attributes(Inside::refTo(*this), attributes);
}

HRESULT CMorvXMLDOMDocument::removeChild(IXMLDOMNode* child, IXMLDOMNode** result)
{
    return kelxml::removeChild(Inside::refTo(*this), child, result);
}

HRESULT CMorvXMLDOMDocument::appendChild(IXMLDOMNode* child, IXMLDOMNode** result)
{
    return kelxml::appendChild(Inside::refTo(*this), child, result);
}

HRESULT CMorvXMLDOMDocument::hasChildNodes(VARIANT_BOOL* hasChildren)
{
    return kelxml::hasChildNodes(Inside::refTo(*this), hasChildren);
}

HRESULT CMorvXMLDOMDocument::get_ownerDocument(IXMLDOMDocument** document)
{
    if (!document)
        return S_FALSE;
    AddRef();
    *document = this;
    return S_OK;
}

HRESULT CMorvXMLDOMDocument::put_text(BSTR text)
{
    return kelxml::setNodeValue(Inside::refTo(*this), text);
}

HRESULT CMorvXMLDOMDocument::selectNodes(BSTR query, IXMLDOMNodeList** list)
{
    return kelxml::elementsByTagName(Inside::refTo(*this), query, list);
}

HRESULT CMorvXMLDOMDocument::get_documentElement(IXMLDOMElement** element)
{
    if (!element)
        return S_FALSE;
    if (!m_documentElement) {
        m_documentElement = kel::ComPtr<CMorvXMLDOMElement>(
            new CMorvXMLDOMElement(m_document.documentElement(), Inside::documentOf(*this)));
    }
    *element = kel::ComPtr<CMorvXMLDOMElement>(m_documentElement).detach();
    return S_OK;
}

HRESULT CMorvXMLDOMDocument::createNode(VARIANT type, BSTR name, BSTR namespaceURI, IXMLDOMNode** node)
{
    if (!name)
        return S_FALSE;
    const int nodeType = kelxml::readInteger(type);
    if (nodeType != NODE_ELEMENT && nodeType != NODE_ATTRIBUTE)
        return S_OK;
    if (!node)
        return S_FALSE;
    const QString qualifiedName = kelxml::fromWide(name);
    const QString uri = kelxml::fromWide(namespaceURI);
    if (nodeType == NODE_ELEMENT)
        kelxml::wrapAs(NODE_ELEMENT, m_document.createElementNS(uri, qualifiedName),
                       Inside::documentOf(*this), node);
    else
        kelxml::wrapAs(NODE_ATTRIBUTE, m_document.createAttributeNS(uri, qualifiedName),
                       Inside::documentOf(*this), node);
    return S_OK;
}
