// Loading and saving: every road in, every refusal, and what is on the disk afterwards.

#include "support/dom_fixture.h"

#include <fcntl.h>
#include <unistd.h>

namespace
{

using LoadSave = DomTest;

int openDescriptors()
{
    int count = 0;
    for (int descriptor = 0; descriptor < 256; ++descriptor)
        count += fcntl(descriptor, F_GETFD) != -1;
    return count;
}

TEST_F(LoadSave, WhatCannotBeParsedIsRefusedAndTheEarlierTreeStaysUnlessParsingBegan)
{
    const QString broken = pathOf("broken.xml");
    const QString good = pathOf("gr\xC3\xBC\xC3\x9F \xF0\x9F\x98\x80.xml");
    write(broken, "<a><b></a>");
    write(good, "<good/>");
    auto document = documentOf(L"<kept/>");
    const int descriptors = openDescriptors();

    const Bstr name(L"kept.xml");
    VARIANT byReference{};
    byReference.vt = VT_BSTR | VT_BYREF;
    BSTR text = name.get();
    byReference.pbstrVal = &text;
    VARIANT nullPath{};
    nullPath.vt = VT_BSTR;
    const Bstr empty(L"");
    for (const VARIANT& source :
         {byReference, nullPath, VARIANT{}, variantOf(3), variantOf(empty), variantOf(name)}) {
        VARIANT_BOOL success = 7;
        EXPECT_EQ(S_FALSE, document->load(source, &success)) << source.vt;
        EXPECT_EQ(VARIANT_FALSE, success);
    }
    VARIANT_BOOL success = 7;
    EXPECT_EQ(S_FALSE, load(document, pathOf(""), &success)); // a directory
    EXPECT_EQ(S_FALSE, document->loadXML(nullptr, &success));
    EXPECT_EQ(S_FALSE, document->loadXML(Bstr(L"").get(), &success));
    EXPECT_EQ("<kept/>\n", saved(document));

    EXPECT_EQ(S_FALSE, load(document, broken, &success));
    EXPECT_EQ(VARIANT_FALSE, success);
    EXPECT_EQ(std::string::npos, saved(document).find("kept"));
    EXPECT_EQ(S_OK, load(document, good, &success));
    EXPECT_EQ(VARIANT_TRUE, success);
    EXPECT_EQ(S_FALSE, document->loadXML(Bstr(L"<a").get(), &success));
    EXPECT_EQ(VARIANT_FALSE, success);
    EXPECT_EQ(S_OK, document->loadXML(Bstr(L"<a/>").get(), nullptr));
    EXPECT_EQ(descriptors, openDescriptors());
}

TEST_F(LoadSave, TextEndsAtItsFirstZeroWhateverTheLengthPrefixSays)
{
    auto document = newDocument();
    Bstr text;
    *text.put() = SysAllocStringLen(L"<a/>\0<b", 7);
    VARIANT_BOOL success = 7;
    EXPECT_EQ(S_OK, document->loadXML(text.get(), &success));
    EXPECT_EQ("<a/>\n", saved(document));
}

TEST_F(LoadSave, SaveKeepsTheDeclaredEncodingAndAddsNoDeclarationOfItsOwn)
{
    EXPECT_EQ("<a>\n    <b>\n        <c/>\n    </b>\n</a>\n<!--after-->\n",
              saved(documentOf(L"<a><b><c/></b></a><!--after-->")));
    EXPECT_EQ("<?xml version='1.0' encoding='ISO-8859-1'?>\n<a>\xE9</a>\n",
              saved(documentOf(L"<?xml version='1.0' encoding='ISO-8859-1'?><a>\u00e9</a>")));
    EXPECT_EQ("<a>\xC3\xA9\xF0\x9F\x98\x80</a>\n", saved(documentOf(L"<a>\u00e9\U0001F600</a>")));
    EXPECT_EQ("", saved(newDocument()));
}

TEST_F(LoadSave, SaveRefusesWhatItCannotOpenAndReplacesWhatIsThere)
{
    auto document = documentOf(L"<a/>");
    const QString path = pathOf("there.xml");
    write(path, QByteArray(5000, 'x'));
    EXPECT_EQ(S_OK, document->save(variantOf(Bstr(path.toStdWString().c_str()))));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ("<a/>\n", file.readAll());

    const Bstr missing(pathOf("no/such/directory.xml").toStdWString().c_str());
    const Bstr empty(L"");
    for (const VARIANT& destination : {variantOf(missing), variantOf(empty), variantOf(3), VARIANT{}})
        EXPECT_EQ(S_FALSE, document->save(destination));
    EXPECT_EQ(S_OK, document->save(variantOf(Bstr(L"/dev/full")))) << "a full disk is not reported";
}

} // namespace
