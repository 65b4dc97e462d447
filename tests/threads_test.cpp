// Several threads at once, each with documents of its own, early and late bound. What they share is the
// type-library service and the count of document changes; the thread sanitizer watches.

#include "support/dom_fixture.h"

#include <atomic>
#include <thread>
#include <vector>

namespace
{

class Threads : public DomTest
{
protected:
    /// Builds, mixes two documents, asks by name, and registers anew, over and over.
    void work(int number, std::atomic<int>& finished)
    {
        const std::wstring library = QString::fromUtf8(KEL_TYPE_LIBRARY).toStdWString();
        for (int round = 0; round < 50; ++round) {
            auto one = documentOf(L"<a x='1'><b/><c>t</c></a>");
            auto two = documentOf(L"<q/>");
            auto moved = firstChildOf(*rootOf(one));
            ComPtr<IXMLDOMNodeList> list;
            rootOf(one)->get_childNodes(list.put());
            rootOf(two)->appendChild(moved.get(), nullptr);
            LONG length = 0;
            list->get_length(&length);
            EXPECT_EQ(1, length);

            EXPECT_EQ(S_OK, KelTypelib::RegisterTypeLib(LIBID_MSXML, library.c_str()));
            Bstr name(L"documentElement");
            wchar_t* names = name.get();
            DISPID member = 0;
            EXPECT_EQ(S_OK, two->GetIDsOfNames(IID_IUnknown, &names, 1, 0, &member));
            DISPPARAMS nothing{};
            VARIANT result{};
            EXPECT_EQ(S_OK, two->Invoke(member, IID_IUnknown, 0, DISPATCH_PROPERTYGET, &nothing, &result,
                                        nullptr, nullptr));
            EXPECT_EQ(rootOf(two).get(), result.pdispVal);
            result.pdispVal->Release();
            const Bstr path(pathOf(std::to_string(number).c_str()).toStdWString().c_str());
            EXPECT_EQ(S_OK, two->save(variantOf(path)));
            EXPECT_EQ(S_OK, one->load(variantOf(path), nullptr));
        }
        ++finished;
    }
};

TEST_F(Threads, WithDocumentsOfTheirOwnDoNotDisturbEachOther)
{
    std::atomic<int> finished{0};
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number)
        threads.emplace_back([&, number] { work(number, finished); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(4, finished);
}

} // namespace
