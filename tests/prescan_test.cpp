// The look at a text: each limit exactly at it and one beyond, in content, in entities and in every encoding
// that Qt reads.

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

QString times(int n, const char* piece)
{
    return text(piece).repeated(n);
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

QString nest(int n)
{
    return expand("{<a>}{</a>}", n);
}

int depthOf(const QDomNode& node)
{
    int deepest = 0;
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling())
        deepest = std::max(deepest, depthOf(child));
    return deepest + (node.isElement() ? 1 : 0);
}

constexpr bool kGood = true;
constexpr bool kBad = false;

struct Bound
{
    const char* name;
    int most;
    bool wellFormed;
    const char* pattern; ///< of a text that goes as far as n
    int length = 0;      ///< to be filled up with blanks
};

const Bound kBounds[] = {
    {"elements", 2048, kGood, "{<a>}{</a>}"},
    {"elements never closed", 2048, kBad, "{<a>}"},
    {"elements in an unused value", 2048, kGood, "<!DOCTYPE r [<!ENTITY e '{<a>}{</a>}'>]><r/>"},
    {"characters that become elements in a value", 2048, kGood, "<!DOCTYPE r [<!ENTITY e '{&#60;a>}'>]><r/>"},
    {"a value used at depth", 2048, kGood,
     "<!DOCTYPE r [<!ENTITY e '{<a>|500}{</a>|500}'>]>{<a>|-500}&e;{</a>|-500}"},
    {"values that open and don't close", 2048, kBad, "<!DOCTYPE r [<!ENTITY e '<a>'>]><a>{&e;|-1}</a>"},
    {"start tags from a value and what follows it", 2048, kBad,
     "<!DOCTYPE r [<!ENTITY e '<'>]><a>{&e;a>|-1}</a>"},
    {"a value from a parameter entity", 2048, kGood,
     "<!DOCTYPE r [<!ENTITY % p '<!ENTITY e \"{<a>|-1}{</a>|-1}\">'>%p;]><a>&e;</a>"},
    {"parentheses", 2048, kGood, "<!DOCTYPE r [<!ELEMENT r {(}b{)}>]><r/>"},
    {"parentheses never closed", 2048, kBad, "<!DOCTYPE r [<!ELEMENT r {(}"},
    {"entities declared", 4096, kGood, "<!DOCTYPE r [{<!ENTITY e@ ''>}]><r/>"},
    {"parameter entities declared", 4096, kBad, "<!DOCTYPE r [{<!ENTITY % p@ ''>}]><r/>"},
    {"one entity declared again and again", 4096, kGood, "<!DOCTYPE r [{<!ENTITY e ''>}]><r/>"},
    {"entity text in content", 1'000'000, kGood,
     "<!DOCTYPE r [<!ENTITY e '{x|1000}'><!ENTITY f '{y|-991000}'>]><a>{&e;|990}</a>"},
    {"entity text in an attribute", 1'000'000, kGood,
     "<!DOCTYPE r [<!ENTITY e '{x|1000}'><!ENTITY f '{y|-991000}'>]><r a='{&e;|990}'/>"},
    {"entity text in a default", 1'000'000, kGood,
     "<!DOCTYPE r [<!ENTITY e '{x|1000}'><!ENTITY f '{y|-991000}'><!ATTLIST r a CDATA '{&e;|990}'>]><r/>"},
    {"entity text in a value", 1'000'000, kGood,
     "<!DOCTYPE r [<!ENTITY % p '{x|1000}'><!ENTITY e '{%p;|990}'><!ENTITY f '{y|-991000}'>]><r/>"},
    {"entity text in a longer text", 2'000'000, kGood,
     "<!DOCTYPE r [<!ENTITY e '{x|1000}'><!ENTITY f '{y|-1901000}'>]><a>{&e;|1900}</a>", 200'000},
};

} // namespace

TEST(PrescanTest, TextAtABoundIsNotRefusedAndOneBeyondIs)
{
    for (const Bound& bound : kBounds) {
        SCOPED_TRACE(bound.name);
        const QString at = expand(bound.pattern, bound.most).leftJustified(bound.length);
        const QString beyond = expand(bound.pattern, bound.most + 1).leftJustified(bound.length);
        EXPECT_TRUE(prescan(at).within);
        EXPECT_TRUE(prescan(at.toUtf8()).within);
        EXPECT_FALSE(prescan(beyond).within);
        EXPECT_FALSE(prescan(beyond.toUtf8()).within);
        QDomDocument document;
        EXPECT_EQ(bound.wellFormed, document.setContent(at));
        EXPECT_LE(depthOf(document), prescan(at).nesting);
    }
}

TEST(PrescanTest, MarkupInsideOtherThingsDoesNotCount)
{
    const QString bomb = times(3000, "<a>") + times(3000, "(") + times(5000, "<!ENTITY");
    const struct
    {
        const char* before;
        const char* behind;
        int nesting;
    } kRows[] = {
        {"<r><!--", "--></r>", 1},
        {"<!--", "--><r/>", 1},
        {"<r/><!--", "-->", 1},
        {"<r><![CDATA[", "]]]></r>", 1},
        {"<r><?p ", "?></r>", 1},
        {"<r><?p '", "?><b/></r>", 2},
        {"<!DOCTYPE r [<!--", "-->]><r/>", 1},
        {"<!DOCTYPE r [<?p ", "?>]><r/>", 1},
        {"<!DOCTYPE r SYSTEM '", "'><r/>", 1},
        {"<!DOCTYPE r [<!NOTATION n PUBLIC '", "'>]><r/>", 1},
        {"<!DOCTYPE r [<!ENTITY e '<b><!--", "--></b>'>]><r>&e;</r>", 2},
        {"<!DOCTYPE r [<!ENTITY e '<![CDATA['>]><r>&e;", "]]></r>", 1},
        {"<r a='", "'/>", 1}, // not well-formed: the parser stops at the first '<'
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.before);
        const QString content = text(row.before) + bomb + text(row.behind);
        const Prescan seen = prescan(content);
        EXPECT_TRUE(seen.within);
        EXPECT_EQ(row.nesting, seen.nesting);
        QDomDocument document;
        EXPECT_EQ(!content.startsWith(text("<r a")), document.setContent(content));
    }
}

TEST(PrescanTest, NoEncodingThatQtReadsHidesNesting)
{
    int read = 0;
    const auto check = [&read](const QByteArray& small, const QByteArray& deep) {
        QDomDocument document;
        if (!document.setContent(small) || depthOf(document) != 3)
            return;
        ++read;
        EXPECT_TRUE(prescan(small).within);
        EXPECT_EQ(3, prescan(small).nesting);
        EXPECT_FALSE(prescan(deep).within);
    };
    std::set<QTextCodec*> codecs;
    for (const QByteArray& name : QTextCodec::availableCodecs()) {
        QTextCodec* const codec = QTextCodec::codecForName(name);
        if (!codec || !codecs.insert(codec).second)
            continue;
        SCOPED_TRACE(name.constData());
        const QString head = text("<?xml version='1.0' encoding='") + QString::fromLatin1(name) + text("'?>");
        for (const auto flag : {QTextCodec::DefaultConversion, QTextCodec::IgnoreHeader}) {
            const auto encode = [codec, flag](const QString& content) {
                QTextCodec::ConverterState state(flag);
                return codec->fromUnicode(content.constData(), content.size(), &state);
            };
            check(encode(head + nest(3)), encode(head + nest(2049)));
            check(encode(nest(3)), encode(nest(2049)));
        }
    }
    EXPECT_GT(read, 100);
}
