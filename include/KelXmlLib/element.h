/// \file
/// The class of element objects.

#pragma once

#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/export.h"
#include "KelXmlLib/dispatch_impl.h"
#include "KelXmlLib/guids.h"
#include "KelXmlLib/xmldom.h"

#include <QtXml/QDomDocument>
#include <memory>

class CMorvXMLDOMDocument;

namespace kelxml::dom
{
struct WrapperAccess;
} // namespace kelxml::dom
namespace kelxml::qt
{
class MovableNode;
struct DocumentRef;
} // namespace kelxml::qt

/// See `IXMLDOMNode` and `IXMLDOMElement` for what each method does.
class KEL_EXPORT CMorvXMLDOMElement
    : public IDispatchImpl<IXMLDOMElement, &IID_IXMLDOMElement, &LIBID_MSXML, 1, 0, CComTypeInfoHolder>
{
public:
    HRESULT QueryInterface(const GUID& riid, void** ppv) override;
    ULONG AddRef() override;
    ULONG Release() override;

    HRESULT get_nodeName(BSTR* name) override;
    HRESULT get_nodeValue(VARIANT* value) override;
    HRESULT put_nodeValue(VARIANT value) override;
    HRESULT get_nodeType(DOMNodeType* type) override;
    HRESULT get_parentNode(IXMLDOMNode** parent) override;
    HRESULT get_childNodes(IXMLDOMNodeList** children) override;
    HRESULT get_firstChild(IXMLDOMNode** child) override;
    HRESULT get_lastChild(IXMLDOMNode** child) override;
    HRESULT get_previousSibling(IXMLDOMNode** sibling) override;
    HRESULT get_nextSibling(IXMLDOMNode** sibling) override;
    HRESULT get_attributes(IXMLDOMNamedNodeMap** attributes) override;
    HRESULT insertBefore(IXMLDOMNode* child, VARIANT reference, IXMLDOMNode** result) override;
    HRESULT replaceChild(IXMLDOMNode* child, IXMLDOMNode* replaced, IXMLDOMNode** result) override;
    HRESULT removeChild(IXMLDOMNode* child, IXMLDOMNode** result) override;
    HRESULT appendChild(IXMLDOMNode* child, IXMLDOMNode** result) override;
    HRESULT hasChildNodes(VARIANT_BOOL* hasChildren) override;
    HRESULT get_ownerDocument(IXMLDOMDocument** document) override;
    HRESULT cloneNode(VARIANT_BOOL deep, IXMLDOMNode** result) override;
    HRESULT get_nodeTypeString(BSTR* type) override;
    HRESULT get_text(BSTR* text) override;
    HRESULT put_text(BSTR text) override;
    HRESULT get_specified(VARIANT_BOOL* specified) override;
    HRESULT get_definition(IXMLDOMNode** definition) override;
    HRESULT get_nodeTypedValue(VARIANT* value) override;
    HRESULT put_nodeTypedValue(VARIANT value) override;
    HRESULT get_dataType(VARIANT* type) override;
    HRESULT put_dataType(BSTR type) override;
    HRESULT get_xml(BSTR* xml) override;
    HRESULT transformNode(IXMLDOMNode* stylesheet, BSTR* xml) override;
    HRESULT selectNodes(BSTR query, IXMLDOMNodeList** list) override;
    HRESULT selectSingleNode(BSTR query, IXMLDOMNode** node) override;
    HRESULT get_parsed(VARIANT_BOOL* parsed) override;
    HRESULT get_namespaceURI(BSTR* uri) override;
    HRESULT get_prefix(BSTR* prefix) override;
    HRESULT get_baseName(BSTR* name) override;
    HRESULT transformNodeToObject(IXMLDOMNode* stylesheet, VARIANT output) override;

    HRESULT get_tagName(BSTR* name) override;
    HRESULT getAttribute(BSTR name, VARIANT* value) override;
    HRESULT setAttribute(BSTR name, VARIANT value) override;
    HRESULT removeAttribute(BSTR name) override;
    HRESULT getAttributeNode(BSTR name, IXMLDOMAttribute** attribute) override;
    HRESULT setAttributeNode(IXMLDOMAttribute* attribute, IXMLDOMAttribute** replaced) override;
    HRESULT removeAttributeNode(IXMLDOMAttribute* attribute, IXMLDOMAttribute** removed) override;
    HRESULT getElementsByTagName(BSTR name, IXMLDOMNodeList** list) override;
    HRESULT normalize() override;

    virtual ~CMorvXMLDOMElement();

    /// For internal use. Creates an object for `node`. Also creates a document object for `document`;
    /// `get_ownerDocument` returns this document object.
    [[gnu::visibility("hidden")]] CMorvXMLDOMElement(kelxml::qt::MovableNode&& node,
                                                     const kelxml::qt::DocumentRef& document);

private:
    friend struct kelxml::dom::WrapperAccess;

    ULONG m_refCount = 0;
    QDomElement m_node;
    /// This object's own document object. Released before the other members.
    kel::ComPtr<CMorvXMLDOMDocument> m_ownerDocument;
    /// Keeps the Qt document alive. Null if the document had neither loaded nor created anything when this
    /// object was created.
    QDomDocument m_document;
    /// Used only if `m_document` is null. `m_node` then belongs to another Qt document, or to none; this
    /// member keeps that document alive.
    std::unique_ptr<const QDomDocument> m_fallbackDocument;
};
