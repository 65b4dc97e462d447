/// \file
/// Elements and their attributes. KelXmlLib/kel.h includes this header.

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

/// Finds and changes the children of an element or a document. `Element` and `Document` derive from this
/// class.
class KEL_EXPORT Container : public Node
{
public:
    /// \return the first child element of that name; null if no child element has that name
    Element child(TextView name) const;
    /// Returns the first child element of that name. If no child element has that name, appends a new element
    /// and returns the new element.
    /// \throw Error in the same cases as `append(name)`
    Element childOrNew(TextView name);

    /// Lists the child elements. The comment on `List` says what a loop over the list may change.
    List<Element> children() const;
    /// Lists the child elements of that name.
    List<Element> children(TextView name) const;
    /// Lists all descendant elements, in document order.
    List<Element> descendants() const;
    /// Lists all descendant elements of that name, in document order.
    List<Element> descendants(TextView name) const;
    /// Lists all child nodes, of every kind.
    List<Node> nodes() const;

    /// Appends a new element.
    /// \param name the tag name
    /// \return the new element
    /// \throw Error if this node is null, if the name is invalid, if the tree would become too deep, or if
    ///        this node is a document that already has a root element
    Element append(TextView name);
    /// Appends a new element that contains a text.
    /// \throw Error in the same cases as `append(name)`, and if the text is invalid
    Element append(TextView name, const Value& text);
    /// Appends a node. A node that already has a parent is moved, even if the node is in another document.
    /// \throw Error if this node or `node` is null, if `node` is this node or contains this node, or if the
    ///        tree would become too deep. Also throws `Error` if `node` is an attribute, a document, a
    ///        document type, an entity or a notation. If this node is a document, also throws `Error` if
    ///        `node` is a text, a CDATA section or a second root element.
    void append(const Node& node);
    /// Appends a comment.
    /// \param text must not contain two hyphens in a row, and must not end in a hyphen
    Node appendComment(TextView text);
    /// Appends a processing instruction.
    /// \param target the instruction's name. An instruction with the name `xml`, in upper or lower case, is
    ///        an XML declaration, which must be the first node of a document.
    /// \param data must not contain `?>`
    Node appendInstruction(TextView target, TextView data);

    /// Inserts a new element before a child of this node.
    /// \param name the tag name
    /// \param reference a child of this node; must not be null
    /// \return the new element
    /// \throw Error in the same cases as `append(name)`, and if `reference` is not a child of this node
    Element insertBefore(TextView name, const Node& reference);
    /// Inserts a node before a child of this node. An inserted node that already has a parent is moved, even
    /// if the node is in another document.
    /// \param node the node to insert
    /// \param reference a child of this node; must not be null
    /// \throw Error in the same cases as `append(node)`, and if `reference` is not a child of this node
    void insertBefore(const Node& node, const Node& reference);
    /// Puts `replacement` in the place of `child`. Afterwards, `child` has no parent. If `child` and
    /// `replacement` are the same node, nothing changes.
    /// \throw Error if `child` is not a child of this node, or if `append(replacement)` would throw. But an
    ///        element may replace the root element of a document.
    void replace(const Node& child, const Node& replacement);
    /// Removes a child of this node. The removed child stays alive as long as a `kel` value refers to it.
    /// \throw Error if `child` is not a child of this node
    void remove(const Node& child);

protected:
    /// Creates a null value.
    Container() noexcept = default;
    /// Refers to the node of a COM object, as the constructor `Node(IXMLDOMNode&)` does.
    explicit Container(IXMLDOMNode& node) : Node(node) {}
};

class Attribute;
class Attributes;

/// A value that refers to an element, or is null.
class KEL_EXPORT Element : public Container
{
public:
    /// Creates a null value.
    Element() noexcept = default;
    /// Refers to the element of a COM object. \throw Error if the COM object belongs to another library
    explicit Element(IXMLDOMElement& element);
    /// Refers to the same node as `node`. If that node is not an element, creates a null value.
    explicit Element(const Node& node) noexcept;

