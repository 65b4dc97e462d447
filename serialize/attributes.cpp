#include "serialize/attributes.h"

#include <QtCore/QTextStream>
#include <QtXml/QDomNamedNodeMap>

namespace kelxml::serialize
{

namespace
{

/// Up to this many attributes, iterating over the hash costs less than copying the element.
constexpr int kFew = 64;
std::vector<QDomNode> itemsOf(const QDomNamedNodeMap& map)
{
    std::vector<QDomNode> items;
    items.reserve(static_cast<std::size_t>(map.count()));
    for (int index = 0; index < map.count(); ++index)
        items.push_back(map.item(index));
    return items;
}

/// The start tag of an element without children, after the element's own name and namespace.
QString attributesAsText(const QDomElement& element)
{
    QDomElement copy = element.cloneNode(false).toElement();
    copy.setTagName(QStringLiteral("e"));
    QString tag;
    QTextStream stream(&tag);
    copy.save(stream, 0);
    const int end = element.namespaceURI().isNull() ? 0 : tag.indexOf(u'"', tag.indexOf(u'"') + 1);
    return tag.mid(tag.indexOf(u' ', end));
}

} // namespace

std::vector<QDomNode> attributesOf(const QDomElement& element)
{
    const QDomNamedNodeMap map = element.attributes();
    const int count = map.count();
    if (count <= kFew)
        return itemsOf(map);
    // Saving is Qt's only linear way to list all attributes. Namespace declarations that it adds are not in
    // the map. If a name contains `="`, the count is wrong and the slow loop is used.
    std::vector<QDomNode> found;
    found.reserve(static_cast<std::size_t>(count));
    const QString text = attributesAsText(element);
    for (int start = 1, end = 0; (end = text.indexOf(QLatin1String("=\""), start)) >= 0;) {
        const int colon = text.at(start) == u':' ? 1 : 0; // for an attribute in a namespace without a prefix
        const QDomNode attribute = map.namedItem(text.mid(start + colon, end - start - colon));
        if (!attribute.isNull())
            found.push_back(attribute);
        start = text.indexOf(u'"', end + 2) + 2;
    }
    return found.size() == static_cast<std::size_t>(count) ? found : itemsOf(map);
}

std::vector<QDomNode> attributesInQtOrder(const QDomElement& element)
{
    const QDomNamedNodeMap map = element.attributes();
    return map.count() <= kMostInQtOrder ? itemsOf(map) : attributesOf(element);
}

} // namespace kelxml::serialize
