/// \file
/// The published XML DOM interfaces, in the published slot order, and what each method does in this library.
///
/// Conventions. String arguments are read up to their first zero character. The caller owns a returned BSTR
/// and frees it with `SysFreeString`; it owns one reference to a returned object and releases it.
/// Out-parameters are written last and, unless said otherwise, only with `S_OK`. With a null out-pointer, a
/// method does nothing and returns `S_FALSE`. The methods return no error codes. Without memory they throw
/// `std::bad_alloc` and leave out-parameters untouched; only if the BSTR itself cannot be allocated, they
/// return `S_OK` and a null BSTR. One thread at a time uses a document and all that was reached from it.
///
/// The no-ops return `S_OK` and write nothing, outputs included. The page `no-ops.md` says what to call
/// instead.

#pragma once

#include "KelComWrapper/dispatch.h"

class IXMLDOMAttribute;
class IXMLDOMCDATASection;
class IXMLDOMComment;
class IXMLDOMDocument;
class IXMLDOMDocumentFragment;
class IXMLDOMDocumentType;
class IXMLDOMElement;
class IXMLDOMEntityReference;
class IXMLDOMImplementation;
class IXMLDOMNamedNodeMap;
class IXMLDOMNodeList;
class IXMLDOMParseError;
class IXMLDOMProcessingInstruction;
class IXMLDOMText;

/// The kind of a node; Qt's numbers are the same.
enum tagDOMNodeType : std::int32_t {
    NODE_INVALID = 0,                ///< not returned
    NODE_ELEMENT = 1,                ///< an `IXMLDOMElement`
    NODE_ATTRIBUTE = 2,              ///< an `IXMLDOMAttribute`
    NODE_TEXT = 3,                   ///< a generic node, as are all below except documents
    NODE_CDATA_SECTION = 4,          ///< counts as text: `get_text` returns its data
    NODE_ENTITY_REFERENCE = 5,       ///< a reference that the parser did not expand
    NODE_ENTITY = 6,                 ///< a declaration in the document type
    NODE_PROCESSING_INSTRUCTION = 7, ///< includes the XML declaration
    NODE_COMMENT = 8,                ///< `get_nodeValue` returns its text, not `get_text`
    NODE_DOCUMENT = 9,               ///< an `IXMLDOMDocument`; a generic node when reached as a parent
    NODE_DOCUMENT_TYPE = 10,         ///< `<!DOCTYPE>`
    NODE_DOCUMENT_FRAGMENT = 11,     ///< never created
    NODE_NOTATION = 12,              ///< a declaration in the document type
};
using DOMNodeType = tagDOMNodeType; ///< the short published name

/// A node of the tree. Two requests for one node return two objects; changes made through one are visible
/// through the other.
class IXMLDOMNode : public IDispatch
{
public:
    /// The node's name as Qt returns it ("#text", "#document", a tag or attribute name). Empty for a document
    /// that has neither loaded nor created anything.
    /// \param name receives a new BSTR, which the caller frees
    /// \return `S_OK`; `S_FALSE` if `name` is null
    virtual HRESULT get_nodeName(BSTR* name) = 0;
    /// The node's value. Works for the document and the generic node.
    /// \param value receives `VT_BSTR` with a new BSTR, which the caller frees; its old value is not freed
    /// \return `S_OK`; `S_FALSE` when `value` is null. Elements and attributes: `S_OK`, nothing written
    virtual HRESULT get_nodeValue(VARIANT* value) = 0;
    /// \name No-ops: return S_OK and write nothing
    /// @{

    /// Does nothing.
    virtual HRESULT put_nodeValue(VARIANT value) = 0;
    /// @}
    /// \param type receives the node type; 21 for a generic node without a node
    /// \return `S_OK`; `S_FALSE` when `type` is null
    virtual HRESULT get_nodeType(DOMNodeType* type) = 0;
    /// The parent; for an attribute, its element.
    /// \param parent receives a new object with one reference, which the caller releases
    /// \return `S_OK`; `S_FALSE` with `parent` unchanged if there is no parent or `parent` is null
    virtual HRESULT get_parentNode(IXMLDOMNode** parent) = 0;
    /// The children, as a live list; empty for a node without children.
    /// \param children receives a new list with one reference, which the caller releases
    /// \return `S_OK`; `S_FALSE` if `children` is null
    virtual HRESULT get_childNodes(IXMLDOMNodeList** children) = 0;
    /// The first child.
    /// \param child receives a new object with one reference, which the caller releases
    /// \return `S_OK`; `S_FALSE` with `child` unchanged if there is no child or `child` is null
    virtual HRESULT get_firstChild(IXMLDOMNode** child) = 0;
    /// \name No-ops: return S_OK and write nothing
    /// @{

