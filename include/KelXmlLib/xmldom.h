/// \file
/// The published XML DOM interfaces, with their methods in the published slot order. The comment of each
/// method says what the method does in this library.
///
/// - Strings: a string argument is read up to its first zero character. A leading U+FEFF is dropped, except
///   by `loadXML`. The caller frees each returned BSTR with `SysFreeString`. The earlier content of a
///   `VARIANT` that receives a result is not freed.
/// - Objects: the caller owns one reference to each returned object, and releases it.
/// - Outputs: a method writes its out-parameters last, and only if it returns `S_OK`, unless the method's
///   comment says otherwise. If an out-pointer is null, the method does nothing and returns `S_FALSE`, unless
///   the comment of the parameter allows null.
/// - Errors: no method in this file returns a failure code. When memory runs out, a method throws
///   `std::bad_alloc` and leaves its out-parameters unchanged, except the success flag of a load. If only the
///   returned BSTR cannot be allocated, the method returns `S_OK` and a null BSTR instead.
/// - Threads: use a document, and everything reached from it, from one thread at a time. Documents between
///   which a node was ever moved count as one.
/// - A generic node is an object for a node that is not an element, an attribute or a document. The parent of
///   a top-level node is a document, but `get_parentNode` returns a generic node for that document.
/// - Some calls return an object without a node, such as the document element of an empty document. Reading
///   from such an object finds nothing, and changing such an object does nothing.
/// - A no-op returns `S_OK` and writes nothing, not even outputs. docs/no-ops.md says what to call instead.

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

/// The kind of a node. Qt uses the same numbers.
enum tagDOMNodeType : std::int32_t {
    NODE_INVALID = 0,                ///< never returned
    NODE_ELEMENT = 1,                ///< an `IXMLDOMElement`
    NODE_ATTRIBUTE = 2,              ///< an `IXMLDOMAttribute`
    NODE_TEXT = 3,                   ///< a generic node, like all kinds below except `NODE_DOCUMENT`
    NODE_CDATA_SECTION = 4,          ///< a text that is saved as a CDATA section
    NODE_ENTITY_REFERENCE = 5,       ///< a reference that the parser did not expand
    NODE_ENTITY = 6,                 ///< never returned
    NODE_PROCESSING_INSTRUCTION = 7, ///< an instruction, or the XML declaration
    NODE_COMMENT = 8,                ///< a comment; `get_nodeValue` returns its text, but `get_text` does not
    NODE_DOCUMENT = 9,               ///< an `IXMLDOMDocument`, but a generic node from `get_parentNode`
    NODE_DOCUMENT_TYPE = 10,         ///< never returned
    NODE_DOCUMENT_FRAGMENT = 11,     ///< never returned
    NODE_NOTATION = 12,              ///< never returned
};
using DOMNodeType = tagDOMNodeType; ///< the short published name

