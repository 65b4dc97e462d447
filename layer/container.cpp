// Finds and changes children. Every change goes through the checks in `trees/`.

#include "layer/access.h"
#include "layer/refuse.h"
#include "layer/selection.h"
#include "layer/text.h"
#include "trees/reported_changes.h"

namespace kel
{

using detail::Access;
using detail::documentOf;
using detail::nodeOf;
using detail::refTo;
using kelxml::qt::MovableNode;

namespace
{

constexpr const char* kAppending = "appending a node";
constexpr const char* kInserting = "inserting a node";
constexpr const char* kReplacing = "replacing a node";
constexpr const char* kRemoving = "removing a node";

void requireNotNull(const Node& parent, const Node& child, const char* action)
{
    if (!parent)
        detail::refuse(action, detail::reason::kNull);
    if (!child)
        detail::refuse(action, detail::reason::kNullArgument);
}

/// Refuses a child that `parent` cannot have. Does not check for cycles, attributes or too much depth,
/// because the functions in `trees/` refuse those.
/// \param replaced the existing child that will be replaced with `child`; null if `child` will be added
void requireAllowed(const Node& parent, const Node& child, const Node& replaced, const char* action)
{
    requireNotNull(parent, child, action);
    const NodeKind kind = child.kind();
    if (kind == NodeKind::documentType || kind == NodeKind::entity || kind == NodeKind::notation)
        detail::refuse(action, detail::reason::kDeclarationPart);
    if (parent.kind() != NodeKind::document)
        return;
    const QDomNode root = documentOf(parent).documentElement();
    if (kind == NodeKind::element && !root.isNull() && root != nodeOf(child) && root != nodeOf(replaced))
        detail::refuse(action, detail::reason::kSecondRoot);
    if (kind == NodeKind::text || kind == NodeKind::cdata)
        detail::refuse(action, detail::reason::kTextInDocument);
}

/// Creates a node in the document of `parent`, but does not add the new node to the tree.
template <class Result, class Create>
Result createNode(const Node& parent, const char* action, Create create)
{
    if (!parent)
        detail::refuse(action, detail::reason::kNull);
    QDomDocument document = documentOf(parent);
    return Access::make<Result>(create(document), document);
}

Element createElement(const Node& parent, TextView name, const char* action)
{
    const QString tagName = detail::toName(name);
    return createNode<Element>(parent, action,
                               [&](QDomDocument& document) { return document.createElement(tagName); });
}

} // namespace

Element Container::child(TextView name) const
{
    MovableNode found = detail::firstNamed(nodeOf(*this).firstChild(), detail::toText(name));
    return Access::make<Element>(std::move(found), documentOf(*this));
}

Element Container::childOrNew(TextView name)
{
    Element found = child(name);
    return found ? found : append(name);
}

List<Element> Container::children() const
{
    return detail::select<Element>(*this, {});
}

List<Element> Container::children(TextView name) const
{
    return detail::select<Element>(*this, {detail::toText(name), true, false});
}

List<Element> Container::descendants() const
{
    return detail::select<Element>(*this, {QString(), true, true});
}

List<Element> Container::descendants(TextView name) const
{
    return detail::select<Element>(*this, {detail::toText(name), true, true});
}

List<Node> Container::nodes() const
{
    return detail::select<Node>(*this, {QString(), false, false});
}

Element Container::append(TextView name)
{
    Element element = createElement(*this, name, kAppending);
    append(element);
    return element;
}

Element Container::append(TextView name, const Value& text)
{
    Element element = createElement(*this, name, kAppending);
    element.setText(text);
    append(element);
    return element;
}

void Container::append(const Node& node)
{
    requireAllowed(*this, node, {}, kAppending);
    detail::require(kelxml::trees::append(refTo(*this), refTo(node)), kAppending);
}

Node Container::appendComment(TextView text)
{
    const QString data = detail::toContent(text);
    detail::requireComment(data, kAppending);
    Node node = createNode<Node>(*this, kAppending,
                                 [&](QDomDocument& document) { return document.createComment(data); });
    append(node);
    return node;
}

Node Container::appendInstruction(TextView target, TextView data)
{
    const QString name = detail::toName(target);
    const QString content = detail::toContent(data);
    detail::requireWithout("?>", content, kAppending, detail::reason::kInstruction);
    if (detail::isDeclaration(name) && !(kind() == NodeKind::document && nodes().empty()))
        detail::refuse(kAppending, detail::reason::kDeclaration);
    Node node = createNode<Node>(*this, kAppending, [&](QDomDocument& document) {
        return document.createProcessingInstruction(name, content);
    });
    append(node);
    return node;
}

Element Container::insertBefore(TextView name, const Node& reference)
{
    Element element = createElement(*this, name, kInserting);
    insertBefore(element, reference);
    return element;
}

void Container::insertBefore(const Node& node, const Node& reference)
{
    requireAllowed(*this, node, {}, kInserting);
    detail::require(kelxml::trees::insertBefore(refTo(*this), refTo(node), refTo(reference)), kInserting);
}

void Container::replace(const Node& child, const Node& replacement)
{
    requireAllowed(*this, replacement, child, kReplacing);
    detail::require(kelxml::trees::replace(refTo(*this), refTo(child), refTo(replacement)), kReplacing);
}

void Container::remove(const Node& child)
{
    requireNotNull(*this, child, kRemoving);
    detail::require(kelxml::trees::remove(refTo(*this), refTo(child)), kRemoving);
}

} // namespace kel