    /// Does nothing.
    virtual HRESULT get_lastChild(IXMLDOMNode** child) = 0;
    virtual HRESULT get_previousSibling(IXMLDOMNode** sibling) = 0;
    virtual HRESULT get_nextSibling(IXMLDOMNode** sibling) = 0;
    /// @}
    /// The attributes, as a live map; empty for any node but an element.
    /// \param attributes receives a new map with one reference, which the caller releases
    /// \return `S_OK`; `S_FALSE` if `attributes` is null
    virtual HRESULT get_attributes(IXMLDOMNamedNodeMap** attributes) = 0;
    /// \name No-ops: return S_OK and write nothing
    /// @{

    /// Does nothing.
    virtual HRESULT insertBefore(IXMLDOMNode* child, VARIANT reference, IXMLDOMNode** result) = 0;
    virtual HRESULT replaceChild(IXMLDOMNode* child, IXMLDOMNode* replaced, IXMLDOMNode** result) = 0;
    /// @}
    /// Removes a child from this node. Any other node stays where it is.
    /// \param child one of this library's own nodes; its reference count is not touched
    /// \param result receives a new object for the child with one reference, which the caller releases. If an
    ///        element is asked to remove an element that is not its child, the object has no node.
    ///        May be null
    /// \return `S_OK`, also for a null `child` (nothing done, nothing written);
    ///         `S_FALSE` for an object that is not this library's
    virtual HRESULT removeChild(IXMLDOMNode* child, IXMLDOMNode** result) = 0;
    /// Makes a node the last child of this one, and removes it from where it was. Refuses a node that is or
    /// contains this one, a document, an attribute that is on an element, and what would nest deeper than the
    /// library allows. A document that has neither loaded nor created anything refuses every node. A refusal
    /// is not reported: the tree stays as it is, and `result` is written as usual.
    /// An attribute from `createNode` becomes a child and is saved as content: use `setAttribute` instead.
    /// \param child one of this library's own nodes; its reference count is not touched
    /// \param result receives a new object for the child with one reference, which the caller releases;
    ///        may be null
    /// \return `S_OK`, also for a null `child` (nothing done, nothing written);
    ///         `S_FALSE` for an object that is not this library's
    virtual HRESULT appendChild(IXMLDOMNode* child, IXMLDOMNode** result) = 0;
    /// \param hasChildren receives 1 (not -1) if there are children, else 0
    /// \return `S_OK`; `S_FALSE` if `hasChildren` is null
    virtual HRESULT hasChildNodes(VARIANT_BOOL* hasChildren) = 0;
    /// The document that the node belongs to; for a document, the object itself.
    /// \param document receives the object with one reference, which the caller releases. Each node object
    ///        has a document object of its own over the same document, and always returns that one
    /// \return `S_OK`; `S_FALSE` when there is none (`document` null) or `document` is null
    virtual HRESULT get_ownerDocument(IXMLDOMDocument** document) = 0;
    /// Copies the node. Works for the element. The copy has no parent until it is appended.
    /// \param deep any value but 0 copies all descendants
    /// \param result receives a new element with one reference, which the caller releases; may be null
    /// \return `S_OK`, also for an element without a node (nothing written). Documents, attributes and
    ///         generic nodes: `S_OK`, nothing written
    virtual HRESULT cloneNode(VARIANT_BOOL deep, IXMLDOMNode** result) = 0;
    /// \name No-ops: return S_OK and write nothing
    /// @{

    /// Does nothing.
    virtual HRESULT get_nodeTypeString(BSTR* type) = 0;
    /// @}
    /// The text of an element and all its descendants, or the data of a text node.
    /// \param text receives a new BSTR, which the caller frees
    /// \return `S_OK`; `S_FALSE` with `text` unchanged for any other node, including attributes, or if `text`
    ///         is null. Documents: `S_OK`, nothing written
    virtual HRESULT get_text(BSTR* text) = 0;
    /// Sets the text. An element loses its first child (only that one) and gets a text node as its last; any
    /// other node gets the text as its value.
    /// \param text read up to its first zero character; null reads as empty
    /// \return `S_OK`, also for an element without a node (nothing done)
    virtual HRESULT put_text(BSTR text) = 0;
    /// \name No-ops: return S_OK and write nothing
    /// @{

