// The map of an element's attributes. If the index is out of range, `get_item` of the map returns `S_OK` and
// null, but `get_item` of the node list returns `S_FALSE`.

#include "KelXmlLib/named_node_map.h"

#include "com/identity.h"
#include "dom/wrap.h"
#include "serialize/attributes.h"
#include "text/strings.h"
#include "trees/owners.h"

using namespace kelxml;

CMorvXMLDOMNamedNodeMap::CMorvXMLDOMNamedNodeMap(const QDomNode& node, const qt::DocumentRef& document)
    : m_map(node.attributes()), m_ownerDocument(dom::makeOwnerDocument(document.handle)),
      m_document(document.handle), m_fallbackDocument(document.copyOfFallback()),
      m_ownerElement(node.isElement() ? node : QDomNode())
{}

CMorvXMLDOMNamedNodeMap::~CMorvXMLDOMNamedNodeMap()
{
    dom::WrapperAccess::releaseAllBefore(m_ownerElement, m_ownerDocument, m_document, m_map);
}

HRESULT CMorvXMLDOMNamedNodeMap::getNamedItem(BSTR name, IXMLDOMNode** node)
{
    if (!name || !node)
        return S_FALSE;
    qt::MovableNode item = m_map.namedItem(text::fromWide(name));
    if (item.isNull())
        return S_FALSE;
    dom::wrapForReturn(std::move(item), dom::documentOf(*this), node);
    return S_OK;
}

/// Returns the item at `index`, which must be in range. Qt finds the item at an index by iterating over a
/// hash from the start, so `m_items` caches the items of a large map. This function fills the cache again
/// when `index` is 0, and when the cache no longer matches the map.
QDomNode CMorvXMLDOMNamedNodeMap::itemAt(LONG index)
{
    if (m_map.length() <= serialize::kMaxInQtOrder)
        return m_map.item(index);
    const auto at = static_cast<std::size_t>(index);
    if (at == 0 || m_items.size() != static_cast<std::size_t>(m_map.length()) ||
        m_map.namedItem(m_items[at].nodeName()) != m_items[at]) {
        trees::ensureValidOwnerDocument({m_ownerElement, dom::documentOf(*this)});
        m_items = serialize::attributesOf(m_ownerElement.toElement());
    }
    return m_items[at];
}

HRESULT CMorvXMLDOMNamedNodeMap::get_item(LONG index, IXMLDOMNode** node)
{
    if (!node)
        return S_FALSE;
    if (index < 0 || index >= m_map.length())
        *node = nullptr;
    else
        dom::wrapForReturn(itemAt(index), dom::documentOf(*this), node);
    return S_OK;
}

HRESULT CMorvXMLDOMNamedNodeMap::get_length(LONG* length)
{
    if (!length)
        return S_FALSE;
    *length = m_map.length();
    return S_OK;
}

// Methods that share their implementation with other classes: one line each.
// clang-format off
HRESULT CMorvXMLDOMNamedNodeMap::QueryInterface(const GUID& riid, void** ppv) { return com::queryInterface(*this, {&IID_IUnknown, &IID_IDispatch, &IID_IXMLDOMNamedNodeMap}, riid, ppv); }
ULONG CMorvXMLDOMNamedNodeMap::AddRef() { return com::addReference(m_refCount); }
ULONG CMorvXMLDOMNamedNodeMap::Release() { return com::releaseReference(*this, m_refCount); }
// clang-format on
