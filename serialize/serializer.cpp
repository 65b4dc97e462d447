// Writes the same layout as Qt, including Qt's oddities. Each element in a namespace declares the namespace,
// even if an outer element already declares the same namespace. Even if `indent` is -1, a line break follows
// each processing instruction, each document type, and each comment, except a comment before a text.

#include "qt/codecs.h"
#include "qt/local_name.h"
#include "qt/movable_node.h"
#include "serialize/attributes.h"
#include "serialize/doctype.h"
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

/// Returns the codec of the encoding that the document `node` declares. Returns the codec of UTF-8 if `node`
/// is not a document, declares no encoding, or declares an encoding that Qt does not know. Returns null if
/// Qt's codecs are destroyed.
QTextCodec* codecOf(const QDomNode& node)
{
    if (!qt::hasCodecs())
        return nullptr; // Qt's regular expressions no longer work either
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

struct Attribute
{
    explicit Attribute(QDomNode&& attribute) : node(std::move(attribute)), name(qt::localNameOf(node))
    {
        if (!node.namespaceURI().isNull())
            name = node.prefix() + u':' + name;
    }

    qt::MovableNode node;
    QString name; ///< the name with the prefix, if any

    friend bool operator<(const Attribute& left, const Attribute& right)
    {
        const int order = left.name.compare(right.name);
        return order != 0 ? order < 0 : left.node.nodeValue() < right.node.nodeValue();
    }
};

class Serializer
{
public:
    Serializer(const Options& options, Output& output) : m_options(options), m_output(output) {}

    void write(const QDomNode& root);

private:
    /// A node whose children are being written.
    struct OpenNode
    {
        qt::MovableNode node;
        QString name; ///< an element's name, including any prefix; empty for other nodes
    };

    qt::MovableNode begin(const QDomNode& node, bool isAfterText);
    void end(const OpenNode& open, bool isAfterText);
    void endLineAfter(const QDomNode& node, const QDomNode& next);
    qt::MovableNode beginElement(const QDomNode& node, bool isAfterText);
    void writeAttributes(const QDomElement& element);
    void writeAttribute(const Attribute& attribute, QSet<QString>* declared);
    void writeText(const QDomNode& text);
    void writeComment(const QDomNode& comment, bool isAfterText);
    void writeDoctypeBefore(const QDomNode& node);
    void indent() { m_output.putSpaces(std::max(0, m_options.indent) * m_depth); }

    const Options& m_options;
    Output& m_output;
    std::vector<OpenNode> m_open;
    QString m_name; ///< the name in the last start tag, with the prefix, if any
    int m_depth = 1;
    bool m_isDoctypePending = false;
};

void Serializer::write(const QDomNode& root)
{
    const bool hasSiblings = !root.parentNode().isNull();
    m_depth = root.isDocument() ? 0 : 1;
    m_isDoctypePending = root.isDocument();
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

/// Writes the part of a node that comes before its children. \return the first child, or null if no children
/// are written
qt::MovableNode Serializer::begin(const QDomNode& node, bool isAfterText)
{
    if (m_isDoctypePending && m_open.size() == 1)
        writeDoctypeBefore(node);
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
        m_output.put(u"<![CDATA[", node.nodeValue(), u"]]>");
        break;
    case QDomNode::EntityReferenceNode:
        m_output.put(u'&', qt::localNameOf(node), u';');
        break;
    case QDomNode::EntityNode:
        writeEntity(node.toEntity(), m_output);
        break;
    case QDomNode::ProcessingInstructionNode:
        m_output.put(u"<?", qt::localNameOf(node), u' ', node.nodeValue(), u"?>\n");
        break;
    case QDomNode::CommentNode:
        writeComment(node, isAfterText);
        break;
    case QDomNode::DocumentTypeNode:
        writeDoctype(node.toDocumentType(), m_options.attributeOrder, m_output);
        break;
    case QDomNode::NotationNode:
        writeNotation(node.toNotation(), m_output);
        break;
    default:
        m_name.clear();
        return node.firstChild();
    }
    return {};
}

void Serializer::end(const OpenNode& open, bool isAfterText)
{
    if (!open.node.isElement())
        return;
    --m_depth;
    if (!isAfterText)
        indent();
    m_output.put(u"</", open.name, u'>');
}

void Serializer::endLineAfter(const QDomNode& node, const QDomNode& next)
{
    if (next.isText())
        return;
    if (node.isComment() || (node.isElement() && m_options.indent != -1))
        m_output.put(u'\n');
}

qt::MovableNode Serializer::beginElement(const QDomNode& node, bool isAfterText)
{
    if (!isAfterText)
        indent();
    m_name = qt::localNameOf(node);
    const QString prefix = node.prefix();
    const QString namespaceUri = node.namespaceURI();
    if (!namespaceUri.isNull() && !prefix.isEmpty())
        m_name = prefix + u':' + m_name;
    m_output.put(u'<', m_name);
    if (!namespaceUri.isNull()) {
        m_output.put(u" xmlns");
        if (!prefix.isEmpty())
            m_output.put(u':', prefix);
        m_output.put(u"=\"");
        m_output.putEscaped(namespaceUri, {true, false, false});
        m_output.put(u'"');
    }
    writeAttributes(node.toElement());
    qt::MovableNode child = node.firstChild();
    if (child.isNull()) {
        m_output.put(u"/>");
        return child;
    }
    m_output.put(u'>');
    if (!child.isText() && m_options.indent != -1)
        m_output.put(u'\n');
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
        m_output.put(u' ');
        writeAttribute(attribute, &declared);
    }
}

/// \param declared the prefixes that earlier attributes of the same element declared; null if the attribute
///        is written without its element
void Serializer::writeAttribute(const Attribute& attribute, QSet<QString>* declared)
{
    m_output.put(attribute.name, u"=\"");
    m_output.putEscaped(attribute.node.nodeValue(), kInAttribute);
    m_output.put(u'"');
    const QString namespaceUri = attribute.node.namespaceURI();
    if (namespaceUri.isNull())
        return;
    const QString prefix = attribute.node.prefix();
    if (attribute.node.parentNode().prefix() == prefix || (declared && declared->contains(prefix)))
        return;
    if (declared)
        declared->insert(prefix);
    m_output.put(u" xmlns:", prefix, u"=\"");
    m_output.putEscaped(namespaceUri, kInAttribute);
    m_output.put(u'"');
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
    m_output.put(u"<!--", text, text.endsWith(u'-') ? u" -->" : u"-->");
}

/// Writes the document type before `node`. Does nothing if `node` is the XML declaration, because the XML
/// declaration must precede the document type.
void Serializer::writeDoctypeBefore(const QDomNode& node)
{
    if (isXmlDeclaration(node))
        return;
    m_isDoctypePending = false;
    writeDoctype(m_open.front().node.toDocument().doctype(), m_options.attributeOrder, m_output);
}

void write(const QDomNode& node, const Options& options, const QTextCodec* codec, Output::Sink sink)
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
    serialize::write(node, options, codec,
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
    write(node, options, codecOf(node), [&all](const QChar* text, int length) { all.append(text, length); });
    return all;
}

} // namespace kelxml::serialize
