// The prescan of a text: each limit exactly at it and one beyond, in content, in entities and in every
// encoding that Qt reads.

#include "guards/prescan.h"
#include "support/beside_qt.h"

#include <QtCore/QTextCodec>
#include <gtest/gtest.h>

using namespace keltest;
using namespace kelxml::guards;

TEST(PrescanTest, TextAtABoundIsNotRefusedAndOneBeyondIsAndOnlyMarkupCounts)
{
    forEachRow(KEL_TESTS "prescan.txt", [](Row line) {
        SCOPED_TRACE(line.where);
        int most = 0, nesting = 0;
        std::string wellFormed, text;
        std::getline(line >> most >> nesting >> wellFormed >> std::ws, text);
        const QString at = expand(text, most);
        const QString beyond = expand(text, most + 1);
        for (const Prescan seen : {prescan(at), prescan(at.toUtf8())})
            EXPECT_TRUE(seen.isWithin() && seen.nesting == nesting) << seen.nesting;
        for (const Prescan seen : {prescan(beyond), prescan(beyond.toUtf8())})
            EXPECT_EQ(most == 0, seen.isWithin());
        QDomDocument document;
        EXPECT_EQ(wellFormed == "yes", document.setContent(at));
        EXPECT_LE(extentOf(document).depth, nesting);
    });
}

TEST(PrescanTest, NoEncodingThatQtReadsHidesNesting)
{
    int read = 0;
    for (const QByteArray& name : QTextCodec::availableCodecs()) {
        QTextCodec* const codec = QTextCodec::codecForName(name);
        const QString head = QString::fromLatin1("<?xml version='1.0' encoding='" + name + "'?>");
        for (int way = 0; codec && way < 4; ++way) { // without a declaration, without a byte order mark
            const auto nested = [&](int depth) {
                const QString text = (way < 2 ? head : QString()) + expand("{<a>}{</a>}", depth);
                QTextCodec::ConverterState state(way % 2 ? QTextCodec::IgnoreHeader
                                                         : QTextCodec::DefaultConversion);
                return codec->fromUnicode(text.constData(), text.size(), &state);
            };
            QDomDocument document;
            if (!document.setContent(nested(3)) || extentOf(document).depth != 3)
                continue;
            ++read;
            EXPECT_EQ(3, prescan(nested(3)).nesting) << name.constData();
            EXPECT_FALSE(prescan(nested(2049)).isWithin()) << name.constData();
        }
    }
    EXPECT_GT(read, 100);
}
