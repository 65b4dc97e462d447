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

/// The children of elements and documents.
class KEL_EXPORT Container : public Node
{
public:
    /// \return the first child element of that name; null if there is no such child, and for null
    Element child(TextView name) const;
    /// The same, but appends the element if it does not exist. \throw Error as `append`
    Element childOrNew(TextView name);

    /// The child elements. See `List` for what a loop may change.
    List<Element> children() const;
    /// The child elements of that name.
    List<Element> children(TextView name) const;
    /// All elements below this one, in document order.
    List<Element> descendants() const;
    /// All elements of that name below this one, in document order.
    List<Element> descendants(TextView name) const;
    /// The child nodes of every kind.
    List<Node> nodes() const;

    /// Appends a new element.
    /// \param name its tag name
    /// \return the new element
    /// \throw Error for null, for an invalid name, for a tree that would become too deep, and for a
    ///        document that already has a root element
    Element append(TextView name);
    /// Appends a new element that holds a text. \throw Error as above, and for an invalid text
    Element append(TextView name, const Value& text);
    /// Appends a node. A node that already has a parent is moved, even from another document.
    /// \throw Error for null, for a node that is or contains this one, for an attribute,
    ///        for a document, for a tree that would become too deep, and for what a document cannot hold
    void append(const Node& node);
    /// Appends a comment.
    /// \param text without two hyphens in a row, and not ending in one
    Node appendComment(TextView text);
    /// Appends a processing instruction.
    /// \param target its name; `xml` makes an XML declaration, which must come first in a document
    /// \param data must not contain `?>`
    Node appendInstruction(TextView target, TextView data);

    /// Inserts a new element.
    /// \param name its tag name
    /// \param reference a child of this one; not null: see `append`
    /// \return the new element
    /// \throw Error as `append`, and when `reference` is not a child
    Element insertBefore(TextView name, const Node& reference);
    /// Inserts a node. A node that already has a parent is moved.
    /// \param node any node
    /// \param reference a child of this one; not null: see `append`
    /// \throw Error as `append`, and when `reference` is not a child
    void insertBefore(const Node& node, const Node& reference);
    /// Replaces `child` with `replacement`. Afterwards `child` has no parent.
    /// \throw Error as `append`, and when `child` is not a child
    void replace(const Node& child, const Node& replacement);
    /// Removes a child. Values that refer to it keep it alive. \throw Error when it is not a child
    void remove(const Node& child);

protected:
    /// Null.
    Container() noexcept = default;
    /// See `Node`.
    explicit Container(IXMLDOMNode& node) : Node(node) {}
};

class Attribute;
class Attributes;

/// An element, or null.
class KEL_EXPORT Element : public Container
{
public:
    /// Null.
    Element() noexcept = default;
    /// The element behind an interface. \throw Error for an object of another library
    explicit Element(IXMLDOMElement& element);
    /// The node as an element; null for any other node.
    explicit Element(const Node& node) noexcept;

    /// An attribute's value.
    /// \param name of the attribute
    /// \param otherwise returned for null, for a missing attribute, and for a value that is not of its
    ///        type. Its type, a text, a number or `bool`, is the type of the result. White space around a
    ///        number or `bool` is skipped. Integers are decimal digits after an optional sign (`+5`, `007`,
    ///        not `5.0`, `1e3` or `0x10`); for `double`, `1e3`, `inf` and `nan` are valid too
    template <class Default>
    detail::TypeOf<Default> attribute(TextView name, const Default& otherwise) const
    {
        return detail::readOr(otherwise, [&](detail::Target target) { return readAttribute(name, target); });
    }
    /// \return whether there is an attribute of that name
    bool hasAttribute(TextView name) const;
    /// All attributes, sorted by name.
    Attributes attributes() const;
    /// Sets an attribute, and adds it if it does not exist.
    /// \param name of the attribute
    /// \param value a text, a number or `bool`
    /// \throw Error for null, for an invalid name and for an invalid text
    void setAttribute(TextView name, const Value& value);
    /// Removes an attribute. \return whether there was one. \throw Error for null
    bool removeAttribute(TextView name);

    /// Appends a text. \throw Error for null and for an invalid text
    Node appendText(const Value& text);
    /// Appends a CDATA section. \param text must not contain `]]>`
    Node appendCData(TextView text);

    /// As `Node::clone`.
    Element clone() const;
    /// A new object over the same element. \return null for null
    ComPtr<IXMLDOMElement> get() const;

private:
    bool readAttribute(TextView name, detail::Target target) const;
};

/// An attribute of an element. It keeps the element alive.
class KEL_EXPORT Attribute : public Node
{
public:
    /// Null.
    Attribute() noexcept = default;
    /// The attribute behind an interface. \throw Error for an object of another library
    explicit Attribute(IXMLDOMAttribute& attribute);
    /// The node as an attribute; null for any other node.
    explicit Attribute(const Node& node) noexcept;
    /// A new object over the same attribute. \return null for null
    ComPtr<IXMLDOMAttribute> get() const;
};

/// The attributes of an element, sorted by name. A loop visits the attributes that exist when it begins. It
/// may set and remove attributes.
class KEL_EXPORT Attributes
{
public:
    /// A place in the list.
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

        /// The end.
        Iterator() = default;
        /// The first attribute. \param attributes not empty
        explicit Iterator(std::shared_ptr<const std::vector<Attribute>> attributes) noexcept
            : m_attributes(std::move(attributes))
        {}
        /// The attribute.
        /// @{
        reference operator*() const noexcept { return (*m_attributes)[m_index]; }
        pointer operator->() const noexcept { return &**this; }
        /// @}
        /// Goes to the next attribute.
        Iterator& operator++() noexcept
        {
            if (++m_index == m_attributes->size())
                *this = {};
            return *this;
        }
        /// Compares places: equal at the same attribute of the same loop, and at the end.
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

    /// For the library itself. \param element may be null
    explicit Attributes(Element element) noexcept : m_element(std::move(element)) {}
    /// The first attribute.
    Iterator begin() const;
    /// The end.
    Iterator end() const noexcept { return {}; }
    /// The number of attributes.
    std::size_t size() const;
    /// \return whether there are no attributes
    bool empty() const { return size() == 0; }

private:
    Element m_element;
};

} // namespace kel
