// The prescan of a text: each limit exactly at it and one beyond, in content, in entities and in every
// encoding that Qt reads.

#include "guards/prescan.h"

#include <QtCore/QByteArray>
#include <QtCore/QStringList>
#include <QtCore/QTextCodec>
#include <QtXml/QDomDocument>
#include <algorithm>
#include <gtest/gtest.h>
#include <set>

using namespace kelxml::guards;

namespace
{

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// `{piece}` stands for n pieces, `{piece|7}` for 7 and `{piece|-7}` for n - 7; `@` for a piece's number.
QString expand(const char* pattern, int n)
{
    QStringList parts = text(pattern).split(u'{');
    QString all = parts.takeFirst();
    for (const QString& part : parts) {
        const QString group = part.section(u'}', 0, 0);
        const int given = group.section(u'|', 1).toInt();
        for (int i = 0; i < (given > 0 ? given : n + given); ++i)
            all += group.section(u'|', 0, 0).replace(u'@', QString::number(i));
        all += part.section(u'}', 1);
    }
    return all;
}

int depthOf(const QDomNode& node)
{
    int deepest = 0;
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling())
        deepest = std::max(deepest, depthOf(child));
    return deepest + (node.isElement() ? 1 : 0);
}

struct Bound
{
    int most;
    bool isWellFormed;
    const char* pattern; ///< of a text that goes as far as n
    int length = 0;      ///< to be filled up with blanks
};

const Bound kBounds[] = {
    // Elements, also in values that are not used, that are used at depth, and that end in the middle of a
    // tag.
    {2048, true, "{<a>}{</a>}"},
    {2048, false, "{<a>}"},
    {2048, true, "<r><b></b><!----><![CDATA[]] ]]]><?xm d?>{<a>|-1}{</a>|-1}</r>"},
    {2048, true, "<!DOCTYPE r [<!ENTITY e '{<a>}{</a>}'>]><r/>"},
    {2048, true, "<!DOCTYPE r [<!ENTITY e '{&#60;a>}'>]><r/>"},
    {2048, true, "<!DOCTYPE r [<!ENTITY e '{<a>|500}{</a>|500}'>]>{<a>|-500}&e;{</a>|-500}"},
    {2048, false, "<!DOCTYPE r [<!ENTITY e '<a>'>]><a>{&e;|-1}</a>"},
    {2048, false, "<!DOCTYPE r [<!ENTITY e '<'>]><a>{&e;a>|-1}</a>"},
    {2048, true, "<!DOCTYPE r [<!ENTITY % p '<!ENTITY e \"{<a>|-1}{</a>|-1}\">'>%p;]><a>&e;</a>"},
    // Parentheses.
    {2048, true, "<!DOCTYPE r [<!ELEMENT r {(}b{)}>]><r/>"},
    {2048, false, "<!DOCTYPE r [<!ELEMENT r {(}"},
    // Declarations of entities.
    {4096, true, "<!DOCTYPE r [{<!ENTITY e@ ''>}]><r/>"},
    {4096, false, "<!DOCTYPE r [{<!ENTITY % p@ ''>}]><r/>"},
    {4096, true, "<!DOCTYPE r [{<!ENTITY e ''>}]><r/>"},
    // The text of entities, in content, in an attribute, in a default, in a value, in another's, and in a
    // longer text.
    {1'000'000, true, "<!DOCTYPE r [<!ENTITY e '{x|1000}'><!ENTITY f '{y|-991000}'>]><a>{&e;|990}</a>"},
    {1'000'000, true, "<!DOCTYPE r [<!ENTITY e '{x|1000}'><!ENTITY f '{y|-991000}'>]><r a='{&e;|990}'/>"},
    {1'000'000, true,
     "<!DOCTYPE r [<!ENTITY e '{x|1000}'><!ENTITY f '{y|-991000}'><!ATTLIST r a CDATA '{&e;|990}'>]><r/>"},
    {1'000'000, true,
     "<!DOCTYPE r [<!ENTITY % p '{x|1000}'><!ENTITY e '{%p;|990}'><!ENTITY f '{y|-991000}'>]><r/>"},
    {1'000'000, false, // Qt has a bound of its own there
     "<!DOCTYPE r [<!ENTITY e '{x|1000}'><!ENTITY f '{&e;|990}'><!ENTITY g '{y|-996940}'>]><a>&f;</a>"},
    {2'000'000, true, "<!DOCTYPE r [<!ENTITY e '{x|1000}'><!ENTITY f '{y|-1901000}'>]><a>{&e;|1900}</a>",
     200'000},
};

} // namespace

