/// \file
/// The class of live attribute maps.

#pragma once

#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/export.h"
#include "KelXmlLib/dispatch_impl.h"
#include "KelXmlLib/guids.h"
#include "KelXmlLib/xmldom.h"

#include <QtXml/QDomDocument>
#include <memory>
#include <vector>

class CMorvXMLDOMDocument;

namespace kelxml::dom
{
struct WrapperAccess;
} // namespace kelxml::dom
namespace kelxml::qt
{
struct DocumentRef;
} // namespace kelxml::qt

/// See `IXMLDOMNamedNodeMap` for what each method does.
class KEL_EXPORT CMorvXMLDOMNamedNodeMap : public IDispatchImpl<IXMLDOMNamedNodeMap, &IID_IXMLDOMNamedNodeMap,
                                                                &LIBID_MSXML, 1, 0, CComTypeInfoHolder>
{
public:
    HRESULT QueryInterface(const GUID& riid, void** ppv) override;
    ULONG AddRef() override;
    ULONG Release() override;

    HRESULT getNamedItem(BSTR name, IXMLDOMNode** node) override;
    HRESULT setNamedItem(IXMLDOMNode* item, IXMLDOMNode** result) override;
    HRESULT removeNamedItem(BSTR name, IXMLDOMNode** node) override;
    HRESULT get_item(LONG index, IXMLDOMNode** node) override;
    HRESULT get_length(LONG* length) override;
    HRESULT getQualifiedItem(BSTR name, BSTR namespaceURI, IXMLDOMNode** node) override;
    HRESULT removeQualifiedItem(BSTR name, BSTR namespaceURI, IXMLDOMNode** node) override;
    HRESULT nextNode(IXMLDOMNode** node) override;
    HRESULT reset() override;
    HRESULT _newEnum(IUnknown** enumerator) override;

    virtual ~CMorvXMLDOMNamedNodeMap();

    /// For internal use. Creates the map of the attributes of `node`. The map is empty if `node` is not an
    /// element. The map keeps `document` alive.
    [[gnu::visibility("hidden")]] CMorvXMLDOMNamedNodeMap(const QDomNode& node,
                                                          const kelxml::qt::DocumentRef& document);

private:
    friend struct kelxml::dom::WrapperAccess;

    [[gnu::visibility("hidden")]] QDomNode itemAt(LONG index);

    ULONG m_refCount = 0;
    QDomNamedNodeMap m_map;
    /// This object's own document object. Released before the other members.
    kel::ComPtr<CMorvXMLDOMDocument> m_ownerDocument;
    /// Keeps the Qt document alive. Null if the document had neither loaded nor created anything when this
    /// object was created.
    QDomDocument m_document;
    /// If `m_document` is null, keeps alive the Qt document that owns the attributes. Otherwise not used.
    std::unique_ptr<const QDomDocument> m_fallbackDocument;
    /// The element that has the attributes, or null. Released after `m_map`, `m_document` and `m_items`,
    /// which may point to the element.
    QDomNode m_ownerElement;
    std::vector<QDomNode> m_items; ///< caches the attributes of a large map
};
