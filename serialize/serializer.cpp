// Follows Qt's layout, oddities included: every element in a namespace declares it, and comments and
// instructions end their line with any indentation.

#include "qt/movable_node.h"
#include "serialize/attributes.h"
#include "serialize/output.h"
#include "serialize/serialize.h"

#include <algorithm>
#include <tuple>

#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QTextCodec>
#include <QtXml/QDomDocument>

namespace kelxml::serialize
{

namespace
{

constexpr Escapes kInAttribute{true, true, false};

bool isXmlDeclaration(const QDomNode& node)
{
    return node.isProcessingInstruction() && node.nodeName() == QLatin1String("xml");
}

/// The codec of the encoding that the document declares, or of UTF-8.
QTextCodec* codecOf(const QDomNode& node)
{
    QTextCodec* codec = nullptr;
    const QDomNode first = node.isDocument() ? node.firstChild() : QDomNode();
    if (isXmlDeclaration(first)) {
        const QLatin1String pattern(R"re(encoding\s*=\s*(?:"([^"]*)"|'([^']*)'))re");
        const QRegularExpression encoding{QString(pattern)};
        const QRegularExpressionMatch match = encoding.match(first.nodeValue());
        const QString name = match.captured(1).isEmpty() ? match.captured(2) : match.captured(1);
        codec = name.isEmpty() ? nullptr : QTextCodec::codecForName(name.toLatin1());
    }
    return codec ? codec : QTextCodec::codecForName("UTF-8");
}

/// The name without a prefix, whether or not the node was created with a namespace.
QString localNameOf(const QDomNode& node)
{
    const QString local = node.localName();
    return local.isNull() ? node.nodeName() : local;
}

struct Attribute
{
    explicit Attribute(QDomNode&& attribute) : node(std::move(attribute)), name(localNameOf(node))
    {
        if (!node.namespaceURI().isNull())
            name = node.prefix() + u':' + name;
    }

    qt::MovableNode node;
    QString name; ///< as written

    friend bool operator<(const Attribute& one, const Attribute& other)
    {
        const int order = one.name.compare(other.name);
        return order != 0 ? order < 0 : one.node.nodeValue() < other.node.nodeValue();
    }
};

class Serializer
{
public:
    Serializer(const Options& options, Output& output) : m_options(options), m_output(output) {}

    void write(const QDomNode& root);

private:
    /// A node whose children are being written.
    struct Open
    {
        qt::MovableNode node;
        QString name; ///< an element's name as written, else null
    };

    qt::MovableNode begin(const QDomNode& node, bool isAfterText);
    void end(const Open& open, bool isAfterText);
    void endLineAfter(const QDomNode& node, const QDomNode& next);
    qt::MovableNode beginElement(const QDomNode& node, bool isAfterText);
    void writeAttributes(const QDomElement& element);
    void writeAttribute(const Attribute& attribute, QSet<QString>* declared);
    void writeText(const QDomNode& text);
    void writeComment(const QDomNode& comment, bool isAfterText);
    void writeInstruction(const QDomNode& instruction);
    void writeTypeBefore(const QDomNode& node);
    void writeType(const QDomDocumentType& type);
    void writeDeclarations(const QDomDocumentType& type, const QDomNamedNodeMap& map);
    void writeNotation(const QDomNotation& notation);
    void writeEntity(const QDomEntity& entity);
    void writeIdentifiers(const QString& publicId, const QString& systemId, bool isSystemNeeded);
    void writeQuoted(const QString& text);
    void indent() { m_output.putSpaces(std::max(0, m_options.indent) * m_depth); }
    template <class... Texts>
    void put(const Texts&... texts)
    {
        (m_output.put(texts), ...);
    }

    const Options& m_options;
    Output& m_output;
    std::vector<Open> m_open;
    QString m_name; ///< the name of the last element begun
    int m_depth = 1;
    bool m_isTypeDue = false;
};

void Serializer::write(const QDomNode& root)
{
    const bool hasSiblings = !root.parentNode().isNull();
    m_depth = root.isDocument() ? 0 : 1;
    m_isTypeDue = root.isDocument();
    bool isAfterText = hasSiblings && root.previousSibling().isText();
    for (qt::MovableNode node{QDomNode(root)}; !node.isNull();) {
        m_output.flushIfLong();
        qt::MovableNode next = begin(node, isAfterText);
        isAfterText = false;
        if (!next.isNull()) {
            m_open.push_back({std::move(node), m_name});
            node = std::move(next);
            continue;
        }
        for (;;) {
            next = m_open.empty() && !hasSiblings ? qt::MovableNode() : qt::MovableNode(node.nextSibling());
            endLineAfter(node, next);
            if (m_open.empty())
                return;
            isAfterText = node.isText();
            if (!next.isNull())
                break;
            end(m_open.back(), isAfterText);
            node = std::move(m_open.back().node);
            m_open.pop_back();
        }
        node = std::move(next);
    }
}

/// Writes a node up to its children. \return the first child to write
qt::MovableNode Serializer::begin(const QDomNode& node, bool isAfterText)
{
    if (m_isTypeDue && m_open.size() == 1)
        writeTypeBefore(node);
    switch (node.nodeType()) {
    case QDomNode::ElementNode:
        return beginElement(node, isAfterText);
    case QDomNode::TextNode:
        writeText(node);
        break;
    case QDomNode::AttributeNode:
        writeAttribute(Attribute(QDomNode(node)), nullptr);
        break;
    case QDomNode::CDATASectionNode:
        put(u"<![CDATA[", node.nodeValue(), u"]]>");
        break;
    case QDomNode::EntityReferenceNode:
        put(u'&', localNameOf(node), u';');
        break;
    case QDomNode::EntityNode:
        writeEntity(node.toEntity());
        break;
    case QDomNode::ProcessingInstructionNode:
        put(u"<?", localNameOf(node), u' ', node.nodeValue(), u"?>\n");
        break;
    case QDomNode::CommentNode:
        writeComment(node, isAfterText);
        break;
    case QDomNode::DocumentTypeNode:
        writeType(node.toDocumentType());
        break;
    case QDomNode::NotationNode:
        writeNotation(node.toNotation());
        break;
    default:
        m_name.clear();
        return node.firstChild();
    }
    return {};
}

void Serializer::end(const Open& open, bool isAfterText)
{
    if (!open.node.isElement())
        return;
    --m_depth;
    if (!isAfterText)
        indent();
    put(u"</", open.name, u'>');
}

void Serializer::endLineAfter(const QDomNode& node, const QDomNode& next)
{
    if (next.isText())
        return;
    if (node.isComment() || (node.isElement() && m_options.indent != -1))
        put(u'\n');
}

qt::MovableNode Serializer::beginElement(const QDomNode& node, bool isAfterText)
{
    if (!isAfterText)
        indent();
    m_name = localNameOf(node);
    const QString prefix = node.prefix();
    const QString space = node.namespaceURI();
    if (!space.isNull() && !prefix.isEmpty())
        m_name = prefix + u':' + m_name;
    put(u'<', m_name);
    if (!space.isNull()) {
        put(u" xmlns");
        if (!prefix.isEmpty())
            put(u':', prefix);
        put(u"=\"");
        m_output.putEscaped(space, {true, false, false});
        put(u'"');
    }
    writeAttributes(node.toElement());
    qt::MovableNode child = node.firstChild();
    if (child.isNull()) {
        put(u"/>");
        return child;
    }
    put(u'>');
    if (!child.isText() && m_options.indent != -1)
        put(u'\n');
    ++m_depth;
    return child;
}

void Serializer::writeAttributes(const QDomElement& element)
{
    if (!element.hasAttributes())
        return;
    const bool isByName = m_options.attributeOrder == AttributeOrder::byName;
    std::vector<Attribute> attributes;
    for (QDomNode& node : isByName ? attributesOf(element) : attributesInQtOrder(element))
        attributes.emplace_back(std::move(node));
    if (isByName)
        std::sort(attributes.begin(), attributes.end());
    QSet<QString> declared;
    for (const Attribute& attribute : attributes) {
        put(u' ');
        writeAttribute(attribute, &declared);
    }
}

/// \param declared the prefixes that earlier attributes declared; null for a single attribute
void Serializer::writeAttribute(const Attribute& attribute, QSet<QString>* declared)
{
    put(attribute.name, u"=\"");
    m_output.putEscaped(attribute.node.nodeValue(), kInAttribute);
    put(u'"');
    const QString space = attribute.node.namespaceURI();
    if (space.isNull())
        return;
    const QString prefix = attribute.node.prefix();
    if (attribute.node.parentNode().prefix() == prefix || (declared && declared->contains(prefix)))
        return;
    if (declared)
        declared->insert(prefix);
    put(u" xmlns:", prefix, u"=\"");
    m_output.putEscaped(space, kInAttribute);
    put(u'"');
}

void Serializer::writeText(const QDomNode& text)
{
    const bool isInElement = m_open.empty() ? text.parentNode().isElement() : m_open.back().node.isElement();
    m_output.putEscaped(text.nodeValue(), {!isInElement, false, true});
}

void Serializer::writeComment(const QDomNode& comment, bool isAfterText)
{
    if (!isAfterText)
        indent();
    const QString text = comment.nodeValue();
    put(u"<!--", text, text.endsWith(u'-') ? u" -->" : u"-->");
}

/// Writes the document type before the first child that is not an XML declaration.
void Serializer::writeTypeBefore(const QDomNode& node)
{
    if (isXmlDeclaration(node))
        return;
    m_isTypeDue = false;
    writeType(m_open.front().node.toDocument().doctype());
}

void Serializer::writeType(const QDomDocumentType& type)
{
    if (type.name().isEmpty())
        return;
    put(u"<!DOCTYPE ", type.name());
    writeIdentifiers(type.publicId(), type.systemId(), false);
    if (type.notations().count() > 0 || type.entities().count() > 0) {
        put(u" [\n");
        writeDeclarations(type, type.notations());
        writeDeclarations(type, type.entities());
        put(u']');
    }
    put(u">\n");
}

/// \param map the notations or entities of the type, which are also its children
void Serializer::writeDeclarations(const QDomDocumentType& type, const QDomNamedNodeMap& map)
{
    std::vector<qt::MovableNode> nodes;
    if (m_options.attributeOrder == AttributeOrder::ofQt && map.count() <= kMostInQtOrder)
        for (int index = 0; index < map.count(); ++index)
            nodes.emplace_back(map.item(index));
    else
        for (qt::MovableNode child = type.firstChild(); !child.isNull(); child = child.nextSibling())
            if (map.namedItem(child.nodeName()) == child)
                nodes.push_back(child);
    if (m_options.attributeOrder == AttributeOrder::byName)
        std::sort(nodes.begin(), nodes.end(), [](const QDomNode& one, const QDomNode& other) {
            return one.nodeName() < other.nodeName();
        });
    for (const qt::MovableNode& node : nodes) {
        begin(node, false);
        m_output.flushIfLong();
    }
}

void Serializer::writeNotation(const QDomNotation& notation)
{
    put(u"<!NOTATION ", localNameOf(notation));
    writeIdentifiers(notation.publicId(), notation.systemId(), notation.publicId().isNull());
    put(u">\n");
}

void Serializer::writeEntity(const QDomEntity& entity)
{
    QString name = localNameOf(entity);
    if (name.startsWith(u'%'))
        name.insert(1, u' ');
    put(u"<!ENTITY ", name);
    if (entity.systemId().isNull() && entity.publicId().isNull()) {
        QString value = QString::fromUtf8(entity.nodeValue().toUtf8()); // as Qt's conversion returns it
        value.replace(QLatin1String("&#"), QLatin1String("&#38;#"));
        value.replace(u'%', QLatin1String("&#60;")).replace(u'"', QLatin1String("&#34;"));
        put(u" \"", value, u"\">\n");
        return;
    }
    writeIdentifiers(entity.publicId(), entity.systemId(), true);
    if (!entity.notationName().isNull())
        put(u" NDATA ", entity.notationName());
    put(u">\n");
}

/// \param isSystemNeeded whether to write a system identifier even if it is null
void Serializer::writeIdentifiers(const QString& publicId, const QString& systemId, bool isSystemNeeded)
{
    const bool hasSystem = isSystemNeeded || !systemId.isNull();
    if (!publicId.isNull()) {
        put(u" PUBLIC ");
        writeQuoted(publicId);
    } else if (hasSystem) {
        put(u" SYSTEM");
    }
    if (hasSystem) {
        put(u' ');
        writeQuoted(systemId);
    }
}

void Serializer::writeQuoted(const QString& text)
{
    const char16_t quote = text.contains(u'\'') ? u'"' : u'\'';
    put(quote, text, quote);
}

void write(const QDomNode& node, const Options& options, const QTextCodec& codec, Output::Sink sink)
{
    Output output(codec, std::move(sink));
    Serializer(options, output).write(node);
    output.flush();
}

} // namespace

void serialize(const QDomNode& node, const Options& options, const Sink& write)
{
    const QTextCodec* const codec = codecOf(node);
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    serialize::write(node, options, *codec,
                     [&](const QChar* text, int length) { write(codec->fromUnicode(text, length, &state)); });
}

QByteArray bytesOf(const QDomNode& node, const Options& options)
{
    QByteArray all;
    serialize(node, options, [&all](const QByteArray& bytes) { all += bytes; });
    return all;
}

QString textOf(const QDomNode& node, const Options& options)
{
    QString all;
    write(node, options, *codecOf(node), [&all](const QChar* text, int length) { all.append(text, length); });
    return all;
}

} // namespace kelxml::serialize
