/// \file
/// Any node of a tree. Included by KelXmlLib/kel.h.

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

/// What a node is.
enum class NodeKind {
    none = 0,            ///< a null node
    element = 1,         ///< see `Element`
    attribute = 2,       ///< see `Attribute`
    text = 3,            ///< a text
    cdata = 4,           ///< a text that is written as a CDATA section
    entityReference = 5, ///< a reference to an entity
    entity = 6,          ///< an entity that the document type declares
    instruction = 7,     ///< a processing instruction
    comment = 8,         ///< a comment
    document = 9,        ///< see `Document`
    documentType = 10,   ///< a document type declaration
    fragment = 11,       ///< a list of nodes outside the tree
    notation = 12        ///< a notation that the document type declares
};

/// In which order attributes are written.
enum class AttributeOrder {
    byName,     ///< sorted: saving an unchanged document twice gives the same bytes
    unspecified ///< as Qt lists them, which changes from run to run
};

/// How a tree is written.
struct SaveOptions
{
    int indent = 4; ///< spaces for each level; -1 writes no line breaks of its own
    AttributeOrder attributeOrder = AttributeOrder::byName; ///< see `AttributeOrder`
};

/// Any node: an element, a text, a comment ... The value refers to a node of a document and keeps that
/// document alive, or is null.
class KEL_EXPORT Node
{
public:
    /// Null.
    Node() noexcept;
    /// The node behind an interface.
    /// \param node not stored; the value refers to the same node
    /// \throw Error for an object of another library
    explicit Node(IXMLDOMNode& node);
    /// Refers to the same node.
    Node(const Node&) noexcept;
    /// Leaves `other` null.
    Node(Node&& other) noexcept;
    /// Refers to the same node.
    Node& operator=(const Node&) noexcept;
    /// Takes over what `other` refers to.
    Node& operator=(Node&& other) noexcept;
    ~Node();

    /// \return whether it refers to a node
    explicit operator bool() const noexcept;
    /// \return whether both refer to the same node, or both are null
    bool operator==(const Node& other) const noexcept;
    /// \return whether they refer to different nodes
    bool operator!=(const Node& other) const noexcept { return !(*this == other); }

    /// \return `none` for null
    NodeKind kind() const noexcept;

    /// An element's tag name, an attribute's name, an instruction's target; for other nodes a name such as
    /// `#text`.
    /// \tparam Text `std::string` (UTF-8) or `std::wstring`
    template <class Text = std::string>
    Text name() const
    {
        Text name;
        readName(&name);
        return name;
    }

    /// All text in an element, including its descendants; for any other node, its value.
    /// \tparam Text `std::string` (UTF-8) or `std::wstring`
    /// \return empty for null
    template <class Text = std::string>
    Text text() const
    {
        return text(Text());
    }
    /// The same, with a default.
    /// \param otherwise returned for null, and for a text that is not a value of its type. Its type, a
    ///        text, a number or `bool`, is the type of the result, as for `Element::attribute`
    template <class Default>
    detail::TypeOf<Default> text(const Default& otherwise) const
    {
        return detail::readOr(otherwise, [this](detail::Target target) { return readText(target); });
    }
    /// Replaces everything an element holds, or the value of another node.
    /// \param text a text, a number or `bool`
    /// \throw Error for null, for a document, for an invalid text, and for what a comment, a CDATA section or
    ///        an instruction cannot hold
    void setText(const Value& text);

    /// \return the node's parent element; null at the top
    Element parent() const;
    /// \return the node after this one below the same parent, of any kind; null for the last
    Node nextSibling() const;
    /// \return the node before this one below the same parent, of any kind; null for the first
    Node previousSibling() const;
    /// \return the document that the node belongs to; null for null
    Document document() const;

    /// A deep copy that has no parent yet and belongs to the same document.
    /// \return null for null
    Node clone() const;

    /// The node as markup. See `SaveOptions`.
    std::string toString(const SaveOptions& options = {}) const;

    /// A new object over the same node. \return null for null
    ComPtr<IXMLDOMNode> get() const;

private:
    friend struct detail::Access;

    void readName(detail::Target target) const;
    bool readText(detail::Target target) const;

    alignas(void*) std::byte m_state[3 * sizeof(void*)];
};

} // namespace kel
