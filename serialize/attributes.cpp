#include "serialize/attributes.h"

#include "qt/codecs.h"

#include <QtCore/QTextStream>
#include <QtXml/QDomNamedNodeMap>

namespace kelxml::serialize
{

namespace
{

/// Up to this number of attributes, iterating over Qt's hash is faster than copying the element.
constexpr int kFewAttributes = 64;

std::vector<QDomNode> itemsOf(const QDomNamedNodeMap& map)
{
    std::vector<QDomNode> items;
    items.reserve(static_cast<std::size_t>(map.count()));
    for (int index = 0; index < map.count(); ++index)
        items.push_back(map.item(index));
    return items;
}

/// Saves a copy of `element` that has no children. \return the part of the saved tag after the tag name and,
/// if `element` has a namespace, after the declaration of this namespace
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
    if (count <= kFewAttributes || !qt::hasCodecs()) // Qt cannot save an element without codecs
        return itemsOf(map);
    // Saving an element is the only way to make Qt list all attributes in linear time. The loop below finds
    // the names of the attributes in the saved text. The loop skips names that are not in the map, because Qt
    // adds declarations of namespaces to the saved text. The loop may find the wrong number of attributes,
    // for example if a name contains `="`. In that case, this function calls the slow `itemsOf`.
    std::vector<QDomNode> found;
    found.reserve(static_cast<std::size_t>(count));
    const QString text = attributesAsText(element);
    for (int start = 1, end = 0; (end = text.indexOf(QLatin1String("=\""), start)) >= 0;) {
        const int colon = text.at(start) == u':' ? 1 : 0; // Qt writes a colon even if the prefix is empty
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
    return map.count() <= kMaxInQtOrder ? itemsOf(map) : attributesOf(element);
}

} // namespace kelxml::serialize
