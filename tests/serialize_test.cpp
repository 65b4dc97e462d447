// The serializer writes the bytes that Qt writes, except for the order of attributes.

#include "serialize/attributes.h"
#include "support/random_tree.h"
#include "support/seeds.h"

#include <QtCore/QThread>
#include <gtest/gtest.h>
#include <memory>

using namespace kelxml::serialize;

namespace
{

QDomDocument documentOf(const char* xml, bool isNamespaceAware = false)
{
    QDomDocument document;
    EXPECT_TRUE(document.setContent(QByteArray(xml), isNamespaceAware));
    return document;
}

TEST(Serialize, TreesBuiltByCallsAreWrittenAsQtWritesThem)
{
    forEachSeed(0, 1000, [](unsigned seed) {
        RandomTree tree(randomChoice(seed));
        for (unsigned step = 0; step < seed % 50; ++step)
            tree.grow();
        tree.requireSameBytesAsQt();
    });
}

TEST(Serialize, AttributesAreSortedByTheirWrittenNames)
{
    const auto plain = documentOf("<r \xC3\xA9='5' b='2' a.c='1' a='0' B='\"]]>'/>");
    EXPECT_EQ("<r B=\"&quot;]]&gt;\" a=\"0\" a.c=\"1\" b=\"2\" \xC3\xA9=\"5\"/>\n",
              bytesOf(plain).toStdString());
    const auto spaces = documentOf("<r xmlns:p='u' xmlns:q='v'><a q:b='2' p:b='1' o='0' p:a='3'/></r>", true);
    EXPECT_EQ("<r><a o=\"0\" p:a=\"3\" xmlns:p=\"u\" p:b=\"1\" q:b=\"2\" xmlns:q=\"v\"/></r>",
              bytesOf(spaces, {-1}).toStdString());
    const auto type =
        documentOf("<!DOCTYPE r [<!ENTITY d SYSTEM 'd'><!ENTITY c SYSTEM 'c'><!NOTATION b SYSTEM 'b'>"
                   "<!NOTATION a SYSTEM 'a'>]><r/>");
    EXPECT_EQ("<!DOCTYPE r [\n<!NOTATION a SYSTEM 'a'>\n<!NOTATION b SYSTEM 'b'>\n<!ENTITY c SYSTEM 'c'>\n"
              "<!ENTITY d SYSTEM 'd'>\n]>\n<r/>\n",
              bytesOf(type).toStdString());
}

TEST(Serialize, EveryAttributeOfALargeElementIsWrittenWhateverItsName)
{
    QDomDocument document;
    for (const char* const space : {static_cast<const char*>(nullptr), "", "u\"rn"})
        for (const char* const pattern : {"a%1", "p:%1", "p%1:a", "a%1=\"\" b", "xmlns:p%1"}) {
            QDomElement element = document.createElementNS(QString::fromUtf8(space), QStringLiteral("p:e"));
            for (int count = 1; count <= 200; ++count) {
                const QString name = QString::fromUtf8(pattern).arg(count);
                element.setAttributeNS(QString::fromUtf8(count % 2 ? space : nullptr), name,
                                       QStringLiteral("<\""));
                ASSERT_EQ(element.attributes().count(), attributesOf(element).size()) << pattern << count;
            }
            ASSERT_NO_THROW(requireSameBytesAsQt(element)) << pattern << ", namespace " << space;
        }
    QDomElement element = document.createElement(QStringLiteral("e"));
    for (int count = 0; count < 3000; ++count)
        element.setAttribute(QString::number(count), count);
    EXPECT_EQ(sortedBytes(savedByQt(element, 4)), sortedBytes(bytesOf(element, {4, AttributeOrder::ofQt})));
}

TEST(Serialize, ADeepTreeIsWrittenOnASmallStack)
{
    constexpr int kDepth = 5'000;
    const QByteArray xml = QByteArray("<a>").repeated(kDepth) + QByteArray("</a>").repeated(kDepth);
    auto document = documentOf("<a/>");
    QDomNode innermost = document.documentElement();
    for (int depth = 1; depth < kDepth; ++depth)
        innermost = innermost.appendChild(document.createElement(QStringLiteral("a")));
    innermost.appendChild(document.createTextNode(QString()));
    QByteArray written;
    const std::unique_ptr<QThread> thread(QThread::create([&] { written = bytesOf(document, {-1}); }));
    thread->setStackSize(256 * 1024);
    thread->start();
    EXPECT_TRUE(thread->wait());
    EXPECT_EQ(xml, written);
}

} // namespace
