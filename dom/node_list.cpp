// The live list of nodes. `nextNode` returns the node at `m_cursor`, an index that only increases.

#include "KelXmlLib/node_list.h"

#include "com/identity.h"
#include "dom/wrap.h"
#include "lists/live_list.h"
#include "trees/owners.h"

using namespace kelxml;

CMorvXMLDOMNodeList::CMorvXMLDOMNodeList(lists::ListOrigin&& origin, const qt::DocumentRef& document)
    : m_list(lists::makeQtList(origin)), m_ownerDocument(dom::makeOwnerDocument(document.handle)),
      m_document(document.handle), m_fallbackDocument(document.copyOfFallback()),
      m_ownerElement(trees::ownerElementOf(origin.node)), m_live(std::move(origin))
{}

CMorvXMLDOMNodeList::~CMorvXMLDOMNodeList()
{
    dom::WrapperAccess::releaseAllBefore(m_ownerElement, m_ownerDocument, m_document, m_list);
}

HRESULT CMorvXMLDOMNodeList::get_item(LONG index, IXMLDOMNode** node)
{
    if (!node || index < 0)
        return S_FALSE;
    qt::MovableNode item = m_live->item(static_cast<std::size_t>(index));
    if (item.isNull())
        return S_FALSE;
    dom::wrapForReturn(std::move(item), dom::documentOf(*this), node);
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
    qt::MovableNode item = m_live->item(m_cursor);
    if (item.isNull()) {
        *node = nullptr;
        return S_FALSE;
    }
    ++m_cursor;
    dom::wrapForReturn(std::move(item), dom::documentOf(*this), node);
    return S_OK;
}

// Methods that share their implementation with other classes: one line each.
// clang-format off
HRESULT CMorvXMLDOMNodeList::QueryInterface(const GUID& riid, void** ppv) { return com::queryInterface(*this, {&IID_IUnknown, &IID_IDispatch, &IID_IXMLDOMNodeList}, riid, ppv); }
ULONG CMorvXMLDOMNodeList::AddRef() { return com::addReference(m_refCount); }
ULONG CMorvXMLDOMNodeList::Release() { return com::releaseReference(*this, m_refCount); }
// clang-format on
