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

    /// For internal use. Creates the map of `node`, which is empty if `node` is not an element.
    [[gnu::visibility("hidden")]] CMorvXMLDOMNamedNodeMap(const QDomNode& node,
                                                          const kelxml::qt::DocumentRef& document);

private:
    friend struct kelxml::dom::WrapperAccess;

    [[gnu::visibility("hidden")]] QDomNode itemAt(LONG index);

    ULONG m_refCount = 0;
    QDomNamedNodeMap m_map;
    kel::ComPtr<CMorvXMLDOMDocument> m_ownerDocument; ///< owns one reference, released first
    QDomDocument m_document;                          ///< keeps the Qt document alive
    std::unique_ptr<const QDomDocument>
        m_fallbackDocument;        ///< keeps the node's document alive when `m_document` is null
    QDomNode m_ownerElement;       ///< the element that has the attributes; released last
    std::vector<QDomNode> m_items; ///< caches the attributes of a large map
};
