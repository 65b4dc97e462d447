/// \file
/// Nodes of every kind. KelXmlLib/kel.h includes this header.

#pragma once

#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/export.h"
#include "KelXmlLib/kel/text.h"
#include "KelXmlLib/xmldom.h"

#include <cstddef>
#include <string>

namespace kel
{

class Document;
class Element;

namespace detail
{
struct Access;
}

/// The kind of a node.
enum class NodeKind {
    none = 0,            ///< a null node
    element = 1,         ///< see `Element`
    attribute = 2,       ///< see `Attribute`
    text = 3,            ///< a text
    cdata = 4,           ///< a text that is written as a CDATA section
    entityReference = 5, ///< a reference to an entity
    entity = 6,          ///< never returned
    instruction = 7,     ///< a processing instruction
    comment = 8,         ///< a comment
    document = 9,        ///< see `Document`
    documentType = 10,   ///< never returned
    fragment = 11,       ///< never returned
    notation = 12        ///< never returned
};

/// The order in which attributes are written.
enum class AttributeOrder {
    byName,     ///< sorted by name, so that saving an unchanged document always gives the same bytes
    unspecified ///< in the order of Qt's hash table; this order differs from run to run
};

/// Options for writing a tree.
struct SaveOptions
{
    /// The number of spaces per level. With 0, only line breaks are added. With -1, no spaces are added, and
    /// line breaks are added only after comments, after instructions, and inside and after the document type.
    int indent = 4;
    /// The order in which the attributes of each element are written.
    AttributeOrder attributeOrder = AttributeOrder::byName;
};

/// A value that refers to a node of any kind, such as an element, a text or a comment. The value keeps the
/// node's document alive. A value that refers to no node is null.
class KEL_EXPORT Node
{
public:
    /// Creates a null value.
    Node() noexcept;
    /// Refers to the node of a COM object. Does not keep the COM object itself alive.
    /// \throw Error if the COM object belongs to another library
    explicit Node(IXMLDOMNode& node);
    /// Refers to the same node as the copied value.
    Node(const Node&) noexcept;
    /// Refers to the node that `other` refers to, and leaves `other` null.
    Node(Node&& other) noexcept;
    /// Makes this value refer to the same node as the assigned value.
    Node& operator=(const Node&) noexcept;
    /// Makes this value refer to the node that `other` referred to.
    Node& operator=(Node&& other) noexcept;
    ~Node();

    /// \return whether this value refers to a node
    explicit operator bool() const noexcept;
    /// \return whether both values refer to the same node, or both values are null
    bool operator==(const Node& other) const noexcept;
    /// \return whether the two values refer to different nodes, or only one of the two values is null
    bool operator!=(const Node& other) const noexcept { return !(*this == other); }

    /// \return the kind of the node; `none` for a null value
    NodeKind kind() const noexcept;

    /// Returns the tag name of an element, the name of an attribute, or the target of an instruction. A text,
    /// a comment or a document has a fixed name, such as `#text`.
    /// \tparam Text `std::string` (UTF-8) or `std::wstring`
    template <class Text = std::string>
    Text name() const
    {
        Text name;
        readName(&name);
        return name;
    }

    /// For an element, returns all text in the element and its descendants. For any other node, returns the
    /// node's value.
    /// \tparam Text `std::string` (UTF-8) or `std::wstring`
    /// \return the text; empty for a null value
    template <class Text = std::string>
    Text text() const
    {
        return text(Text());
    }
    /// Reads the text of the node, and converts it to the type of `otherwise`: a text, a number or a `bool`.
    /// The comment on `Element::attribute` says how numbers and `bool` may be written.
    /// \param otherwise the default. The function returns the default if the node is null, or if the text of
    ///        the node is not valid for the type of `otherwise`.
    template <class Default>
    detail::TypeOf<Default> text(const Default& otherwise) const
    {
        return detail::readOr(otherwise, [this](detail::Target target) { return readText(target); });
    }
    /// For an element, replaces all children with one text. For any other node, sets the node's value.
    /// \param text a text, a number or `bool`. The text of a comment must not contain `--` or end in `-`. The
    ///        text of a CDATA section must not contain `]]>`. The text of an instruction must not contain
    ///        `?>`.
    /// \throw Error if the node is null or a document, or if the text is invalid
    void setText(const Value& text);

    /// \return the node's parent if the parent is an element; else null. A removed attribute keeps its former
    ///         element as its parent
    Element parent() const;
    /// \return the next sibling, of any kind; null if the node has no next sibling
    Node nextSibling() const;
    /// \return the previous sibling, of any kind; null if the node has no previous sibling
    Node previousSibling() const;
    /// \return the document that the node belongs to; null for a null value
    Document document() const;

    /// Copies the node with all its descendants. The copy of a document is a new document (see
    /// `Document::clone`). Any other copy belongs to the document of the copied node, and has no parent yet.
    /// \return the copy; null if this value is null
    Node clone() const;

    /// Returns the node as XML text. Unless the node is a document, the text begins with the indentation of
    /// one level. After Qt's codecs are destroyed at exit, the text has no character references for
    /// characters that the document's encoding cannot represent.
    /// \return the XML text in UTF-8; empty if this value is null
    std::string toString(const SaveOptions& options = {}) const;

    /// Creates a COM object for this node. \return a pointer that owns the COM object; null if this value is
    /// null
    ComPtr<IXMLDOMNode> get() const;

private:
    friend struct detail::Access;

    void readName(detail::Target target) const;
    bool readText(detail::Target target) const;

    alignas(void*) std::byte m_state[3 * sizeof(void*)];
};

} // namespace kel
