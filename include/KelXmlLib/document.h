/// \file
/// The class of document objects.

#pragma once

#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/export.h"
#include "KelXmlLib/dispatch_impl.h"
#include "KelXmlLib/guids.h"
#include "KelXmlLib/xmldom.h"

#include <QtXml/QDomDocument>

class CMorvXMLDOMElement;

namespace kelxml::dom
{
struct WrapperAccess;
} // namespace kelxml::dom

/// See `IXMLDOMNode` and `IXMLDOMDocument` for what each method does.
class KEL_EXPORT CMorvXMLDOMDocument
    : public CComCoClass<CMorvXMLDOMDocument, &CLSID_DOMDocument>,
      public IDispatchImpl<IXMLDOMDocument, &IID_IXMLDOMDocument, &LIBID_MSXML, 1, 0, CComTypeInfoHolder>
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

    HRESULT get_doctype(IXMLDOMDocumentType** type) override;
    HRESULT get_implementation(IXMLDOMImplementation** implementation) override;
    HRESULT get_documentElement(IXMLDOMElement** element) override;
    HRESULT putref_documentElement(IXMLDOMElement* element) override;
    HRESULT createElement(BSTR name, IXMLDOMElement** element) override;
    HRESULT createDocumentFragment(IXMLDOMDocumentFragment** fragment) override;
    HRESULT createTextNode(BSTR data, IXMLDOMText** text) override;
    HRESULT createComment(BSTR data, IXMLDOMComment** comment) override;
    HRESULT createCDATASection(BSTR data, IXMLDOMCDATASection** section) override;
    HRESULT createProcessingInstruction(BSTR target, BSTR data,
                                        IXMLDOMProcessingInstruction** instruction) override;
    HRESULT createAttribute(BSTR name, IXMLDOMAttribute** attribute) override;
    HRESULT createEntityReference(BSTR name, IXMLDOMEntityReference** reference) override;
    HRESULT getElementsByTagName(BSTR name, IXMLDOMNodeList** list) override;
    HRESULT createNode(VARIANT type, BSTR name, BSTR namespaceURI, IXMLDOMNode** node) override;
    HRESULT nodeFromID(BSTR id, IXMLDOMNode** node) override;
    HRESULT load(VARIANT source, VARIANT_BOOL* success) override;
    HRESULT get_readyState(LONG* state) override;
    HRESULT get_parseError(IXMLDOMParseError** error) override;
    HRESULT get_url(BSTR* url) override;
    HRESULT get_async(VARIANT_BOOL* async) override;
    HRESULT put_async(VARIANT_BOOL async) override;
    HRESULT abort() override;
    HRESULT loadXML(BSTR xml, VARIANT_BOOL* success) override;
    HRESULT save(VARIANT destination) override;
    HRESULT get_validateOnParse(VARIANT_BOOL* validate) override;
    HRESULT put_validateOnParse(VARIANT_BOOL validate) override;
    HRESULT get_resolveExternals(VARIANT_BOOL* resolve) override;
    HRESULT put_resolveExternals(VARIANT_BOOL resolve) override;
    HRESULT get_preserveWhiteSpace(VARIANT_BOOL* preserve) override;
    HRESULT put_preserveWhiteSpace(VARIANT_BOOL preserve) override;
    HRESULT put_onreadystatechange(VARIANT handler) override;
    HRESULT put_ondataavailable(VARIANT handler) override;
    HRESULT put_ontransformnode(VARIANT handler) override;

    virtual ~CMorvXMLDOMDocument();

    /// Creates an empty document. `DllGetClassObject` calls this function through the object map (see
    /// `ObjectMapEntry`).
    /// \param outer not used, because aggregation is not supported
    /// \param riid not used: after this call, the caller asks the new document for the interface `riid`
    /// \param object receives the document with one reference, which the caller releases
    /// \return `S_OK`
    [[gnu::visibility("hidden")]] static HRESULT CreateMe(void* outer, const GUID& riid, void** object);
    /// For internal use. Creates a document object for a Qt document. Several document objects may refer to
    /// the same Qt document.
    [[gnu::visibility("hidden")]] explicit CMorvXMLDOMDocument(const QDomDocument& document);

private:
    friend struct kelxml::dom::WrapperAccess;

    ULONG m_refCount = 0;
    QDomDocument m_document;
    /// The object that `get_documentElement` returns. Null until the first call of `get_documentElement`.
    kel::ComPtr<CMorvXMLDOMElement> m_documentElement;
};
