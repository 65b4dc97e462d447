// The prescan of a text: each limit exactly at it and one beyond, in content, in entities and in every
// encoding that Qt reads.

#include "parsing/prescanner.h"
#include "support/beside_qt.h"

#include <QtCore/QTextCodec>
#include <gtest/gtest.h>

using namespace keltest;
using namespace kelxml::limits;
using namespace kelxml::parsing;

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
            EXPECT_TRUE(seen.isWithinLimits() && seen.nesting == nesting) << seen.nesting;
        for (const Prescan seen : {prescan(beyond), prescan(beyond.toUtf8())})
            EXPECT_EQ(most == 0, seen.isWithinLimits());
        QDomDocument document;
        EXPECT_EQ(wellFormed == "yes", document.setContent(at));
        EXPECT_LE(extentOf(document).depth, nesting);
    });
}

// Quotes in an attribute become `&quot;` on the way. Near this bound the document's own length is claimed.
TEST(PrescanTest, EntityTextIsBeyondWhereOneTextOrAttributeOfQtsCannotHoldIt)
{
    const auto seen = [](const QString& inAttribute, const QString& inContent) {
        QString text = QStringLiteral("<!DOCTYPE r [<!ENTITY e '%1'><!ENTITY q '%2'>]><r a='%3'>%4</r>");
        text = text.arg(QString(1'000'000, u'x'), QString(1'000'000, u'"'), inAttribute, inContent);
        return Prescanner([text]() mutable { return std::exchange(text, {}); },
                          [] { return (qint64{1} << 30) - 10'000'000; })
            .document()
            .exceeded;
    };
    const auto times = [](int count, const char* reference) {
        return QString::fromLatin1(reference).repeated(count);
    };
    const QString nine = times(9, "&e;");
    EXPECT_EQ(Limit::None, seen(nine, nine + QStringLiteral("<b/>") + nine));
    EXPECT_EQ(Limit::None, seen(times(1, "&q;"), times(9, "&q;")));
    EXPECT_EQ(Limit::TextLength, seen({}, times(10, "&e;")));
    EXPECT_EQ(Limit::TextLength, seen(times(2, "&q;"), {}));
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
            EXPECT_FALSE(prescan(nested(2049)).isWithinLimits()) << name.constData();
        }
    }
    EXPECT_GT(read, 100);
}
