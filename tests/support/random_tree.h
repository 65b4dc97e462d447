// Random trees that calls of Qt's DOM can build but no parser can, and a check that our serializer and Qt
// write the same bytes for a tree.

#pragma once

#include "serialize/serialize.h"
#include "support/require.h"
#include "support/saved_by_qt.h"

#include <vector>

inline QByteArray sortedBytes(QByteArray bytes)
{
    std::sort(bytes.begin(), bytes.end());
    return bytes;
}

inline void requireSameBytesAsQt(const QDomNode& node)
{
    using namespace kelxml::serialize;
    for (const int indent : {-1, 0, 1, 4})
        requireEqual(bytesOf(node, {indent, AttributeOrder::ofQt}), savedByQt(node, indent),
                     "with Qt's order of attributes, the serializer writes Qt's bytes");
    requireEqual(sortedBytes(bytesOf(node)), sortedBytes(savedByQt(node, 4)),
                 "with sorted attributes, only the order of the bytes differs from Qt's");
    if (node.isDocument())
        requireEqual(textOf(node, {1, AttributeOrder::ofQt}), node.toDocument().toString(1),
                     "textOf returns the text that Qt returns");
}

/// A document and its nodes. Some of the nodes are not in the document's tree.
class RandomTree
{
public:
    explicit RandomTree(Choose choose) : m_choose(std::move(choose))
    {
        if (m_choose(3) == 0)
            m_document.setContent(QStringLiteral(
                "<!DOCTYPE r PUBLIC \"it's\" 'http://x/'[<!NOTATION n SYSTEM \"'\"><!NOTATION m "
                "PUBLIC 'p'><!ENTITY e SYSTEM 'x' NDATA n><!ENTITY f PUBLIC 'p' 's'>]><r/>"));
        m_nodes.push_back(m_document);
        if (m_choose(2) == 0)
            m_document.insertBefore(
                m_document.createProcessingInstruction(QStringLiteral("xml"), any(kEncodings)),
                m_document.firstChild());
    }

    void grow()
    {
        const QDomNode node = make();
        if (node.isNull())
            return;
        QDomNode parent = m_nodes[m_choose(m_nodes.size())];
        // A child of an attribute must not be in `m_nodes`: when the attribute's value changes, Qt deletes
        // the child, even if a `QDomNode` still refers to the child.
        if (!parent.isAttr())
            m_nodes.push_back(node);
        if (node.isAttr() && parent.isElement())
            m_choose(2) == 0 ? parent.toElement().setAttributeNode(node.toAttr())
                             : parent.toElement().setAttributeNodeNS(node.toAttr());
        else if (!parent.isDocument() || node.isElement() || m_choose(4) == 0)
            put(node, parent);
    }

    void requireSameBytesAsQt() const
    {
        for (const QDomNode& node : m_nodes)
            ::requireSameBytesAsQt(node);
        ::requireSameBytesAsQt(m_document.doctype());
    }

private:
    // Lists of words, separated by vertical bars. The word "null" means a null string.
    static constexpr const char* kNames =
        "a|b|p:a|q:b|xmlns|xmlns:p|p:|:|a=\"1\" b|<&>\"|]]>|xml|\xC3\xA9|%e";
    static constexpr const char* kSpaces = "null||urn:x|<\"&\r\n\t]]>";
    static constexpr const char* kTexts =
        "null||x| \n|a<b>c&d\"e'f|]]>|]|--|-|?>|\r\n\t|\xC3\xA9\xD0\x96\xE4\xB8\xAD|"
        "\xF0\x9F\x98\x80|%&#&amp;\"|\x01\xEF\xBF\xBF";
    static constexpr const char* kEncodings =
        "encoding='none such'|x='' encoding = \"ISO-8859-1\"|encoding='UTF-16'|encoding=\"windows-1251\"|"
        "encoding='Shift_JIS'|encoding='ISO-2022-JP'|encoding='UTF-7'|encoding=''";

    QString any(const char* words)
    {
        const QStringList all = QString::fromUtf8(words).split(u'|');
        const QString word = all.at(static_cast<int>(m_choose(static_cast<std::size_t>(all.size()))));
        return word == QLatin1String("null") ? QString() : word;
    }
    QString text() { return m_choose(16) == 0 ? QString(QChar(0xD800 + m_choose(0x800))) : any(kTexts); }

    QDomNode make()
    {
        const unsigned kind = m_choose(12);
        QDomNode qualified = m_document.createAttributeNS(any(kSpaces), any(kNames));
        qualified.setNodeValue(text());
        return kind == 0   ? m_document.createTextNode(text())
               : kind == 1 ? m_document.createCDATASection(text())
               : kind == 2 ? m_document.createComment(text())
               : kind == 3 ? m_document.createProcessingInstruction(any(kNames), text())
               : kind == 4 ? m_document.createEntityReference(any(kNames))
               : kind == 5 ? m_document.createDocumentFragment()
               : kind == 6 ? m_document.createAttribute(any(kNames))
               : kind == 7 ? qualified
               : kind == 8 ? m_document.createElementNS(any(kSpaces), any(kNames))
               : kind == 9 ? change(m_nodes[m_choose(m_nodes.size())])
                           : QDomNode(m_document.createElement(any(kNames)));
    }

    /// Changes a node. \return a null node, because there is no new node to add to the tree
    QDomNode change(QDomNode& node)
    {
        QDomElement element = node.toElement();
        element.setAttribute(any(kNames), text());
        if (m_choose(4) == 0)
            element.setTagName(any(kNames));
        if (m_choose(4) == 0)
            node.setPrefix(any(kNames));
        if (!node.isAttr())
            node.setNodeValue(text());
        return {};
    }

    /// Appends the node, unless that would create a cycle.
    static void put(const QDomNode& node, QDomNode parent)
    {
        for (QDomNode above = parent; !above.isNull(); above = above.parentNode())
            if (above == node)
                return;
        parent.appendChild(node);
    }

    Choose m_choose;
    QDomDocument m_document{QStringLiteral("type")};
    std::vector<QDomNode> m_nodes;
};
