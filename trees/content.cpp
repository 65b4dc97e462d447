#include "trees/content.h"

#include "lists/live_list.h"
#include "trees/owners.h"

namespace kelxml::trees
{

QDomNode cloneNode(const qt::NodeRef& node, bool deep)
{
    ensureValidOwnerDocument(node);
    return node.node.cloneNode(deep);
}

void setNodeValue(const qt::NodeRef& node, const QString& value)
{
    ensureValidOwnerDocument(node);
    if (node.node.isAttr())
        lists::invalidate(node.node.firstChild(), node.node);
    QDomNode(node.node).setNodeValue(value);
}

void replaceFirstChild(const qt::NodeRef& element, const QString& text)
{
    ensureValidOwnerDocument(element);
    QDomDocument document = element.document.handleOrFallback();
    const QDomNode replacement = document.createTextNode(text);
    const QDomNode first = element.node.firstChild();
    lists::invalidate(first, element.node);
    QDomNode(element.node).removeChild(first);
    QDomNode(element.node).appendChild(replacement);
}

void prepareSettingAttribute(const qt::NodeRef& element, const QString& name)
{
    ensureValidOwnerDocument(element);
    if (!lists::isAnyCached())
        return;
    const QDomNode attribute = element.node.attributes().namedItem(name);
    lists::invalidate(attribute.firstChild(), attribute);
}

} // namespace kelxml::trees
