/// \file
/// The object over a live list of nodes: children, or elements by tag name.

#pragma once

#include "KelComWrapper/com_ptr.h"
#include "KelXmlLib/dispatch_impl.h"
#include "KelXmlLib/guids.h"
#include "KelXmlLib/xmldom.h"

#include <QtXml/QDomDocument>

class CMorvXMLDOMDocument;

namespace kelxml
{
struct Inside;
struct DocumentRef;
}

/// What a list was made from, so that it can be made anew.
struct CMorvXMLDOMNodeListOrigin
{
    QDomNode node;          ///< whose children, or descendants, are listed
    bool byTagName = false; ///< whether the list is of descendant elements rather than of children
    QString tagName;        ///< of those elements
};

/// See `IXMLDOMNodeList` for what each method does.
class [[gnu::visibility("default")]] CMorvXMLDOMNodeList final
    : public IDispatchImpl<IXMLDOMNodeList, &IID_IXMLDOMNodeList, &LIBID_MSXML, 1, 0, CComTypeInfoHolder>
{
public:
    HRESULT QueryInterface(const GUID& riid, void** ppv) override;
    ULONG AddRef() override;
    ULONG Release() override;

    HRESULT get_item(LONG index, IXMLDOMNode * *node) override;
    HRESULT get_length(LONG * length) override;
    HRESULT nextNode(IXMLDOMNode * *node) override;
    HRESULT reset() override;
    HRESULT _newEnum(IUnknown * *enumerator) override;

    virtual ~CMorvXMLDOMNodeList();

    /// For the library itself: the list that `origin` describes.
    [[gnu::visibility("hidden")]] CMorvXMLDOMNodeList(const CMorvXMLDOMNodeListOrigin& origin,
                                                      const kelxml::DocumentRef& document);

private:
    friend struct kelxml::Inside;

    /// Reads the list, made anew where its node has come into another document, or where memory ran out in
    /// the last reading: Qt lists what it got to, and takes that for the whole from then on.
    template <class Read>
    [[gnu::visibility("hidden")]] auto read(Read read);
    [[gnu::visibility("hidden")]] QDomNode itemAt(LONG index);

    ULONG m_refCount = 0;
    QDomNodeList m_list;
    std::uint32_t m_cursor = 0;
    kel::ComPtr<CMorvXMLDOMDocument> m_ownerDocument; ///< one reference, given back on destruction
    QDomDocument m_document;                          ///< keeps the Qt document alive
    QDomDocument m_standIn; ///< where `m_document` is null, keeps the document alive that the node came from
    QDomNode m_keeper; ///< the element of an attribute whose children are listed; let go of last
    CMorvXMLDOMNodeListOrigin m_origin; ///< to make the list anew; let go of before the keeper
    std::uint64_t m_madeAt = 0; ///< the count of nodes that came into other documents when `m_list` was made
};
