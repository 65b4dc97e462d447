#include "serialize/doctype.h"

#include "qt/movable_node.h"
#include "serialize/attributes.h"

#include <algorithm>
#include <vector>

#include <QtXml/QDomDocument>

namespace kelxml::serialize
{

namespace
{

void putQuoted(const QString& text, Output& output)
{
    const char16_t quote = text.contains(u'\'') ? u'"' : u'\'';
    output.put(quote, text, quote);
}

/// \param isSystemNeeded if true, a null `systemId` is written as an empty string; if false, a null
///        `systemId` is omitted
void putIdentifiers(const QString& publicId, const QString& systemId, bool isSystemNeeded, Output& output)
{
    const bool hasSystem = isSystemNeeded || !systemId.isNull();
    if (!publicId.isNull()) {
        output.put(u" PUBLIC ");
        putQuoted(publicId, output);
    } else if (hasSystem) {
        output.put(u" SYSTEM");
    }
    if (hasSystem) {
        output.put(u' ');
        putQuoted(systemId, output);
    }
}

/// \param map the notations or the entities of `type`. The items of `map` are also children of `type`.
std::vector<qt::MovableNode> declarationsIn(const QDomNamedNodeMap& map, const QDomDocumentType& type,
                                            AttributeOrder order)
{
    std::vector<qt::MovableNode> nodes;
    if (order == AttributeOrder::ofQt && map.count() <= kMaxInQtOrder)
        for (int index = 0; index < map.count(); ++index)
            nodes.emplace_back(map.item(index));
    else
        for (qt::MovableNode child = type.firstChild(); !child.isNull(); child = child.nextSibling())
            if (map.namedItem(child.nodeName()) == child)
                nodes.push_back(child);
    if (order == AttributeOrder::byName)
        std::sort(nodes.begin(), nodes.end(), [](const QDomNode& left, const QDomNode& right) {
            return left.nodeName() < right.nodeName();
        });
    return nodes;
}

} // namespace

void writeDoctype(const QDomDocumentType& type, AttributeOrder order, Output& output)
{
    if (type.name().isEmpty())
        return;
    output.put(u"<!DOCTYPE ", type.name());
    putIdentifiers(type.publicId(), type.systemId(), false, output);
    if (type.notations().count() > 0 || type.entities().count() > 0) {
        output.put(u" [\n");
        for (const qt::MovableNode& notation : declarationsIn(type.notations(), type, order)) {
            writeNotation(notation.toNotation(), output);
            output.flushIfLong();
        }
        for (const qt::MovableNode& entity : declarationsIn(type.entities(), type, order)) {
            writeEntity(entity.toEntity(), output);
            output.flushIfLong();
        }
        output.put(u']');
    }
    output.put(u">\n");
}

void writeNotation(const QDomNotation& notation, Output& output)
{
    output.put(u"<!NOTATION ", notation.nodeName());
    putIdentifiers(notation.publicId(), notation.systemId(), notation.publicId().isNull(), output);
    output.put(u">\n");
}

void writeEntity(const QDomEntity& entity, Output& output)
{
    QString name = entity.nodeName();
    if (name.startsWith(u'%'))
        name.insert(1, u' ');
    output.put(u"<!ENTITY ", name);
    if (entity.systemId().isNull() && entity.publicId().isNull()) {
        // Do what Qt does when it saves an entity: convert to UTF-8 and back, and replace `%` with `&#60;`,
        // although `&#60;` is a reference to `<`.
        QString value = QString::fromUtf8(entity.nodeValue().toUtf8());
        value.replace(QLatin1String("&#"), QLatin1String("&#38;#"));
        value.replace(u'%', QLatin1String("&#60;")).replace(u'"', QLatin1String("&#34;"));
        output.put(u" \"", value, u"\">\n");
        return;
    }
    putIdentifiers(entity.publicId(), entity.systemId(), true, output);
    if (!entity.notationName().isNull())
        output.put(u" NDATA ", entity.notationName());
    output.put(u">\n");
}

} // namespace kelxml::serialize