    /// Does nothing.
    virtual HRESULT get_specified(VARIANT_BOOL* specified) = 0;
    virtual HRESULT get_definition(IXMLDOMNode** definition) = 0;
    virtual HRESULT get_nodeTypedValue(VARIANT* value) = 0;
    virtual HRESULT put_nodeTypedValue(VARIANT value) = 0;
    virtual HRESULT get_dataType(VARIANT* type) = 0;
    virtual HRESULT put_dataType(BSTR type) = 0;
    virtual HRESULT get_xml(BSTR* xml) = 0;
    virtual HRESULT transformNode(IXMLDOMNode* stylesheet, BSTR* xml) = 0;
    /// @}
    /// The descendant elements with a tag name, in document order, as a live list. Works for the document and
    /// the element.
    /// \param query a tag name, not an expression. Null returns the list of `get_childNodes`, of all kinds;
    /// an
    ///        empty name finds nothing
    /// \param list receives a new list with one reference, which the caller releases
    /// \return `S_OK`; `S_FALSE` if `list` is null. Attributes and generic nodes: `S_OK`, nothing written
    virtual HRESULT selectNodes(BSTR query, IXMLDOMNodeList** list) = 0;
    /// \name No-ops: return S_OK and write nothing
    /// @{

    /// Does nothing.
    virtual HRESULT selectSingleNode(BSTR query, IXMLDOMNode** node) = 0;
    virtual HRESULT get_parsed(VARIANT_BOOL* parsed) = 0;
    virtual HRESULT get_namespaceURI(BSTR* uri) = 0;
    virtual HRESULT get_prefix(BSTR* prefix) = 0;
    virtual HRESULT get_baseName(BSTR* name) = 0;
    virtual HRESULT transformNodeToObject(IXMLDOMNode* stylesheet, VARIANT output) = 0;
    /// @}

protected:
    ~IXMLDOMNode() = default;
};

/// A document, which is also the topmost node of its tree.
class IXMLDOMDocument : public IXMLDOMNode
{
public:
    /// \name No-ops: return S_OK and write nothing
    /// @{

    /// Does nothing.
    virtual HRESULT get_doctype(IXMLDOMDocumentType** type) = 0;
    virtual HRESULT get_implementation(IXMLDOMImplementation** implementation) = 0;
    /// @}
    /// The document element. Every later call returns the object of the first one, also after another load.
    /// On an empty document, it is an element without a node.
    /// \param element receives the object with one reference, which the caller releases
    /// \return `S_OK`; `S_FALSE` if `element` is null
    virtual HRESULT get_documentElement(IXMLDOMElement** element) = 0;
    /// \name No-ops: return S_OK and write nothing
    /// @{

    /// Does nothing.
    virtual HRESULT putref_documentElement(IXMLDOMElement* element) = 0;
    virtual HRESULT createElement(BSTR name, IXMLDOMElement** element) = 0;
    virtual HRESULT createDocumentFragment(IXMLDOMDocumentFragment** fragment) = 0;
    virtual HRESULT createTextNode(BSTR data, IXMLDOMText** text) = 0;
    virtual HRESULT createComment(BSTR data, IXMLDOMComment** comment) = 0;
    virtual HRESULT createCDATASection(BSTR data, IXMLDOMCDATASection** section) = 0;
    virtual HRESULT createProcessingInstruction(BSTR target, BSTR data,
                                                IXMLDOMProcessingInstruction** instruction) = 0;
    virtual HRESULT createAttribute(BSTR name, IXMLDOMAttribute** attribute) = 0;
    virtual HRESULT createEntityReference(BSTR name, IXMLDOMEntityReference** reference) = 0;
    virtual HRESULT getElementsByTagName(BSTR name, IXMLDOMNodeList** list) = 0;
    /// @}
    /// Creates an element or an attribute that belongs to this document and has no place in it yet.
    /// \param type 1 (element) or 2 (attribute) as `VT_I2`, `VT_I4` or `VT_INT`; for any other, nothing is
    ///        created
    /// \param name the qualified name, which is not validated; with an empty one, the object has no node
    /// \param namespaceURI may be null; an empty one is saved as `xmlns=""`
    /// \param node receives a new object with one reference, which the caller releases
    /// \return `S_OK`, also when nothing is created (`node` untouched); `S_FALSE` for a null `name`, or for a
    ///         null `node` when one would be created
    virtual HRESULT createNode(VARIANT type, BSTR name, BSTR namespaceURI, IXMLDOMNode** node) = 0;
    /// \name No-ops: return S_OK and write nothing
    /// @{

