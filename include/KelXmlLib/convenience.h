/// \file
/// Shorter ways through the object model for C++ callers: documents, casts, lists in range-for, attributes,
/// texts and new elements. Header-only and optional; failures are exceptions (see KelComWrapper/error.h).

#pragma once

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/error.h"
#include "KelComWrapper/variant_owner.h"
#include "KelXmlLib/guids.h"
#include "KelXmlLib/module.h"
#include "KelXmlLib/xmldom.h"

#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace kel
{

/// Asks an object for another of its interfaces. \return null when it has not got it
template <class Interface>
ComPtr<Interface> query(IUnknown& object, const GUID& identifier)
{
    void* found = nullptr;
    if (object.QueryInterface(identifier, &found) != S_OK)
        return nullptr;
    return ComPtr<Interface>::adopt(static_cast<Interface*>(found));
}

/// The node as an element. \return null when it is none
inline ComPtr<IXMLDOMElement> asElement(IXMLDOMNode& node)
{
    return query<IXMLDOMElement>(node, IID_IXMLDOMElement);
}
/// The node as an attribute. \return null when it is none
inline ComPtr<IXMLDOMAttribute> asAttribute(IXMLDOMNode& node)
{
    return query<IXMLDOMAttribute>(node, IID_IXMLDOMAttribute);
}

/// A new, empty document. The first call tells the library that it was loaded. \throw Error
inline ComPtr<IXMLDOMDocument> newDocument()
{
    constexpr unsigned kProcessAttach = 1;
    static const int isAttached = DllMain(nullptr, kProcessAttach, nullptr);
    static_cast<void>(isAttached);
    void* document = nullptr;
    check(DllGetClassObject(CLSID_DOMDocument, IID_IXMLDOMDocument, &document), "making a document");
    return ComPtr<IXMLDOMDocument>::adopt(static_cast<IXMLDOMDocument*>(document));
}

/// The nodes of an `IXMLDOMNodeList` or an `IXMLDOMNamedNodeMap`, for range-for. It holds the list and asks
/// it by index at every step, so the loop may set attributes and texts of what it meets. Only what changes
/// which nodes the list holds needs them collected first: the list is live, and a node that the loop removes
/// lets the next one move up into its place. The list's own cursor is not touched.
template <class List>
class Nodes
{
public:
    /// A place in the list.
    class Iterator
    {
    public:
        /// What the standard library asks of an iterator.
        /// @{
        using value_type = ComPtr<IXMLDOMNode>;
        using difference_type = std::ptrdiff_t;
        using reference = const value_type&;
        using pointer = const value_type*;
        using iterator_category = std::input_iterator_tag; // each node is met once
        /// @}

        /// The end.
        Iterator() = default;
        /// The first node.
        explicit Iterator(const ComPtr<List>& list) : m_list(list) { fetch(); }
        /// The node, which the iterator holds.
        /// @{
        reference operator*() const noexcept { return m_node; }
        pointer operator->() const noexcept { return &m_node; }
        /// @}
        /// Goes on to the next node. \throw Error
        Iterator& operator++()
        {
            ++m_index;
            fetch();
            return *this;
        }
        /// Compares with the end; meant for nothing else.
        /// @{
        bool operator==(const Iterator& other) const noexcept { return !m_node == !other.m_node; }
        bool operator!=(const Iterator& other) const noexcept { return !(*this == other); }
        /// @}

    private:
        /// Beyond the end the list answers `S_FALSE`, the map gives null.
        void fetch()
        {
            check(m_list->get_item(m_index, m_node.put()), "asking for a node", FalseIs::success);
        }

        ComPtr<List> m_list;
        LONG m_index = 0;
        value_type m_node;
    };

    /// Takes the list over; null has no nodes.
    explicit Nodes(ComPtr<List> list) noexcept : m_list(std::move(list)) {}
    /// \throw Error
    Iterator begin() const { return m_list ? Iterator(m_list) : Iterator(); }
    /// The end.
    Iterator end() const { return {}; }

private:
    ComPtr<List> m_list;
};

/// `for (const auto& node : kel::each(list))`. The list lives as long as the loop.
template <class List>
Nodes<List> each(ComPtr<List> list)
{
    return Nodes<List>(std::move(list));
}

/// The children of a node. \throw Error
inline Nodes<IXMLDOMNodeList> childrenOf(IXMLDOMNode& node)
{
    ComPtr<IXMLDOMNodeList> list;
    check(node.get_childNodes(list.put()), "asking for children");
    return each(std::move(list));
}
/// The attributes of a node. \throw Error
inline Nodes<IXMLDOMNamedNodeMap> attributesOf(IXMLDOMNode& node)
{
    ComPtr<IXMLDOMNamedNodeMap> map;
    check(node.get_attributes(map.put()), "asking for attributes");
    return each(std::move(map));
}
/// The elements below a document or an element that have a tag name. \throw Error
inline Nodes<IXMLDOMNodeList> elementsNamed(IXMLDOMNode& node, std::wstring tagName)
{
    ComPtr<IXMLDOMNodeList> list;
    check(node.selectNodes(tagName.data(), list.put()), "searching for elements");
    return each(std::move(list));
}

/// A name or a text that a node gives out by one of its getters:
/// `kel::textOf(*node, &IXMLDOMNode::get_nodeName)`. \throw Error
template <class Node, class Base>
std::wstring textOf(Node& node, HRESULT (Base::*getter)(BSTR*))
{
    Bstr text;
    check((node.*getter)(text.put()), "asking for a text");
    return {text.c_str(), text.length()};
}

/// The text of an element, its descendants' included, or of a text node; of a document always empty.
/// \throw Error for other nodes
inline std::wstring textOf(IXMLDOMNode& node)
{
    return textOf(node, &IXMLDOMNode::get_text);
}

/// Makes a text all that an element holds: unlike `put_text`, which takes out no more than the first child.
/// Of any other node it sets the value, which a document does not show.
/// \param node the element
/// \param text read up to its first zero character
/// \throw Error, std::bad_alloc: children may be gone by then
inline void setText(IXMLDOMNode& node, std::wstring text)
{
    constexpr const char* kAction = "setting a text";
    if (asElement(node)) {
        ComPtr<IXMLDOMNode> child;
        while (check(node.get_firstChild(child.put()), kAction, FalseIs::success))
            check(node.removeChild(child.get(), nullptr), kAction);
    }
    check(node.put_text(text.data()), kAction);
}

/// The value of an attribute.
/// \param element any other node has no attributes
/// \param name of the attribute
/// \param otherwise what to give when there is no such attribute
/// \throw Error
inline std::wstring attributeOf(IXMLDOMNode& element, std::wstring name, std::wstring otherwise = {})
{
    constexpr const char* kAction = "asking for an attribute";
    ComPtr<IXMLDOMNamedNodeMap> map;
    check(element.get_attributes(map.put()), kAction);
    ComPtr<IXMLDOMNode> attribute;
    if (!check(map->getNamedItem(name.data(), attribute.put()), kAction, FalseIs::success))
        return otherwise;
    Variant value;
    check(asAttribute(*attribute)->get_value(value.put()), kAction);
    return std::wstring(value.text());
}

namespace detail
{

/// A text or a number as the library takes it for an attribute.
/// \param value is copied
template <class Value>
Variant attributeValue(const Value& value)
{
    VARIANT number{};
    if constexpr (std::is_convertible_v<const Value&, std::wstring_view>) {
        return Variant(std::wstring_view(value));
    } else if constexpr (std::is_same_v<Value, float>) {
        number.vt = VT_R4;
        number.fltVal = value;
    } else if constexpr (std::is_floating_point_v<Value>) {
        number.vt = VT_R8;
        number.dblVal = static_cast<double>(value);
    } else if constexpr (std::is_signed_v<Value>) {
        number.vt = VT_I8;
        number.llVal = value;
    } else {
        number.vt = VT_UI8;
        number.ullVal = value;
    }
    return Variant::adopt(number);
}

/// Whether a value of the type means a truth or a character, though it counts as a number.
template <class Value>
constexpr bool isNoNumber =
    std::is_same_v<Value, bool> || std::is_same_v<Value, char> || std::is_same_v<Value, wchar_t> ||
    std::is_same_v<Value, char16_t> || std::is_same_v<Value, char32_t>;

} // namespace detail

/// Sets an attribute, which is made when it is not there.
/// \param element what gets it
/// \param name of the attribute
/// \param value a text or a number. XML knows no truth values: write the word or the number that is meant
/// \throw Error also when the node is no element
template <class Value>
void setAttribute(IXMLDOMNode& element, std::wstring name, const Value& value)
{
    static_assert(std::is_convertible_v<const Value&, std::wstring_view> ||
                      (std::is_arithmetic_v<Value> && !detail::isNoNumber<Value>),
                  "a text or a number");
    const auto target = asElement(element);
    check(target ? target->setAttribute(name.data(), detail::attributeValue(value).get()) : E_NOINTERFACE,
          "setting an attribute");
}

/// Makes an element and appends it.
/// \param parent a document or an element
/// \param name which is not checked to be one
/// \param text that it gets, if any
/// \return the new element
/// \throw Error also for what `appendChild` leaves undone without a word. Out of memory, the element may
/// stand there
inline ComPtr<IXMLDOMElement> appendElement(IXMLDOMNode& parent, std::wstring name, std::wstring text = {})
{
    constexpr const char* kAction = "appending an element";
    ComPtr<IXMLDOMDocument> document;
    check(parent.get_ownerDocument(document.put()), kAction);
    ComPtr<IXMLDOMNode> made;
    check(document->createNode(Variant(LONG{NODE_ELEMENT}).get(), name.data(), nullptr, made.put()), kAction);
    if (!text.empty())
        check(made->put_text(text.data()), kAction);
    check(parent.appendChild(made.get(), nullptr), kAction);
    ComPtr<IXMLDOMNode> place;
    if (made->get_parentNode(place.put()) != S_OK)
        throw Error(S_FALSE, kAction,
                    "its name is empty, the parent holds no node, or the tree would become too deep");
    return asElement(*made);
}

} // namespace kel
