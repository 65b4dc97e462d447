// The working methods of the list of nodes, in interface order. The list is live; its cursor is an index that
// only grows.

#include "KelXmlLib/node_list.h"

#include "com/identity.h"
#include "dom/inside.h"
#include "dom/tree_guards.h"
#include "dom/wrap.h"

#include <limits>

using kelxml::Inside;

namespace
{

/// No count of changes: a list made at it is made anew.
constexpr std::uint64_t kNeverMade = std::numeric_limits<std::uint64_t>::max();

QDomNodeList makeList(const CMorvXMLDOMNodeListOrigin& origin, const kelxml::DocumentRef& document)
{
    kelxml::settle({origin.node, document});
    if (!origin.byTagName)
        return origin.node.childNodes();
    if (origin.node.isDocument())
        return origin.node.toDocument().elementsByTagName(origin.tagName);
    return origin.node.toElement().elementsByTagName(origin.tagName);
}

} // namespace

CMorvXMLDOMNodeList::CMorvXMLDOMNodeList(const CMorvXMLDOMNodeListOrigin& origin,
                                         const kelxml::DocumentRef& document)
    : m_list(makeList(origin, document)), m_ownerDocument(kelxml::makeOwnerDocument(document.handle)),
      m_document(document.handle), m_standIn(document.keptStandIn()), m_keeper(kelxml::keeperOf(origin.node)),
      m_origin(origin), m_madeAt(kelxml::documentChanges())
{}

CMorvXMLDOMNodeList::~CMorvXMLDOMNodeList()
{
    Inside::letGoBefore(m_keeper, m_ownerDocument, m_document, m_list);
}

template <class Read>
auto CMorvXMLDOMNodeList::read(Read read)
{
    const kelxml::DocumentRef document = Inside::documentOf(*this);
    kelxml::settle({m_origin.node, document});
    if (m_madeAt != kelxml::documentChanges())
        m_list = makeList(m_origin, document);
    m_madeAt = kNeverMade;
    const auto answer = read(m_list);
    m_madeAt = kelxml::documentChanges();
    return answer;
}

QDomNode CMorvXMLDOMNodeList::itemAt(LONG index)
{
    return read([&](const QDomNodeList& list) { return list.item(index); });
}

HRESULT CMorvXMLDOMNodeList::QueryInterface(const GUID& riid, void** ppv)
{
    return kelxml::queryInterface(*this, {&IID_IUnknown, &IID_IDispatch, &IID_IXMLDOMNodeList}, riid, ppv);
}

ULONG CMorvXMLDOMNodeList::AddRef()
{
    return kelxml::addReference(m_refCount);
}

ULONG CMorvXMLDOMNodeList::Release()
{
    return kelxml::releaseReference(*this, m_refCount);
}

HRESULT CMorvXMLDOMNodeList::get_item(LONG index, IXMLDOMNode** node)
{
    if (!node || index < 0)
        return S_FALSE;
    const QDomNode item = itemAt(index);
    if (item.isNull())
        return S_FALSE;
    kelxml::wrapForReturn(item, Inside::documentOf(*this), node);
    return S_OK;
}

HRESULT CMorvXMLDOMNodeList::get_length(LONG* length)
{
    if (!length)
        return S_FALSE;
    *length = read([](const QDomNodeList& list) { return list.length(); });
    return S_OK;
}

HRESULT CMorvXMLDOMNodeList::nextNode(IXMLDOMNode** node)
{
    if (!node)
        return S_FALSE;
    const QDomNode item = itemAt(static_cast<LONG>(m_cursor));
    if (item.isNull()) {
        *node = nullptr;
        return S_FALSE;
    }
    ++m_cursor;
    kelxml::wrapForReturn(item, Inside::documentOf(*this), node);
    return S_OK;
}
