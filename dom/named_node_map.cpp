// The working methods of the map of attributes, in interface order. Out of range it answers otherwise than
// the list does: null and S_OK.

#include "KelXmlLib/named_node_map.h"

#include "com/identity.h"
#include "dom/inside.h"
#include "dom/text.h"
#include "dom/wrap.h"

using kelxml::Inside;

CMorvXMLDOMNamedNodeMap::CMorvXMLDOMNamedNodeMap(const QDomNode& node, const kelxml::DocumentRef& document)
    : m_map(node.attributes()), m_ownerDocument(kelxml::makeOwnerDocument(document.handle)),
      m_document(document.handle), m_standIn(document.keptStandIn()),
      m_keeper(node.isElement() ? node : QDomNode())
{}

CMorvXMLDOMNamedNodeMap::~CMorvXMLDOMNamedNodeMap()
{
    Inside::letGoBefore(m_keeper, m_ownerDocument, m_document, m_map);
}

HRESULT CMorvXMLDOMNamedNodeMap::QueryInterface(const GUID& riid, void** ppv)
{
    return kelxml::queryInterface(*this, {&IID_IUnknown, &IID_IDispatch, &IID_IXMLDOMNamedNodeMap}, riid,
                                  ppv);
}

ULONG CMorvXMLDOMNamedNodeMap::AddRef()
{
    return kelxml::addReference(m_refCount);
}

ULONG CMorvXMLDOMNamedNodeMap::Release()
{
    return kelxml::releaseReference(*this, m_refCount);
}

HRESULT CMorvXMLDOMNamedNodeMap::getNamedItem(BSTR name, IXMLDOMNode** node)
{
    if (!name || !node)
        return S_FALSE;
    const QDomNode item = m_map.namedItem(kelxml::fromWide(name));
    if (item.isNull())
        return S_FALSE;
    kelxml::wrapForReturn(item, Inside::documentOf(*this), node);
    return S_OK;
}

HRESULT CMorvXMLDOMNamedNodeMap::get_item(LONG index, IXMLDOMNode** node)
{
    if (!node)
        return S_FALSE;
    if (index < 0 || index >= m_map.length())
        *node = nullptr;
    else
        kelxml::wrapForReturn(m_map.item(index), Inside::documentOf(*this), node);
    return S_OK;
}

HRESULT CMorvXMLDOMNamedNodeMap::get_length(LONG* length)
{
    if (!length)
        return S_FALSE;
    *length = m_map.length();
    return S_OK;
}
