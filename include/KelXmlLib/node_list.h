/// \file
/// The class of live lists. A list contains either the children of a node or those descendant elements of a
/// node that have a given tag name.

#pragma once

#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/export.h"
#include "KelXmlLib/dispatch_impl.h"
#include "KelXmlLib/guids.h"
#include "KelXmlLib/in_place.h"
#include "KelXmlLib/xmldom.h"

#include <QtXml/QDomDocument>
#include <memory>

class CMorvXMLDOMDocument;

namespace kelxml::dom
{
struct WrapperAccess;
} // namespace kelxml::dom
namespace kelxml::lists
{
class LiveList;
struct ListOrigin;
} // namespace kelxml::lists
namespace kelxml::qt
{
struct DocumentRef;
} // namespace kelxml::qt

/// See `IXMLDOMNodeList` for what each method does.
class KEL_EXPORT CMorvXMLDOMNodeList
    : public IDispatchImpl<IXMLDOMNodeList, &IID_IXMLDOMNodeList, &LIBID_MSXML, 1, 0, CComTypeInfoHolder>
{
public:
    HRESULT QueryInterface(const GUID& riid, void** ppv) override;
    ULONG AddRef() override;
    ULONG Release() override;

    HRESULT get_item(LONG index, IXMLDOMNode** node) override;
    HRESULT get_length(LONG* length) override;
    HRESULT nextNode(IXMLDOMNode** node) override;
    HRESULT reset() override;
    HRESULT _newEnum(IUnknown** enumerator) override;

    virtual ~CMorvXMLDOMNodeList();

    /// For internal use. Creates the list that `origin` describes. The list keeps `document` alive.
    [[gnu::visibility("hidden")]] CMorvXMLDOMNodeList(kelxml::lists::ListOrigin&& origin,
                                                      const kelxml::qt::DocumentRef& document);

private:
    friend struct kelxml::dom::WrapperAccess;

    ULONG m_refCount = 0;
    QDomNodeList m_list; ///< set, but not read; kept so that the layout does not change
    std::uint32_t m_cursor = 0;
    /// This object's own document object. Released before the other members.
    kel::ComPtr<CMorvXMLDOMDocument> m_ownerDocument;
    /// Keeps the Qt document alive. Null if the document had neither loaded nor created anything when this
    /// object was created.
    QDomDocument m_document;
    /// If `m_document` is null, keeps the Qt document that owns the nodes in this list alive. Otherwise not
    /// used.
    std::unique_ptr<const QDomDocument> m_fallbackDocument;
    /// If this list contains the children of an attribute: the element that has the attribute. Otherwise
    /// null. Released after `m_live`, `m_list` and `m_document`, which may point to the element.
    QDomNode m_ownerElement;
    /// Reads the nodes of this list. Released before `m_ownerElement`.
    kelxml::InPlace<kelxml::lists::LiveList, 56> m_live;
};
