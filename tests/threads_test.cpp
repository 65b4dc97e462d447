// Several threads at once, each with documents of its own, early and late bound. What they share is the
// type-library service and the count of document changes; the thread sanitizer watches.

#include "support/by_name.h"
#include "support/dom_fixture.h"
#include "support/type_library_file.h"

#include <thread>
#include <vector>

namespace
{

struct Threads : DomTest
{
    /// Builds, mixes two documents, asks by name, and registers anew, over and over.
    void work(int number, ITypeInfo& shared)
    {
        const QString path = pathOf(std::to_string(number).c_str());
        GUID own{};
        own.Data4[0] = static_cast<BYTE>(number);
        for (int round = 0; round < 50; ++round) {
            void* made = nullptr; // which may come while another thread makes the first `newDocument`
            EXPECT_EQ(S_OK, DllGetClassObject(CLSID_DOMDocument, IID_IXMLDOMDocument, &made));
            const auto two = ComPtr<IXMLDOMDocument>::adopt(static_cast<IXMLDOMDocument*>(made));
            append(*two, *create(*two, NODE_ELEMENT, L"q"));
            const auto one = documentOf(L"<a x='1'><b/><c>t</c></a>");
            const auto list = listOf(*rootOf(one));
            append(*rootOf(two), *firstChildOf(*rootOf(one)));
            EXPECT_EQ(1, lengthOf(*list));

            EXPECT_EQ(S_OK, KelTypelib::RegisterTypeLib(LIBID_MSXML, L"" KEL_TYPE_LIBRARY));
            Variant result;
            EXPECT_EQ(S_OK, callByName(*two, L"documentElement", DISPATCH_PROPERTYGET, result));
            EXPECT_EQ(rootOf(two).get(), result.object().get());
            EXPECT_EQ(S_OK, save(*two, path));
            EXPECT_EQ(S_OK, load(*one, path, nullptr));

            wchar_t registered[KelTypelib::PathCapacity];
            EXPECT_EQ(S_OK, KelTypelib::RegisterTypeLib(own, L"" KEL_TYPE_LIBRARY));
            EXPECT_EQ(S_OK, KelTypelib::GetTlbFilePath(own, registered));
            EXPECT_TRUE(keltest::typeInfo(registered, IID_IXMLDOMNode));
            EXPECT_EQ(S_OK, KelTypelib::UnRegisterTypeLib(own));
            for (int copy = 0; copy < 20; ++copy)
                EXPECT_EQ(63, keltest::idOf(*ComPtr<ITypeInfo>(&shared), L"loadxml"));
        }
    }
};

TEST_F(Threads, WithDocumentsOfTheirOwnDoNotDisturbEachOther)
{
    const auto shared = keltest::typeInfo(L"" KEL_TYPE_LIBRARY, IID_IXMLDOMDocument);
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number)
        threads.emplace_back([&, number] { work(number, *shared); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(2u, shared->AddRef());
    shared->Release();
}

} // namespace
