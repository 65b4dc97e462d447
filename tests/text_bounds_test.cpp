// The look at a text: each bound exactly at it and one beyond, in content, in entities and in every encoding
// that Qt reads; and the look against what Qt makes of random text.

#include "dom/replay_device.h"
#include "dom/text_bounds.h"

#include <QtCore/QBuffer>
#include <QtCore/QStringList>
#include <QtCore/QTextCodec>
#include <QtXml/QDomDocument>
#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <set>

using namespace kelxml::bounds;

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

Look lookAtBytes(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    EXPECT_TRUE(buffer.open(QIODevice::ReadOnly));
    const Look look = lookAt(buffer);
    EXPECT_EQ(0, buffer.pos());
    return look;
}

int depthOf(const QDomNode& node)
{
    int deepest = 0;
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling())
        deepest = std::max(deepest, depthOf(child));
    return deepest + (node.isElement() ? 1 : 0);
}

/// Begins with `start`, then goes on with one byte for ever, and counts what was taken.
class EndlessDevice : public QIODevice
{
public:
    EndlessDevice(const char* start, char more) : m_start(start), m_more(more)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    qint64 taken() const { return m_taken; }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        for (qint64 i = 0; i < size; ++i)
            data[i] = pos() + i < m_start.size() ? m_start[static_cast<int>(pos() + i)] : m_more;
        m_taken += size;
        return size;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    const QByteArray m_start;
    const char m_more;
    qint64 m_taken = 0;
};

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

TEST(TextBounds, TextAtABoundIsNotRefusedAndOneBeyondIs)
{
    for (const Bound& bound : kBounds) {
        SCOPED_TRACE(bound.name);
        const QString at = expand(bound.pattern, bound.most).leftJustified(bound.length);
        const QString beyond = expand(bound.pattern, bound.most + 1).leftJustified(bound.length);
        EXPECT_TRUE(lookAt(at).within);
        EXPECT_TRUE(lookAtBytes(at.toUtf8()).within);
        EXPECT_FALSE(lookAt(beyond).within);
        EXPECT_FALSE(lookAtBytes(beyond.toUtf8()).within);
        QDomDocument document;
        EXPECT_EQ(bound.wellFormed, document.setContent(at));
        EXPECT_LE(depthOf(document), lookAt(at).nesting);
    }
}

TEST(TextBounds, MarkupInsideOtherThingsDoesNotCount)
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
        const Look look = lookAt(content);
        EXPECT_TRUE(look.within);
        EXPECT_EQ(row.nesting, look.nesting);
        QDomDocument document;
        EXPECT_EQ(!content.startsWith(text("<r a")), document.setContent(content));
    }
}

TEST(TextBounds, NoEncodingThatQtReadsHidesNesting)
{
    int read = 0;
    const auto check = [&read](const QByteArray& small, const QByteArray& deep) {
        QDomDocument document;
        if (!document.setContent(small) || depthOf(document) != 3)
            return;
        ++read;
        EXPECT_TRUE(lookAtBytes(small).within);
        EXPECT_EQ(3, lookAtBytes(small).nesting);
        EXPECT_FALSE(lookAtBytes(deep).within);
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

TEST(TextBounds, RandomTextIsNeitherRefusedNorDeeperThanTheLookSays)
{
    const QStringList pieces = text("<a>~</a>~<b c='&e;'>~</b>~<d/>~x~&e;~&f;~&g;~%p;~]>~<r>~</r>~'~\"~--~"
                                    "<!--<a>-->~<![CDATA[<a>]]>~<?p <a>?>~<!ELEMENT r ((a|b)*,c)>~"
                                    "<!ATTLIST r k CDATA '&e;'>~<!ENTITY e 'y'>~<!ENTITY e '<a><b/></a>'>~"
                                    "<!ENTITY f '<a>&e;</a>'>~<!ENTITY f '&#60;a>'>~<!ENTITY f '</a><a>'>~"
                                    "<!ENTITY g SYSTEM 's'>~<!ENTITY % p '<!ENTITY g \"<d/>\">'>")
                                   .split(u'~');
    const QStringList starts = text("<r>~<!DOCTYPE r [~<?xml version='1.0'?><r>~").split(u'~');
    int accepted = 0;
    for (unsigned seed = 1; seed <= 6000; ++seed) {
        std::mt19937 random(seed);
        const auto below = [&random](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
        QString content = starts[below(starts.size())];
        for (int left = below(16); left > 0; --left)
            content += pieces[below(pieces.size())];
        content += below(2) ? text("]><r>&e;&f;</r>") : text("</r>");

        const Look look = lookAt(content);
        const Look bytesLook = lookAtBytes(content.toUtf8());
        QDomDocument document;
        const bool good = document.setContent(content);
        const int depth = depthOf(document);
        accepted += good ? 1 : 0;
        ASSERT_TRUE(look.within && bytesLook.within) << content.toStdString();
        ASSERT_EQ(look.nesting, bytesLook.nesting) << content.toStdString();
        ASSERT_LE(depth, look.nesting) << content.toStdString();
        if (good && !content.contains(u'(')) {
            ASSERT_EQ(depth, look.nesting) << content.toStdString();
        }
    }
    EXPECT_GT(accepted, 200);
}

TEST(TextBounds, DeviceWithoutEndIsLeftAtTheFirstErrorOrRefused)
{
    for (const char* start : {"", "plain", "<r></r>&"}) {
        EndlessDevice source(start, '\0');
        kelxml::ReplayDevice replay(source);
        EXPECT_TRUE(lookAt(replay).within) << start; // the parser stops there as well
        EXPECT_LT(source.taken(), 64 * 1024) << start;
        QDomDocument document;
        EXPECT_FALSE(document.setContent(&replay)) << start;
        EXPECT_LT(source.taken(), 64 * 1024) << start;
    }
    EndlessDevice blanks("<r/>", ' ');
    EXPECT_FALSE(lookAt(blanks).within);
    EXPECT_LT(blanks.taken(), kMaxUnsizedLength + 64 * 1024);
}
