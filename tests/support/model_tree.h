// A model of the object model's tree: what the calls promise, without Qt. Parents hold their children and
// attributes; a child's pointer to its parent goes with the parent.

#pragma once

#include <QtXml/QDomDocument>
#include <memory>
#include <string>
#include <vector>

namespace model
{

struct Node;
using NodePtr = std::shared_ptr<Node>;

struct Node : std::enable_shared_from_this<Node>
{
    int type = 0;
    std::wstring name;
    std::wstring value;
    std::vector<NodePtr> children;
    std::vector<NodePtr> attributes;
    std::weak_ptr<Node> parent;

    NodePtr attribute(const std::wstring& wanted) const;
    /// The text of an element's descendants.
    std::wstring text() const;
};

NodePtr make(int type, const std::wstring& name, const std::wstring& value = {});
/// The tree that Qt's parser gives.
NodePtr fromQt(const QDomNode& node);
NodePtr copyOf(const Node& node, bool deep);

/// Appends unless the promise is that nothing happens. \return whether it happened
bool append(const NodePtr& parent, const NodePtr& child);
bool remove(const NodePtr& parent, const NodePtr& child);
void setValue(const NodePtr& node, const std::wstring& value);
/// Puts a text in the place of the first child.
void setText(const NodePtr& parent, const std::wstring& text);
void setAttribute(const NodePtr& element, const std::wstring& name, const std::wstring& value);
/// The elements with a tag name below `top`, in document order.
void collect(const NodePtr& top, const std::wstring& tag, std::vector<NodePtr>& found);

} // namespace model
