// Nodes of every kind. The Qt handles are in the bytes of `Node::m_state`, so that the header does not need
// Qt.

#include "KelXmlLib/kel/node.h"

#include "KelComWrapper/error.h"
#include "dom/child.h"
#include "dom/wrap.h"
#include "layer/access.h"
#include "layer/options.h"
#include "layer/refuse.h"
#include "layer/text.h"
#include "trees/content.h"
#include "trees/owners.h"
#include "trees/reported_changes.h"

#include <memory>
#include <new>

namespace kel
{

using detail::Access;
using detail::documentOf;
using detail::nodeOf;
using detail::refTo;
using detail::State;

void detail::Access::assign(Node& value, kelxml::qt::MovableNode&& node, const QDomDocument& document)
{
    State& state = of(value);
    state.ownerElement = kelxml::trees::ownerElementOf(node);
    if (state.document != document)
        state.document = document;
    if (node.isDocument())
        state.document = node.toDocument();
    state.node = std::move(node);
}

Node::Node() noexcept
{
    static_assert(sizeof(State) == sizeof m_state && alignof(State) == alignof(void*));
    new (m_state) State;
}

Node::Node(IXMLDOMNode& node) : Node()
{
    const std::optional<kelxml::dom::Child> known = kelxml::dom::recognise(&node);
    if (!known)
        detail::refuse("creating a node from an interface", detail::reason::kForeign);
    Access::assign(*this, QDomNode(known->ref.node), known->ref.document.handleOrFallback());
}

Node::Node(const Node& other) noexcept
{
    new (m_state) State(Access::of(other));
}

Node::Node(Node&& other) noexcept : Node()
{
    *this = std::move(other);
}

Node& Node::operator=(const Node& other) noexcept
{
    Node copy(other);
    return *this = std::move(copy);
}

Node& Node::operator=(Node&& other) noexcept
{
    State& mine = Access::of(*this);
    State& theirs = Access::of(other);
    kelxml::qt::MovableNode::exchange(mine.node, theirs.node);
    kelxml::qt::MovableNode::exchange(mine.document, theirs.document);
    kelxml::qt::MovableNode::exchange(mine.ownerElement, theirs.ownerElement);
    return *this;
}

Node::~Node()
{
    std::destroy_at(&Access::of(*this));
}

Node::operator bool() const noexcept
{
    return !nodeOf(*this).isNull();
}

bool Node::operator==(const Node& other) const noexcept
{
    return nodeOf(*this) == nodeOf(other);
}

NodeKind Node::kind() const noexcept
{
    return *this ? static_cast<NodeKind>(nodeOf(*this).nodeType()) : NodeKind::none;
}

void Node::readName(detail::Target target) const
{
    detail::assign(nodeOf(*this).nodeName(), target);
}

bool Node::readText(detail::Target target) const
{
    if (!*this)
        return false;
    if (!nodeOf(*this).isElement())
        return detail::assign(nodeOf(*this).nodeValue(), target);
    const kelxml::qt::MovableNode first = nodeOf(*this).firstChild();
    if (first.isText() && first.nextSibling().isNull())
        return detail::assign(first.nodeValue(), target);
    return detail::assign(Access::as<QDomElement>(*this).text(), target);
}

void Node::setText(const Value& text)
{
    constexpr const char* kAction = "setting a text";
    const QString data = detail::toContent(text.text());
    switch (kind()) {
    case NodeKind::none:
        detail::refuse(kAction, detail::reason::kNull);
    case NodeKind::element:
        return kelxml::trees::replaceContent(refTo(*this), data);
    case NodeKind::document:
        detail::refuse(kAction, detail::reason::kTextInDocument);
    case NodeKind::comment:
        detail::requireComment(data, kAction);
        break;
    case NodeKind::cdata:
        detail::requireWithout("]]>", data, kAction, detail::reason::kCData);
        break;
    case NodeKind::instruction:
        detail::requireWithout("?>", data, kAction, detail::reason::kInstruction);
        break;
    default:
        break;
    }
    kelxml::trees::setNodeValue(refTo(*this), data);
}

Element Node::parent() const
{
    kelxml::qt::MovableNode parent = nodeOf(*this).parentNode();
    return parent.isElement() ? Access::make<Element>(std::move(parent), documentOf(*this)) : Element();
}

Node Node::nextSibling() const
{
    return Access::make(kelxml::trees::nextSibling(nodeOf(*this)), documentOf(*this));
}

Node Node::previousSibling() const
{
    return Access::make(kelxml::trees::previousSibling(nodeOf(*this)), documentOf(*this));
}

Document Node::document() const
{
    if (!*this)
        return Access::null<Document>();
    const QDomDocument document = kelxml::trees::ownerDocument(refTo(*this));
    const QDomDocument& known = document.isNull() ? documentOf(*this) : document;
    return Access::make<Document>(QDomNode(known), known);
}

Node Node::clone() const
{
    return Access::make(kelxml::trees::cloneNode(refTo(*this), true), documentOf(*this));
}

std::string Node::toString(const SaveOptions& options) const
{
    kelxml::trees::ensureValidOwnerDocument(refTo(*this));
    return kelxml::serialize::textOf(nodeOf(*this), detail::optionsOf(options)).toStdString();
}

ComPtr<IXMLDOMNode> Node::get() const
{
    ComPtr<IXMLDOMNode> object;
    if (*this)
        kelxml::dom::wrapForReturn(kelxml::qt::MovableNode(nodeOf(*this)), {documentOf(*this)}, object.put());
    return object;
}

} // namespace kel
