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

/// The kind of a node.
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

/// The order in which attributes are written.
enum class AttributeOrder {
    byName,     ///< sorted by name, so that saving an unchanged document always gives the same bytes
    unspecified ///< the order of Qt's hash, which differs from run to run
};

/// Options for writing a tree.
struct SaveOptions
{
    int indent = 4; ///< spaces per level; 0 adds only line breaks; -1 adds none, except after comments and
                    ///< instructions
    AttributeOrder attributeOrder = AttributeOrder::byName; ///< see `AttributeOrder`
};

/// Any node, such as an element, a text or a comment. The value refers to a node and keeps its document
/// alive, or it is null.
class KEL_EXPORT Node
{
public:
    /// Creates a null value.
    Node() noexcept;
    /// Refers to the node of a COM object. Does not keep the COM object itself.
    /// \throw Error if the object belongs to another library
    explicit Node(IXMLDOMNode& node);
    /// Refers to the same node.
    Node(const Node&) noexcept;
    /// Takes over what `other` refers to, and leaves `other` null.
    Node(Node&& other) noexcept;
    /// Refers to the same node.
    Node& operator=(const Node&) noexcept;
    /// Takes over what `other` refers to.
    Node& operator=(Node&& other) noexcept;
    ~Node();

    /// \return whether this value refers to a node
    explicit operator bool() const noexcept;
    /// \return whether both refer to the same node, or both are null
    bool operator==(const Node& other) const noexcept;
    /// \return whether the two refer to different nodes, or only one of them is null
    bool operator!=(const Node& other) const noexcept { return !(*this == other); }

    /// \return the kind of the node; `none` for a null value
    NodeKind kind() const noexcept;

    /// Returns the tag name of an element, the name of an attribute, or the target of an instruction. Other
    /// nodes have a name such as `#text`.
    /// \tparam Text `std::string` (UTF-8) or `std::wstring`
    template <class Text = std::string>
    Text name() const
    {
        Text name;
        readName(&name);
        return name;
    }

    /// Returns all text in an element and its descendants, or the value of any other node.
    /// \tparam Text `std::string` (UTF-8) or `std::wstring`
    /// \return the text; empty for a null value
    template <class Text = std::string>
    Text text() const
    {
        return text(Text());
    }
    /// Reads the text as the type of `otherwise`: a text, a number or `bool`. The same texts are valid as for
    /// `Element::attribute`.
    /// \param otherwise the default, which is returned if the node is null, or if the text is not valid for
    ///        the type
    template <class Default>
    detail::TypeOf<Default> text(const Default& otherwise) const
    {
        return detail::readOr(otherwise, [this](detail::Target target) { return readText(target); });
    }
    /// Replaces all children of an element by a text, or sets the value of any other node.
    /// \param text a text, a number or `bool`
    /// \throw Error if the node is null or a document, if the text is invalid, or if the text contains `--`,
    ///        `]]>` or `?>` and this kind of node cannot contain it
    void setText(const Value& text);

    /// \return the node's parent, if that is an element; else null
    Element parent() const;
    /// \return the next sibling, of any kind; null if this is the last child
    Node nextSibling() const;
    /// \return the previous sibling, of any kind; null if this is the first child
    Node previousSibling() const;
    /// \return the document that the node belongs to; null for a null value
    Document document() const;

    /// Copies the node with all its descendants. The copy belongs to the same document, and has no parent
    /// yet.
    /// \return the copy; null for a null value
    Node clone() const;

    /// Returns the node as XML text; empty for a null value.
    std::string toString(const SaveOptions& options = {}) const;

    /// Creates a COM object for this node. \return a pointer that owns it; null for a null value
    ComPtr<IXMLDOMNode> get() const;

private:
    friend struct detail::Access;

    void readName(detail::Target target) const;
    bool readText(detail::Target target) const;

    alignas(void*) std::byte m_state[3 * sizeof(void*)];
};

} // namespace kel