    /// Reads the value of an attribute. The type of `otherwise` decides whether the value is read as a text,
    /// a number or a `bool`. White space around a number or a `bool` is skipped. An integer is an optional
    /// sign and decimal digits: `+5` and `007` are valid, but `5.0`, `1e3` and `0x10` are not. A
    /// floating-point number may also be written as `5.0`, `1e3`, `inf` or `nan`. A `bool` is `true`,
    /// `false`, `1` or `0`.
    /// \param name the attribute's name
    /// \param otherwise the default. The function returns the default if the element is null, if the element
    ///        does not have the attribute, or if the attribute's value is not valid for the type of
    ///        `otherwise`.
    template <class Default>
    detail::TypeOf<Default> attribute(TextView name, const Default& otherwise) const
    {
        return detail::readOr(otherwise, [&](detail::Target target) { return readAttribute(name, target); });
    }
    /// \return whether the element has an attribute of that name
    bool hasAttribute(TextView name) const;
    /// Returns all attributes, sorted by name.
    Attributes attributes() const;
    /// Sets the value of an attribute. If the element does not have the attribute, adds the attribute.
    /// \param name the attribute's name
    /// \param value a text, a number or `bool`
    /// \throw Error if the element is null, if the name is invalid, or if `value` is an invalid text
    void setAttribute(TextView name, const Value& value);
    /// Removes an attribute.
    /// \return whether the element had the attribute
    /// \throw Error if the element is null
    bool removeAttribute(TextView name);

    /// Appends a text node.
    /// \return the new node
    /// \throw Error if the element is null, or if the text is invalid
    Node appendText(const Value& text);
    /// Appends a CDATA section.
    /// \param text must not contain `]]>`
    /// \return the new node
    /// \throw Error if the element is null, or if the text is invalid
    Node appendCData(TextView text);

    /// Copies the element with its attributes and all its descendants. The copy belongs to the same document
    /// as this element, but has no parent yet.
    /// \return the copy; null if this value is null
    Element clone() const;
    /// Creates a COM object for this element. \return a pointer that owns the COM object; null if this value
    /// is null
    ComPtr<IXMLDOMElement> get() const;

private:
    bool readAttribute(TextView name, detail::Target target) const;
};

/// A value that refers to an attribute of an element, or is null. The value keeps the element alive.
class KEL_EXPORT Attribute : public Node
{
public:
    /// Creates a null value.
    Attribute() noexcept = default;
    /// Refers to the attribute of a COM object. \throw Error if the COM object belongs to another library
    explicit Attribute(IXMLDOMAttribute& attribute);
    /// Refers to the same node as `node`. If that node is not an attribute, creates a null value.
    explicit Attribute(const Node& node) noexcept;
    /// Creates a COM object for this attribute. \return a pointer that owns the COM object; null if this
    /// value is null
    ComPtr<IXMLDOMAttribute> get() const;
};

/// The attributes of an element, sorted by name. A loop visits the attributes that the element has when the
/// loop begins. The body of the loop may set and remove attributes.
class KEL_EXPORT Attributes
{
public:
    /// A position in a loop over the attributes.
    class Iterator
    {
    public:
        /// The types that the standard library requires of an iterator.
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
            if (m_attributes && ++m_index == m_attributes->size())
                *this = {};
            return *this;
        }
        /// Compares two iterators. Two iterators are equal if both are at the end, or if both are at the same
        /// attribute in the same loop.
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

    /// For use inside the library. \param element may be null
    explicit Attributes(Element element) noexcept : m_element(std::move(element)) {}
    /// Starts a loop over the attributes. \return an iterator at the first attribute
    Iterator begin() const;
    /// Returns the end iterator.
    Iterator end() const noexcept { return {}; }
    /// Counts the attributes.
    std::size_t size() const;
    /// \return whether the element has no attributes
    bool empty() const { return size() == 0; }

private:
    Element m_element;
};

} // namespace kel
