// The prescan of a text: each limit exactly at it and one beyond, in content, in entities and in every
// encoding that Qt reads.

#include "guards/prescan.h"
#include "support/beside_qt.h"

#include <QtCore/QTextCodec>
#include <gtest/gtest.h>

using namespace keltest;
using namespace kelxml::guards;

TEST(PrescanTest, TextAtABoundIsNotRefusedAndOneBeyondIs)
{
    forEachLine(KEL_TESTS "prescan_bounds.txt", [](std::istringstream line) {
        SCOPED_TRACE(line.str());
        int most = 0;
        std::string wellFormed, text;
        std::getline(line >> most >> wellFormed >> std::ws, text);
        const QString at = expand(text, most);
        const QString beyond = expand(text, most + 1);
        EXPECT_TRUE(prescan(at).within && prescan(at.toUtf8()).within);
        EXPECT_FALSE(prescan(beyond).within || prescan(beyond.toUtf8()).within);
        QDomDocument document;
        EXPECT_EQ(wellFormed == "yes", document.setContent(at));
        EXPECT_LE(extentOf(document).depth, prescan(at).nesting);
    });
}

TEST(PrescanTest, MarkupInsideOtherThingsDoesNotCount)
{
    const QString bomb = expand("{<a>}{(}{<!ENTITY}", 5000);
    forEachLine(KEL_TESTS "prescan_nestings.txt", [&bomb](std::istringstream line) {
        SCOPED_TRACE(line.str());
        int nesting = 0;
        std::string text;
        std::getline(line >> nesting >> std::ws, text);
        const QString content = QString::fromStdString(text).replace(u'$', bomb);
        EXPECT_TRUE(prescan(content).within);
        EXPECT_EQ(nesting, prescan(content).nesting);
        EXPECT_EQ(!content.startsWith(QLatin1String("<r a")), QDomDocument().setContent(content));
    });
}

TEST(PrescanTest, NoEncodingThatQtReadsHidesNesting)
{
    int read = 0;
    for (const QByteArray& name : QTextCodec::availableCodecs()) {
        QTextCodec* const codec = QTextCodec::codecForName(name);
        const QString head = QString::fromLatin1("<?xml version='1.0' encoding='" + name + "'?>");
        const auto nested = [&](int depth) {
            return codec->fromUnicode(head + expand("{<a>}{</a>}", depth));
        };
        QDomDocument document;
        if (!codec || !document.setContent(nested(3)) || extentOf(document).depth != 3)
            continue;
        ++read;
        EXPECT_EQ(3, prescan(nested(3)).nesting) << name.constData();
        EXPECT_FALSE(prescan(nested(2049)).within) << name.constData();
    }
    EXPECT_GT(read, 100);
}