    /// Does nothing.
    virtual HRESULT nodeFromID(BSTR id, IXMLDOMNode** node) = 0;
    /// @}
    /// Reads a local file into this document. Parsing has finished when it returns.
    /// \param source a file path as `VT_BSTR`; nothing else is accepted
    /// \param success receives 0 on entry and -1 when the file was parsed; may be null
    /// \return `S_OK` when parsed; else `S_FALSE`. The earlier tree survives a failure before parsing
    ///         begins: a file that cannot be opened or read to its end, or is beyond the limits. A later
    ///         failure, an empty file and lack of memory included, leaves the document empty or with what was
    ///         parsed
    virtual HRESULT load(VARIANT source, VARIANT_BOOL* success) = 0;
    /// \name No-ops: return S_OK and write nothing
    /// @{

    /// Does nothing.
    virtual HRESULT get_readyState(LONG* state) = 0;
    virtual HRESULT get_parseError(IXMLDOMParseError** error) = 0;
    virtual HRESULT get_url(BSTR* url) = 0;
    virtual HRESULT get_async(VARIANT_BOOL* async) = 0;
    virtual HRESULT put_async(VARIANT_BOOL async) = 0;
    virtual HRESULT abort() = 0;
    /// @}
    /// Reads a text into this document.
    /// \param xml the text, read up to its first zero character
    /// \param success receives 0 on entry and -1 when the text was parsed; may be null
    /// \return `S_OK` when parsed; else `S_FALSE`. The earlier tree survives a null or empty text, and one
    ///         beyond the limits. A later failure, lack of memory included, leaves the document empty or with
    ///         what was parsed
    virtual HRESULT loadXML(BSTR xml, VARIANT_BOOL* success) = 0;
    /// Writes the document to a local file, indented by four spaces a level, even mixed content. The encoding
    /// is the one in the XML declaration, or UTF-8. Qt chooses the order of attributes, which differs from
    /// run to run.
    /// \param destination a file path as `VT_BSTR`; nothing else is accepted
    /// \return `S_OK` once the file was opened, even if writing fails; else `S_FALSE`, also for a tree too
    /// deep
    ///         for the calling thread's stack
    virtual HRESULT save(VARIANT destination) = 0;
    /// \name No-ops: return S_OK and write nothing
    /// @{

    /// Does nothing.
    virtual HRESULT get_validateOnParse(VARIANT_BOOL* validate) = 0;
    virtual HRESULT put_validateOnParse(VARIANT_BOOL validate) = 0;
    virtual HRESULT get_resolveExternals(VARIANT_BOOL* resolve) = 0;
    virtual HRESULT put_resolveExternals(VARIANT_BOOL resolve) = 0;
    virtual HRESULT get_preserveWhiteSpace(VARIANT_BOOL* preserve) = 0;
    virtual HRESULT put_preserveWhiteSpace(VARIANT_BOOL preserve) = 0;
    virtual HRESULT put_onreadystatechange(VARIANT handler) = 0;
    virtual HRESULT put_ondataavailable(VARIANT handler) = 0;
    virtual HRESULT put_ontransformnode(VARIANT handler) = 0;
    /// @}

protected:
    ~IXMLDOMDocument() = default;
};

/// An element.
class IXMLDOMElement : public IXMLDOMNode
{
public:
    /// \name No-ops: return S_OK and write nothing
    /// @{

    /// Does nothing.
    virtual HRESULT get_tagName(BSTR* name) = 0;
    virtual HRESULT getAttribute(BSTR name, VARIANT* value) = 0;
    /// @}
    /// Sets an attribute, or adds it. Numbers are written as Qt writes them.
    /// \param name the attribute's name
    /// \param value `VT_BSTR`, `VT_I2`, `VT_I4`, `VT_INT`, `VT_I8`, `VT_UI2`, `VT_UI4`, `VT_UINT`, `VT_UI8`,
    ///        `VT_R4`, `VT_R8` or `VT_DATE` (its number of days); any other type changes
    ///        nothing
    /// \return `S_OK`; `S_FALSE` for a null `name`
    virtual HRESULT setAttribute(BSTR name, VARIANT value) = 0;
    /// \name No-ops: return S_OK and write nothing
    /// @{

