/// \file
/// Elements and their attributes. Included by KelXmlLib/kel.h.

#pragma once

#include "KelXmlLib/kel/list.h"
#include "KelXmlLib/kel/node.h"

#include <cstddef>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

namespace kel
{

/// The base of elements and documents: a node that can have children.
class KEL_EXPORT Container : public Node
{
public:
    /// \return the first child element of that name; null if there is none
    Element child(TextView name) const;
    /// Returns the first child element of that name. Appends the element if it does not exist.
    /// \throw Error in the same cases as `append(name)`
    Element childOrNew(TextView name);

    /// Lists the child elements. See `List` for the changes that a loop may make.
    List<Element> children() const;
    /// Lists the child elements of that name.
    List<Element> children(TextView name) const;
    /// Lists all descendant elements, in document order.
    List<Element> descendants() const;
    /// Lists all descendant elements of that name, in document order.
    List<Element> descendants(TextView name) const;
    /// Lists the child nodes of every kind.
    List<Node> nodes() const;

    /// Appends a new element.
    /// \param name the tag name
    /// \return the new element
    /// \throw Error if this node is null, if the name is invalid, if the tree would become too deep, or if
    ///        this node is a document that already has a root element
    Element append(TextView name);
    /// Appends a new element with a text.
    /// \throw Error in the same cases as `append(name)`, and if the text is invalid
    Element append(TextView name, const Value& text);
    /// Appends a node. If the node already has a parent, moves it, even from another document.
    /// \throw Error if this node or `node` is null, if `node` is or contains this node, if `node` is an
    ///        attribute, a document or a part of a document type, or if the tree would become too deep. Also
    ///        if this node is a document, and `node` is a text or a second root element
    void append(const Node& node);
    /// Appends a comment.
    /// \param text must not contain two hyphens in a row, or end in a hyphen
    Node appendComment(TextView text);
    /// Appends a processing instruction.
    /// \param target the instruction's name; `xml` makes an XML declaration, which must come first in a
    ///        document
    /// \param data must not contain `?>`
    Node appendInstruction(TextView target, TextView data);

    /// Inserts a new element before a child.
    /// \param name the tag name
    /// \param reference a child of this node; must not be null
    /// \return the new element
    /// \throw Error in the same cases as `append(name)`, and if `reference` is not a child of this node
    Element insertBefore(TextView name, const Node& reference);
    /// Inserts a node before a child. If the node already has a parent, moves it, even from another document.
    /// \param node the node to insert
    /// \param reference a child of this node; must not be null
    /// \throw Error in the same cases as `append(node)`, and if `reference` is not a child of this node
    void insertBefore(const Node& node, const Node& reference);
    /// Puts `replacement` in the place of `child`. Afterwards, `child` has no parent.
    /// \throw Error in the same cases as `append(node)`, and if `child` is not a child of this node
    void replace(const Node& child, const Node& replacement);
    /// Removes a child. The child stays alive as long as a `kel` object refers to it.
    /// \throw Error if `child` is not a child of this node
    void remove(const Node& child);

protected:
    /// Creates a null value.
    Container() noexcept = default;
    /// See `Node(IXMLDOMNode&)`.
    explicit Container(IXMLDOMNode& node) : Node(node) {}
};

class Attribute;
class Attributes;

/// An element, or null.
class KEL_EXPORT Element : public Container
{
public:
    /// Creates a null value.
    Element() noexcept = default;
    /// Refers to the element of a COM object. \throw Error if the object belongs to another library
    explicit Element(IXMLDOMElement& element);
    /// Refers to the same node if it is an element; else null.
    explicit Element(const Node& node) noexcept;

