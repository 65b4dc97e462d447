// Several threads use separate documents at the same time, through vtables and by name. The threads share
// only what exists once per process: the type-library service, the registry of lists, a few flags, and Qt's
// null node. With the thread sanitizer, the test finds data races.

#include "support/call_by_name.h"
#include "support/call_machine.h"
#include "support/dom_fixture.h"
#include "support/type_library_file.h"

#include <thread>
#include <vector>

namespace
{

struct Threads : DomTest
{
    /// Repeatedly makes random calls and calls by name, and registers type libraries.
    void work(unsigned number, ITypeInfo& shared)
    {
        model::CallMachine machine(randomChoice(number));
        const QString path = pathOf(std::to_string(number).c_str());
        const GUID own{number, 0, 0, {}};
        for (int round = 0; round < 50; ++round) {
            for (int call = 0; call < 20; ++call)
                EXPECT_NO_THROW(machine.step()) << "thread " << number << ", round " << round;
            void* made = nullptr;
            EXPECT_EQ(S_OK, DllGetClassObject(CLSID_DOMDocument, IID_IXMLDOMDocument, &made));
            const auto one = ComPtr<IXMLDOMDocument>::adopt(static_cast<IXMLDOMDocument*>(made));
            const auto list = listOf(*one); // a list of a null node; all threads share the null node
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

TEST_F(Threads, WithSeparateDocumentsDoNotDisturbEachOther)
{
    const auto shared = keltest::typeInfo(L"" KEL_TYPE_LIBRARY, IID_IXMLDOMDocument);
    std::vector<std::thread> threads;
    for (unsigned number = 0; number < 4; ++number)
        threads.emplace_back([&, number] { work(number, *shared); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(2u, shared->AddRef()) << "the threads must have released all their references";
    shared->Release();
}

} // namespace