/// A node of the tree. Asking twice for a node usually returns two objects that refer to the same node.
class IXMLDOMNode : public IDispatch
{
public:
    /// Returns the node's name as Qt reports it: a tag name, an attribute's name, "#text", "#document" and so
    /// on. The name is empty for a document that has neither loaded nor created anything.
    /// \param name receives a new BSTR, which the caller frees
    /// \return `S_OK`; `S_FALSE` if `name` is null
    virtual HRESULT get_nodeName(BSTR* name) = 0;
    /// Returns the value of a generic node, such as the text of a comment. A document's value is empty until
    /// `put_text` sets it. No-op for elements and attributes.
    /// \param value receives `VT_BSTR` with a new BSTR, which the caller frees
    /// \return `S_OK`; `S_FALSE` if `value` is null
    virtual HRESULT get_nodeValue(VARIANT* value) = 0;
    /// No-op: returns `S_OK` and writes nothing.
    /// @{
    virtual HRESULT put_nodeValue(VARIANT value) = 0;
    /// @}
    /// Returns the kind of the node.
    /// \param type receives the kind; 21 (no kind) for a generic node object that refers to no node
    /// \return `S_OK`; `S_FALSE` if `type` is null
    virtual HRESULT get_nodeType(DOMNodeType* type) = 0;
    /// Returns the parent. The parent of an attribute is the element that has, or had, the attribute.
    /// \param parent receives a new object with one reference, which the caller releases
    /// \return `S_OK`; `S_FALSE` if there is no parent or if `parent` is null
    virtual HRESULT get_parentNode(IXMLDOMNode** parent) = 0;
    /// Returns the children as a live list, which is empty for a node without children.
    /// \param children receives a new list with one reference, which the caller releases
    /// \return `S_OK`; `S_FALSE` if `children` is null
    virtual HRESULT get_childNodes(IXMLDOMNodeList** children) = 0;
    /// Returns the first child.
    /// \param child receives a new object with one reference, which the caller releases
    /// \return `S_OK`; `S_FALSE` if there is no child or if `child` is null
    virtual HRESULT get_firstChild(IXMLDOMNode** child) = 0;
    /// No-op: returns `S_OK` and writes nothing.
    /// @{
    virtual HRESULT get_lastChild(IXMLDOMNode** child) = 0;
    virtual HRESULT get_previousSibling(IXMLDOMNode** sibling) = 0;
    virtual HRESULT get_nextSibling(IXMLDOMNode** sibling) = 0;
    /// @}
    /// Returns the attributes as a live map, which is empty for any node but an element.
    /// \param attributes receives a new map with one reference, which the caller releases
    /// \return `S_OK`; `S_FALSE` if `attributes` is null
    virtual HRESULT get_attributes(IXMLDOMNamedNodeMap** attributes) = 0;
    /// No-op: returns `S_OK` and writes nothing.
    /// @{
    virtual HRESULT insertBefore(IXMLDOMNode* child, VARIANT reference, IXMLDOMNode** result) = 0;
    virtual HRESULT replaceChild(IXMLDOMNode* child, IXMLDOMNode* replaced, IXMLDOMNode** result) = 0;
    /// @}
    /// Removes a child from this node. Does nothing if `child` is not a child of this node.
    /// \param child an object of this library; its reference count does not change
    /// \param result receives a new object for `child` with one reference, which the caller releases; may be
    ///        null. If this node and `child` are both elements, but `child` is not a child of this node, the
    ///        new object has no node
    /// \return `S_OK`, also for a null `child` (nothing done, nothing written); `S_FALSE` if `child` belongs
    ///         to another library
    virtual HRESULT removeChild(IXMLDOMNode* child, IXMLDOMNode** result) = 0;
    /// Removes `child` from its parent, if it has one, and makes `child` the last child of this node.
    ///
    /// The call is refused if `child` is or contains this node, is a document, or is an attribute of an
    /// element. The call is also refused if the tree would nest deeper than the library allows, or if this
    /// node is a document that has neither loaded nor created anything. A refused call leaves the tree
    /// unchanged, but returns `S_OK` and writes `result` as usual.
    ///
    /// An attribute from `createNode` becomes a child and is saved as content: to add an attribute, use
    /// `setAttribute`. A child of a node other than a document or an element is not saved.
    /// \param child an object of this library; its reference count does not change
    /// \param result receives a new object for `child` with one reference, which the caller releases; may be
    ///        null
    /// \return `S_OK`, also for a null `child` (nothing done, nothing written); `S_FALSE` if `child` belongs
    ///         to another library
    virtual HRESULT appendChild(IXMLDOMNode* child, IXMLDOMNode** result) = 0;
    /// Checks whether the node has children.
    /// \param hasChildren receives 1 (not -1) if there are children, else 0
    /// \return `S_OK`; `S_FALSE` if `hasChildren` is null
    virtual HRESULT hasChildNodes(VARIANT_BOOL* hasChildren) = 0;
    /// Returns the document that the node belongs to. A document object returns itself. Any other object has
    /// a document object of its own, and returns that document object at every call.
    /// \param document receives the document object with one reference, which the caller releases; receives
    ///        null if the node has no document
    /// \return `S_OK`; `S_FALSE` if the node has no document or if `document` is null
    virtual HRESULT get_ownerDocument(IXMLDOMDocument** document) = 0;
    /// Copies an element. The copy has no parent until the caller appends it. No-op for documents, attributes
    /// and generic nodes.
    /// \param deep 0 copies the element and its attributes only; any other value copies the descendants too
    /// \param result receives a new element with one reference, which the caller releases; may be null
    /// \return `S_OK`, also for an element object without a node (nothing written)
    virtual HRESULT cloneNode(VARIANT_BOOL deep, IXMLDOMNode** result) = 0;
    /// No-op: returns `S_OK` and writes nothing.
    /// @{
    virtual HRESULT get_nodeTypeString(BSTR* type) = 0;
    /// @}
    /// Returns the text of an element and all its descendants, or the data of a text or CDATA section. No-op
    /// for document objects.
    /// \param text receives a new BSTR, which the caller frees
    /// \return `S_OK`; `S_FALSE` (nothing written) for attributes, for generic nodes other than texts and
    ///         CDATA sections, or if `text` is null
    virtual HRESULT get_text(BSTR* text) = 0;
    /// Sets the text of an element: removes the first child of the element, keeps all other children, and
    /// appends a text node. For any other node, sets the node's value.
    /// \param text the new text; null counts as empty
    /// \return `S_OK`, also for an element object without a node (nothing done)
    virtual HRESULT put_text(BSTR text) = 0;
    /// No-op: returns `S_OK` and writes nothing.
    /// @{
    virtual HRESULT get_specified(VARIANT_BOOL* specified) = 0;
    virtual HRESULT get_definition(IXMLDOMNode** definition) = 0;
    virtual HRESULT get_nodeTypedValue(VARIANT* value) = 0;
    virtual HRESULT put_nodeTypedValue(VARIANT value) = 0;
    virtual HRESULT get_dataType(VARIANT* type) = 0;
    virtual HRESULT put_dataType(BSTR type) = 0;
    virtual HRESULT get_xml(BSTR* xml) = 0;
    virtual HRESULT transformNode(IXMLDOMNode* stylesheet, BSTR* xml) = 0;
    /// @}
    /// Returns a live list of the descendant elements with the given tag name, in document order. Finds
    /// elements from `createNode` by their names without prefix. No-op for attributes and generic nodes.
    /// \param query a tag name, not an expression. An empty name finds nothing. If `query` is null, the list
    ///        contains all children of this node, whatever their kind
    /// \param list receives a new list with one reference, which the caller releases
    /// \return `S_OK`; `S_FALSE` if `list` is null
    virtual HRESULT selectNodes(BSTR query, IXMLDOMNodeList** list) = 0;
    /// No-op: returns `S_OK` and writes nothing.
    /// @{
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
    /// No-op: returns `S_OK` and writes nothing.
    /// @{
    virtual HRESULT get_doctype(IXMLDOMDocumentType** type) = 0;
    virtual HRESULT get_implementation(IXMLDOMImplementation** implementation) = 0;
    /// @}
    /// Returns the document element. Every later call returns the same object as the first call, even after
    /// another load. If there is no root element at the first call, the returned object never gets a node.
    /// \param element receives the object with one reference, which the caller releases
    /// \return `S_OK`; `S_FALSE` if `element` is null
    virtual HRESULT get_documentElement(IXMLDOMElement** element) = 0;
    /// No-op: returns `S_OK` and writes nothing.
    /// @{
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
    /// Creates an element or an attribute. The new node belongs to this document, but has no parent yet.
    /// \param type 1 (element) or 2 (attribute) as `VT_I2`, `VT_I4` or `VT_INT`; any other value creates
    ///        nothing
    /// \param name the qualified name, which is not validated; if it is empty or ends in a colon, the object
    ///        has no node
    /// \param namespaceURI may be null; an empty URI is saved as `xmlns=""`
    /// \param node receives a new object with one reference, which the caller releases
    /// \return `S_OK`, also if nothing is created (nothing written); `S_FALSE` if `name` is null, or if
    ///         `node` is null and `type` is 1 or 2
    virtual HRESULT createNode(VARIANT type, BSTR name, BSTR namespaceURI, IXMLDOMNode** node) = 0;
    /// No-op: returns `S_OK` and writes nothing.
    /// @{
    virtual HRESULT nodeFromID(BSTR id, IXMLDOMNode** node) = 0;
    /// @}
    /// Replaces the content of this document with a local file. Parsing is complete when the call returns.
    ///
    /// The earlier content stays if the path is refused, if the file cannot be read to its end or exceeds a
    /// limit, or if memory runs out before parsing begins. If the file is empty, the document becomes empty.
    /// If parsing fails, the document is empty or contains what was parsed before the error.
    /// \param source a file path as `VT_BSTR`; any other type is refused
    /// \param success set to 0 first, and to -1 if parsing succeeds; may be null
    /// \return `S_OK` if parsing succeeds, else `S_FALSE`
    virtual HRESULT load(VARIANT source, VARIANT_BOOL* success) = 0;
    /// No-op: returns `S_OK` and writes nothing.
    /// @{
    virtual HRESULT get_readyState(LONG* state) = 0;
    virtual HRESULT get_parseError(IXMLDOMParseError** error) = 0;
    virtual HRESULT get_url(BSTR* url) = 0;
    virtual HRESULT get_async(VARIANT_BOOL* async) = 0;
    virtual HRESULT put_async(VARIANT_BOOL async) = 0;
    virtual HRESULT abort() = 0;
    /// @}
    /// Replaces the content of this document with an XML text.
    ///
    /// The earlier content stays if the text is null, empty or beyond a limit, or if memory runs out before
    /// parsing begins. If parsing fails, the document is empty or contains what was parsed before the error.
    /// \param xml the XML text
    /// \param success set to 0 first, and to -1 if parsing succeeds; may be null
    /// \return `S_OK` if parsing succeeds, else `S_FALSE`
    virtual HRESULT loadXML(BSTR xml, VARIANT_BOOL* success) = 0;
    /// Writes the document to a local file. Each level is indented by four spaces, even in mixed content. The
    /// file has the encoding that the XML declaration names, or else UTF-8. Qt chooses the order of the
    /// attributes, and the order differs from run to run.
    /// \param destination a file path as `VT_BSTR`; any other type is refused
    /// \return `S_OK` if the file was opened, even if writing failed; `S_FALSE` if the file cannot be opened,
    ///         or if the tree is too deep for the calling thread's stack
    virtual HRESULT save(VARIANT destination) = 0;
    /// No-op: returns `S_OK` and writes nothing.
    /// @{
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
    /// No-op: returns `S_OK` and writes nothing.
    /// @{
    virtual HRESULT get_tagName(BSTR* name) = 0;
    virtual HRESULT getAttribute(BSTR name, VARIANT* value) = 0;
    /// @}
    /// Sets an attribute. Adds the attribute if the element does not have it. Qt formats numbers.
    /// \param name the attribute's name
    /// \param value `VT_BSTR`, `VT_I2`, `VT_I4`, `VT_INT`, `VT_I8`, `VT_UI2`, `VT_UI4`, `VT_UINT`, `VT_UI8`,
    ///        `VT_R4`, `VT_R8` or `VT_DATE` (written as a number of days); any other type changes nothing
    /// \return `S_OK`; `S_FALSE` if `name` is null
    virtual HRESULT setAttribute(BSTR name, VARIANT value) = 0;
    /// No-op: returns `S_OK` and writes nothing.
    /// @{
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

/// An attribute. `get_value` reads the value, and `put_text` sets the value. Changing or removing the
/// attribute's text child does not change the value.
class IXMLDOMAttribute : public IXMLDOMNode
{
public:
    /// No-op: returns `S_OK` and writes nothing.
    /// @{
    virtual HRESULT get_name(BSTR* name) = 0;
    /// @}
    /// Returns the attribute's value.
    /// \param value receives `VT_BSTR` with a new BSTR, which the caller frees
    /// \return `S_OK`; `S_FALSE` if `value` is null
    virtual HRESULT get_value(VARIANT* value) = 0;
    /// No-op: returns `S_OK` and writes nothing.
    /// @{
    virtual HRESULT put_value(VARIANT value) = 0;
    /// @}

protected:
    ~IXMLDOMAttribute() = default;
};

/// A live list of nodes: each call sees the current tree. There is one exception: a list that was taken from
/// a document before the document loaded or created anything stays empty forever.
class IXMLDOMNodeList : public IDispatch
{
public:
    /// Returns a node by its position.
    /// \param index counted from 0
    /// \param node receives a new object with one reference, which the caller releases
    /// \return `S_OK`; `S_FALSE` if `index` is out of range or if `node` is null
    virtual HRESULT get_item(LONG index, IXMLDOMNode** node) = 0;
    /// Counts the nodes.
    /// \param length receives the current number of nodes
    /// \return `S_OK`; `S_FALSE` if `length` is null
    virtual HRESULT get_length(LONG* length) = 0;
    /// Returns the node at the list's cursor, and advances the cursor. The cursor starts at index 0 and never
    /// moves back.
    /// \param node receives a new object with one reference, which the caller releases; receives null at the
    ///        end
    /// \return `S_OK`; `S_FALSE` (the cursor does not move) at the end of the list or if `node` is null
    virtual HRESULT nextNode(IXMLDOMNode** node) = 0;
    /// No-op: returns `S_OK` and writes nothing.
    /// @{
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
    /// Returns an attribute by its name.
    /// \param name the attribute's name
    /// \param node receives a new object with one reference, which the caller releases
    /// \return `S_OK`; `S_FALSE` if there is no attribute of that name, or if `name` or `node` is null
    virtual HRESULT getNamedItem(BSTR name, IXMLDOMNode** node) = 0;
    /// No-op: returns `S_OK` and writes nothing.
    /// @{
    virtual HRESULT setNamedItem(IXMLDOMNode* item, IXMLDOMNode** result) = 0;
    virtual HRESULT removeNamedItem(BSTR name, IXMLDOMNode** node) = 0;
    /// @}
    /// Returns an attribute by its position. Qt chooses the order of the attributes.
    /// \param index counted from 0
    /// \param node receives a new object with one reference, which the caller releases; receives null if
    ///        `index` is out of range
    /// \return `S_OK`, also if `index` is out of range; `S_FALSE` if `node` is null
    virtual HRESULT get_item(LONG index, IXMLDOMNode** node) = 0;
    /// Counts the attributes.
    /// \param length receives the current number of attributes
    /// \return `S_OK`; `S_FALSE` if `length` is null
    virtual HRESULT get_length(LONG* length) = 0;
    /// No-op: returns `S_OK` and writes nothing.
    /// @{
    virtual HRESULT getQualifiedItem(BSTR name, BSTR namespaceURI, IXMLDOMNode** node) = 0;
    virtual HRESULT removeQualifiedItem(BSTR name, BSTR namespaceURI, IXMLDOMNode** node) = 0;
    virtual HRESULT nextNode(IXMLDOMNode** node) = 0;
    virtual HRESULT reset() = 0;
    virtual HRESULT _newEnum(IUnknown** enumerator) = 0;
    /// @}

protected:
    ~IXMLDOMNamedNodeMap() = default;
};
