// The list of nodes. It is live; its cursor is an index that only grows.

#include "KelXmlLib/node_list.h"

#include "com/identity.h"
#include "dom/wrap.h"
#include "guards/live_list.h"
#include "guards/tree.h"

CMorvXMLDOMNodeList::CMorvXMLDOMNodeList(kelxml::guards::ListOrigin&& origin,
                                         const kelxml::DocumentRef& document)
    : m_list(kelxml::guards::makeList(origin)), m_ownerDocument(kelxml::makeOwnerDocument(document.handle)),
      m_document(document.handle), m_standIn(document.keptStandIn()),
      m_ownerElement(kelxml::guards::ownerElementOf(origin.node)), m_live(std::move(origin))
{}

CMorvXMLDOMNodeList::~CMorvXMLDOMNodeList()
{
    kelxml::WrapperAccess::releaseBefore(m_ownerElement, m_ownerDocument, m_document, m_list);
}

HRESULT CMorvXMLDOMNodeList::get_item(LONG index, IXMLDOMNode** node)
{
    if (!node || index < 0)
        return S_FALSE;
    kelxml::Handle item = m_live->item(static_cast<std::size_t>(index));
    if (item.isNull())
        return S_FALSE;
    kelxml::wrapForReturn(std::move(item), kelxml::documentOf(*this), node);
    return S_OK;
}

HRESULT CMorvXMLDOMNodeList::get_length(LONG* length)
{
    if (!length)
        return S_FALSE;
    *length = static_cast<LONG>(m_live->length());
    return S_OK;
}

HRESULT CMorvXMLDOMNodeList::nextNode(IXMLDOMNode** node)
{
    if (!node)
        return S_FALSE;
    kelxml::Handle item = m_live->item(m_cursor);
    if (item.isNull()) {
        *node = nullptr;
        return S_FALSE;
    }
    ++m_cursor;
    kelxml::wrapForReturn(std::move(item), kelxml::documentOf(*this), node);
    return S_OK;
}

// One line each.
// clang-format off
HRESULT CMorvXMLDOMNodeList::QueryInterface(const GUID& riid, void** ppv) { return kelxml::queryInterface(*this, {&IID_IUnknown, &IID_IDispatch, &IID_IXMLDOMNodeList}, riid, ppv); }
ULONG CMorvXMLDOMNodeList::AddRef() { return kelxml::addReference(m_refCount); }
ULONG CMorvXMLDOMNodeList::Release() { return kelxml::releaseReference(*this, m_refCount); }
// clang-format on