TEST(PrescanTest, TextAtABoundIsNotRefusedAndOneBeyondIs)
{
    for (const Bound& bound : kBounds) {
        SCOPED_TRACE(bound.pattern);
        const QString at = expand(bound.pattern, bound.most).leftJustified(bound.length);
        const QString beyond = expand(bound.pattern, bound.most + 1).leftJustified(bound.length);
        EXPECT_TRUE(prescan(at).within && prescan(at.toUtf8()).within);
        EXPECT_FALSE(prescan(beyond).within || prescan(beyond.toUtf8()).within);
        QDomDocument document;
        EXPECT_EQ(bound.isWellFormed, document.setContent(at));
        EXPECT_LE(depthOf(document), prescan(at).nesting);
    }
}

TEST(PrescanTest, MarkupInsideOtherThingsDoesNotCount)
{
    const QString bomb = expand("{<a>}{(}{<!ENTITY}", 5000);
    const std::pair<const char*, int> kNestings[] = {
        // $ stands for the bomb
        {"<r><!--$--></r>", 1},
        {"<!--$--><r/>", 1},
        {"<r/><!--$-->", 1},
        {"<r><![CDATA[$]]]></r>", 1},
        {"<r><?p $?></r>", 1},
        {"<r><?xyz '$?><b/></r>", 2},
        {"<!DOCTYPE r [<!--$-->]><r/>", 1},
        {"<!DOCTYPE r [<?p $?>]><r/>", 1},
        {"<!DOCTYPE r SYSTEM '$'><r/>", 1},
        {"<!DOCTYPE r [<!NOTATION n PUBLIC '$'>]><r/>", 1},
        {"<!DOCTYPE r [<!ENTITY e '<b><!--$--></b>'>]><r>&e;</r>", 2},
        {"<!DOCTYPE r [<!ENTITY e '<![CDATA['>]><r>&e;$]]></r>", 1},
        {"<r a='$'/>", 1}, // not well-formed: the parser stops at the first '<'
    };
    for (const auto& [pattern, nesting] : kNestings) {
        SCOPED_TRACE(pattern);
        const QString content = text(pattern).replace(u'$', bomb);
        EXPECT_TRUE(prescan(content).within);
        EXPECT_EQ(nesting, prescan(content).nesting);
        EXPECT_EQ(!content.startsWith(text("<r a")), QDomDocument().setContent(content));
    }
}

TEST(PrescanTest, NoEncodingThatQtReadsHidesNesting)
{
    int read = 0;
    std::set<QTextCodec*> codecs;
    for (const QByteArray& name : QTextCodec::availableCodecs()) {
        QTextCodec* const codec = QTextCodec::codecForName(name);
        if (!codec || !codecs.insert(codec).second)
            continue;
        SCOPED_TRACE(name.constData());
        const QString head = text("<?xml version='1.0' encoding='") + QString::fromLatin1(name) + text("'?>");
        for (const auto flag : {QTextCodec::DefaultConversion, QTextCodec::IgnoreHeader}) {
            for (const QString& start : {head, QString()}) {
                const auto nested = [&](int depth) {
                    const QString content = start + expand("{<a>}{</a>}", depth);
                    QTextCodec::ConverterState state(flag);
                    return codec->fromUnicode(content.constData(), content.size(), &state);
                };
                QDomDocument document;
                if (!document.setContent(nested(3)) || depthOf(document) != 3)
                    continue;
                ++read;
                EXPECT_TRUE(prescan(nested(3)).within);
                EXPECT_EQ(3, prescan(nested(3)).nesting);
                EXPECT_FALSE(prescan(nested(2049)).within);
            }
        }
    }
    EXPECT_GT(read, 100);
}