    /// Reads the value of an attribute. The type of `otherwise` is the type of the result: a text, a number
    /// or `bool`. White space around a number or `bool` is skipped. An integer is an optional sign and
    /// decimal digits: `+5` and `007` are valid, but `5.0`, `1e3` and `0x10` are not. A floating-point number
    /// may also be `5.0`, `1e3`, `inf` or `nan`.
    /// \param name the attribute's name
    /// \param otherwise the default, which is returned if the element is null, if it does not have the
    ///        attribute, or if the attribute's value does not fit the type of the result
    template <class Default>
    detail::TypeOf<Default> attribute(TextView name, const Default& otherwise) const
    {
        return detail::readOr(otherwise, [&](detail::Target target) { return readAttribute(name, target); });
    }
    /// \return whether there is an attribute of that name
    bool hasAttribute(TextView name) const;
    /// Returns all attributes, sorted by name.
    Attributes attributes() const;
    /// Sets an attribute. Adds the attribute if the element does not have it.
    /// \param name the attribute's name
    /// \param value a text, a number or `bool`
    /// \throw Error if the element is null, or if the name or the text is invalid
    void setAttribute(TextView name, const Value& value);
    /// Removes an attribute.
    /// \return whether the element had the attribute
    /// \throw Error if the element is null
    bool removeAttribute(TextView name);

    /// Appends a text. \return the new node. \throw Error if the element is null or the text is invalid
    Node appendText(const Value& text);
    /// Appends a CDATA section.
    /// \param text must not contain `]]>`
    /// \return the new node
    /// \throw Error if the element is null or the text is invalid
    Node appendCData(TextView text);

    /// See `Node::clone`.
    Element clone() const;
    /// Creates a COM object for this element. \return a pointer that owns it; null for a null value
    ComPtr<IXMLDOMElement> get() const;

private:
    bool readAttribute(TextView name, detail::Target target) const;
};

/// An attribute of an element. It keeps the element alive.
class KEL_EXPORT Attribute : public Node
{
public:
    /// Creates a null value.
    Attribute() noexcept = default;
    /// Refers to the attribute of a COM object. \throw Error if the object belongs to another library
    explicit Attribute(IXMLDOMAttribute& attribute);
    /// Refers to the same node if it is an attribute; else null.
    explicit Attribute(const Node& node) noexcept;
    /// Creates a COM object for this attribute. \return a pointer that owns it; null for a null value
    ComPtr<IXMLDOMAttribute> get() const;
};

/// The attributes of an element, sorted by name. A loop visits the attributes that exist when it begins. It
/// may set and remove attributes.
class KEL_EXPORT Attributes
{
public:
    /// A position in a loop over the attributes.
    class Iterator
    {
    public:
        /// The types that the standard library requires.
        /// @{
        using value_type = Attribute;
        using difference_type = std::ptrdiff_t;
        using reference = const Attribute&;
        using pointer = const Attribute*;
        using iterator_category = std::input_iterator_tag;
        /// @}

        /// Creates the end iterator.
        Iterator() = default;
        /// Creates an iterator at the first attribute. \param attributes must not be empty
        explicit Iterator(std::shared_ptr<const std::vector<Attribute>> attributes) noexcept
            : m_attributes(std::move(attributes))
        {}
        /// Accesses the current attribute.
        /// @{
        reference operator*() const noexcept { return (*m_attributes)[m_index]; }
        pointer operator->() const noexcept { return &**this; }
        /// @}
        /// Advances to the next attribute.
        Iterator& operator++() noexcept
        {
            if (++m_index == m_attributes->size())
                *this = {};
            return *this;
        }
        /// Compares two iterators. They are equal if both are at the end, or at the same attribute in the
        /// same loop.
        /// @{
        bool operator==(const Iterator& other) const noexcept
        {
            return m_attributes == other.m_attributes && m_index == other.m_index;
        }
        bool operator!=(const Iterator& other) const noexcept { return !(*this == other); }
        /// @}

    private:
        std::shared_ptr<const std::vector<Attribute>> m_attributes;
        std::size_t m_index = 0;
    };

    /// For internal use. \param element may be null
    explicit Attributes(Element element) noexcept : m_element(std::move(element)) {}
    /// Starts a loop.
    Iterator begin() const;
    /// Returns the end iterator.
    Iterator end() const noexcept { return {}; }
    /// Counts the attributes.
    std::size_t size() const;
    /// \return whether there are no attributes
    bool empty() const { return size() == 0; }

private:
    Element m_element;
};

} // namespace kel
