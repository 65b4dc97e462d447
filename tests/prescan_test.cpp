// The prescan checks a text before Qt parses the text. It accepts a text that reaches a limit, and refuses a
// text that exceeds a limit by one: in content, in entities, and in every encoding that Qt reads.

#include "parsing/prescanner.h"
#include "support/compare_with_qt.h"

#include <QtCore/QTextCodec>
#include <gtest/gtest.h>

using namespace keltest;
using namespace kelxml::limits;
using namespace kelxml::parsing;

TEST(PrescanTest, RefusesATextOnlyBeyondALimitAndCountsOnlyMarkup)
{
    forEachRow(KEL_TESTS "prescan.txt", [](Row row) {
        SCOPED_TRACE(row.where);
        int limit = 0, nesting = 0;
        std::string wellFormed, text;
        std::getline(row >> limit >> nesting >> wellFormed >> std::ws, text);
        const QString at = expand(text, limit);
        const QString beyond = expand(text, limit + 1);
        for (const Prescan seen : {prescan(at), prescan(at.toUtf8())})
            EXPECT_EQ(nesting, seen.isWithinLimits() ? seen.nesting : -1) << "nesting; -1 if refused";
        for (const Prescan seen : {prescan(beyond), prescan(beyond.toUtf8())})
            EXPECT_EQ(limit == 0, seen.isWithinLimits()) << "the text must be refused unless the limit is 0";
        QDomDocument document;
        EXPECT_EQ(wellFormed == "yes", document.setContent(at));
        EXPECT_LE(extentOf(document).depth, nesting);
    });
}

// Pretends that the document as written is almost too long for a `QString`, because a test cannot load a
// document of this length. In an attribute, Qt replaces each quote with `&quot;`, which is longer.
TEST(PrescanTest, EntityTextTooLongForOneQStringIsRefused)
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
        for (int way = 0; codec && way < 4; ++way) { // with or without a declaration and a byte order mark
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
            EXPECT_EQ(3, prescan(nested(3)).nesting) << name.constData() << ", way " << way;
            EXPECT_FALSE(prescan(nested(2049)).isWithinLimits()) << name.constData() << ", way " << way;
        }
    }
    EXPECT_GT(read, 100) << "Qt must read more than 100 of the encoded texts";
}
