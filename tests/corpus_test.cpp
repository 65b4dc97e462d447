// Every XML file of the machine's /usr/share through the library and through Qt directly: the same verdict,
// the same tree, the same bytes. The second half compares what the walk hands out with Qt's nodes one by one.

#include "support/dom_fixture.h"

#include <QtCore/QDirIterator>

namespace
{

class Corpus : public DomTest
{
protected:
    static void expectSameAttributes(IXMLDOMNode& ours, const QDomNode& theirs)
    {
        const auto map = mapOf(ours);
        const LONG length = lengthOf(*map);
        ASSERT_EQ(theirs.attributes().length(), length);
        for (LONG index = 0; index < length; ++index) {
            const auto attribute = itemOf(*map, index);
            const QString expected =
                theirs.toElement().attribute(QString::fromStdWString(nameOf(*attribute)));
            ASSERT_EQ(expected.toStdWString(), valueOf(*kel::asAttribute(*attribute)));
        }
    }

    /// Walks both trees side by side; files are shallow, and so is the recursion.
    static void expectSame(IXMLDOMNode& ours, const QDomNode& theirs)
    {
        DOMNodeType type = NODE_INVALID;
        ours.get_nodeType(&type);
        ASSERT_EQ(static_cast<int>(theirs.nodeType()), static_cast<int>(type));
        ASSERT_EQ(theirs.nodeName().toStdWString(), nameOf(ours));
        if (theirs.isElement())
            expectSameAttributes(ours, theirs);
        const auto list = listOf(ours);
        ComPtr<IXMLDOMNode> child;
        QDomNode expected = theirs.firstChild();
        for (; list->nextNode(child.put()) == S_OK; expected = expected.nextSibling()) {
            ASSERT_FALSE(expected.isNull());
            expectSame(*child, expected);
            if (HasFatalFailure())
                return;
        }
        ASSERT_TRUE(expected.isNull());
    }
};

TEST_F(Corpus, EveryFileGetsQtsVerdictTreeAndBytes)
{
    int accepted = 0;
    int refused = 0;
    QDirIterator files(QStringLiteral("/usr/share"), {QStringLiteral("*.xml")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        SCOPED_TRACE(path.toStdString());
        QDomDocument theirs;
        const auto ours = newDocument();
        const bool verdict = loadBoth(path, theirs, *ours);
        verdict ? ++accepted : ++refused;
        if (!verdict)
            continue;
        ASSERT_TRUE(savedByQt(theirs).toStdString() == saved(ours));
        expectSame(*ours, theirs);
        if (HasFatalFailure())
            return;
    }
    EXPECT_GE(accepted, 10) << "shared-mime-info and xkb-data bring at least these";
    std::printf("%d files accepted, %d refused, by both\n", accepted, refused);
}

} // namespace
