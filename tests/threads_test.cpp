// Several threads at once, each with documents of its own, early and late bound. What they share is the
// type-library service and the counts of changes; the thread sanitizer watches.

#include "support/by_name.h"
#include "support/call_machine.h"
#include "support/dom_fixture.h"
#include "support/type_library_file.h"

#include <thread>
#include <vector>

namespace
{

struct Threads : DomTest
{
    /// Makes random calls, calls by name and registers again, over and over.
    void work(unsigned number, ITypeInfo& shared)
    {
        model::CallMachine machine(randomChoice(number));
        const QString path = pathOf(std::to_string(number).c_str());
        const GUID own{number, 0, 0, {}};
        for (int round = 0; round < 50; ++round) {
            for (int call = 0; call < 20; ++call)
                EXPECT_NO_THROW(machine.step());
            void* made = nullptr; // which may come while another thread makes the first `newDocument`
            EXPECT_EQ(S_OK, DllGetClassObject(CLSID_DOMDocument, IID_IXMLDOMDocument, &made));
            const auto one = ComPtr<IXMLDOMDocument>::adopt(static_cast<IXMLDOMDocument*>(made));
            const auto list = listOf(*one); // of a null node, which is the same in all threads
            EXPECT_EQ(S_FALSE, list->get_item(8, ComPtr<IXMLDOMNode>().put()));
            EXPECT_EQ(1, lengthOf(*listOf(*documentOf(L"<a/>"))));
            append(*one, *create(*one, NODE_ELEMENT, L"e"));
            EXPECT_EQ(S_OK, KelTypelib::RegisterTypeLib(LIBID_MSXML, L"" KEL_TYPE_LIBRARY));
            Variant result;
            EXPECT_EQ(S_OK, callByName(*one, L"documentElement", DISPATCH_PROPERTYGET, result));
            EXPECT_EQ(rootOf(one).get(), result.object().get());
            EXPECT_EQ(S_OK, save(*one, path));
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
    for (unsigned number = 0; number < 4; ++number)
        threads.emplace_back([&, number] { work(number, *shared); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(2u, shared->AddRef());
    shared->Release();
}

} // namespace
