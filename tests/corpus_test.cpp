// Every XML file of the machine's /usr/share through the library and through Qt directly: the same verdict,
// the same tree, the same bytes.

#include "support/dom_fixture.h"

#include <QtCore/QDirIterator>

namespace
{

struct Corpus : DomTest
{
    /// Every node with what it has; files are shallow, and so is the recursion.
    static std::wstring treeOf(IXMLDOMNode& node)
    {
        DOMNodeType type = NODE_INVALID;
        node.get_nodeType(&type);
        std::wstring all = std::to_wstring(type) + nameOf(node);
        for (const auto& attribute : kel::attributesOf(node))
            all += L' ' + nameOf(*attribute) + L'=' + valueOf(*kel::asAttribute(*attribute));
        for (const auto& child : kel::childrenOf(node))
            all += L'<' + treeOf(*child) + L'>';
        return all;
    }
    static std::wstring treeOf(const QDomNode& node)
    {
        QString all = QString::number(node.nodeType()) + node.nodeName();
        const QDomNamedNodeMap attributes = node.attributes();
        for (int index = 0; index < attributes.length(); ++index)
            all += u' ' + attributes.item(index).nodeName() + u'=' + attributes.item(index).nodeValue();
        std::wstring withChildren = all.toStdWString();
        for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling())
            withChildren += L'<' + treeOf(child) + L'>';
        return withChildren;
    }
};

TEST_F(Corpus, EveryFileGetsQtsVerdictTreeAndBytes)
{
    int accepted = 0;
    QDirIterator files(QStringLiteral("/usr/share"), {QStringLiteral("*.xml")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        SCOPED_TRACE(path.toStdString());
        QDomDocument theirs;
        const auto ours = newDocument();
        if (!loadBoth(path, theirs, *ours))
            continue;
        ++accepted;
        ASSERT_TRUE(savedByQt(theirs).toStdString() == saved(ours));
        ASSERT_TRUE(treeOf(theirs) == treeOf(*ours));
    }
    EXPECT_GE(accepted, 10) << "shared-mime-info and xkb-data bring at least these";
}

} // namespace