    /// Does nothing.
    virtual HRESULT removeAttribute(BSTR name) = 0;
    virtual HRESULT getAttributeNode(BSTR name, IXMLDOMAttribute** attribute) = 0;
    virtual HRESULT setAttributeNode(IXMLDOMAttribute* attribute, IXMLDOMAttribute** replaced) = 0;
    virtual HRESULT removeAttributeNode(IXMLDOMAttribute* attribute, IXMLDOMAttribute** removed) = 0;
    virtual HRESULT getElementsByTagName(BSTR name, IXMLDOMNodeList** list) = 0;
    virtual HRESULT normalize() = 0;
    /// @}

protected:
    ~IXMLDOMElement() = default;
};

/// An attribute. `get_value` reads its value, `put_text` sets it. Changing or removing its text child leaves
/// the value as it was.
class IXMLDOMAttribute : public IXMLDOMNode
{
public:
    /// \name No-ops: return S_OK and write nothing
    /// @{

    /// Does nothing.
    virtual HRESULT get_name(BSTR* name) = 0;
    /// @}
    /// The attribute's value.
    /// \param value receives `VT_BSTR` with a new BSTR, which the caller frees; its old value is not freed
    /// \return `S_OK`; `S_FALSE` when `value` is null
    virtual HRESULT get_value(VARIANT* value) = 0;
    /// \name No-ops: return S_OK and write nothing
    /// @{

    /// Does nothing.
    virtual HRESULT put_value(VARIANT value) = 0;
    /// @}

protected:
    ~IXMLDOMAttribute() = default;
};

/// A live list of nodes: each call sees the tree as it is at that time. But a list taken from a document that
/// has neither loaded nor created anything stays empty for good, also after a later load.
class IXMLDOMNodeList : public IDispatch
{
public:
    /// \param index from 0
    /// \param node receives a new object with one reference, which the caller releases
    /// \return `S_OK`; `S_FALSE` with `node` unchanged if out of range or if `node` is null
    virtual HRESULT get_item(LONG index, IXMLDOMNode** node) = 0;
    /// \param length receives the current number of nodes
    /// \return `S_OK`; `S_FALSE` if `length` is null
    virtual HRESULT get_length(LONG* length) = 0;
    /// The node at the list's cursor, an index that only increases.
    /// \param node receives a new object with one reference, which the caller releases; null at the end
    /// \return `S_OK`; `S_FALSE` at the end, or if `node` is null (the cursor does not move)
    virtual HRESULT nextNode(IXMLDOMNode** node) = 0;
    /// \name No-ops: return S_OK and write nothing
    /// @{

    /// Does nothing.
    virtual HRESULT reset() = 0;
    virtual HRESULT _newEnum(IUnknown** enumerator) = 0;
    /// @}

protected:
    ~IXMLDOMNodeList() = default;
};

/// The live map of an element's attributes.
class IXMLDOMNamedNodeMap : public IDispatch
{
public:
    /// \param name the attribute's name
    /// \param node receives a new object with one reference, which the caller releases
    /// \return `S_OK`; `S_FALSE` with `node` unchanged for a null or unknown name or if `node` is null
    virtual HRESULT getNamedItem(BSTR name, IXMLDOMNode** node) = 0;
    /// \name No-ops: return S_OK and write nothing
    /// @{

    /// Does nothing.
    virtual HRESULT setNamedItem(IXMLDOMNode* item, IXMLDOMNode** result) = 0;
    virtual HRESULT removeNamedItem(BSTR name, IXMLDOMNode** node) = 0;
    /// @}
    /// \param index from 0, in Qt's order
    /// \param node receives a new object with one reference, which the caller releases; null if out of range
    /// \return `S_OK`, also if out of range; `S_FALSE` if `node` is null
    virtual HRESULT get_item(LONG index, IXMLDOMNode** node) = 0;
    /// \param length receives the current number of nodes
    /// \return `S_OK`; `S_FALSE` if `length` is null
    virtual HRESULT get_length(LONG* length) = 0;
    /// \name No-ops: return S_OK and write nothing
    /// @{

    /// Does nothing.
    virtual HRESULT getQualifiedItem(BSTR name, BSTR namespaceURI, IXMLDOMNode** node) = 0;
    virtual HRESULT removeQualifiedItem(BSTR name, BSTR namespaceURI, IXMLDOMNode** node) = 0;
    virtual HRESULT nextNode(IXMLDOMNode** node) = 0;
    virtual HRESULT reset() = 0;
    virtual HRESULT _newEnum(IUnknown** enumerator) = 0;
    /// @}

protected:
    ~IXMLDOMNamedNodeMap() = default;
};
