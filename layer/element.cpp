// Elements and attributes.

#include "KelXmlLib/kel/element.h"

#include "dom/wrap.h"
#include "layer/access.h"
#include "layer/refuse.h"
#include "layer/text.h"
#include "serialize/attributes.h"
#include "trees/content.h"
#include "trees/owners.h"
#include "trees/reported_changes.h"

#include <algorithm>

namespace kel
{

using detail::Access;
using detail::documentOf;
using detail::nodeOf;
using detail::refTo;

namespace
{

/// Creates a COM object for a node. Returns null for a null node.
template <class Interface, class Wrapper>
ComPtr<Interface> objectFor(const Node& node)
{
    return node ? ComPtr<Interface>(new Wrapper(kelxml::qt::MovableNode(nodeOf(node)), {documentOf(node)}))
                : nullptr;
}

QDomNamedNodeMap attributesOf(const Element& element)
{
    return nodeOf(element).attributes();
}

void requireElement(const Element& element, const char* action)
{
    if (!element)
        detail::refuse(action, detail::reason::kNull);
}

} // namespace

Element::Element(IXMLDOMElement& element) : Container(element) {}

Element::Element(const Node& node) noexcept
{
    if (node.kind() == NodeKind::element)
        Node::operator=(node);
}

bool Element::readAttribute(TextView name, detail::Target target) const
{
    const QDomNode attribute = attributesOf(*this).namedItem(detail::toText(name));
    return !attribute.isNull() && detail::assign(attribute.nodeValue(), target);
}

bool Element::hasAttribute(TextView name) const
{
    return attributesOf(*this).contains(detail::toText(name));
}

Attributes Element::attributes() const
{
    return Attributes(*this);
}

void Element::setAttribute(TextView name, const Value& value)
{
    requireElement(*this, "setting an attribute");
    const QString text = detail::toContent(value.text());
    kelxml::trees::setAttribute(refTo(*this), detail::toName(name), text);
}

bool Element::removeAttribute(TextView name)
{
    requireElement(*this, "removing an attribute");
    return kelxml::trees::removeAttribute(refTo(*this), detail::toText(name));
}

Node Element::appendText(const Value& text)
{
    constexpr const char* kAction = "appending a text";
    requireElement(*this, kAction);
    QDomDocument document = documentOf(*this);
    const QString data = detail::toContent(text.text());
    Node node = Access::make(document.createTextNode(data), document);
    append(node);
    return node;
}

Node Element::appendCData(TextView text)
{
    constexpr const char* kAction = "appending a CDATA section";
    requireElement(*this, kAction);
    const QString data = detail::toContent(text);
    detail::requireWithout("]]>", data, kAction, detail::reason::kCData);
    QDomDocument document = documentOf(*this);
    Node node = Access::make(document.createCDATASection(data), document);
    append(node);
    return node;
}

Element Element::clone() const
{
    return Element(Node::clone());
}

ComPtr<IXMLDOMElement> Element::get() const
{
    return objectFor<IXMLDOMElement, CMorvXMLDOMElement>(*this);
}

Attribute::Attribute(IXMLDOMAttribute& attribute) : Node(attribute) {}

Attribute::Attribute(const Node& node) noexcept : Node(node.kind() == NodeKind::attribute ? node : Node()) {}

ComPtr<IXMLDOMAttribute> Attribute::get() const
{
    return objectFor<IXMLDOMAttribute, CMorvXMLDOMAttribute>(*this);
}

Attributes::Iterator Attributes::begin() const
{
    if (empty())
        return {};
    kelxml::trees::ensureValidOwnerDocument(refTo(m_element));
    auto attributes = std::make_shared<std::vector<Attribute>>();
    for (QDomNode& found : kelxml::serialize::attributesOf(Access::as<QDomElement>(m_element)))
        attributes->push_back(Access::make<Attribute>(std::move(found), documentOf(m_element)));
    std::sort(attributes->begin(), attributes->end(), [](const Attribute& left, const Attribute& right) {
        return nodeOf(left).nodeName() < nodeOf(right).nodeName();
    });
    return Iterator(std::move(attributes));
}

std::size_t Attributes::size() const
{
    return static_cast<std::size_t>(attributesOf(m_element).length());
}

} // namespace kel
