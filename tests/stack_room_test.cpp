// Loads and saves documents of every depth on small stacks. Each call must either work or be refused. A stack
// overflow would end the test program.

#include "KelXmlLib/kel.h"
#include "support/dom_fixture.h"
#include "support/patterns.h"

#include <QtCore/QThread>
#include <memory>
#include <sys/resource.h>
#include <ucontext.h>
#include <vector>

namespace
{

struct StackRoom : DomTest
{
    template <class Work>
    static void onStackOf(unsigned bytes, Work work)
    {
        const std::unique_ptr<QThread> thread(QThread::create(work));
        thread->setStackSize(bytes);
        thread->start();
        EXPECT_TRUE(thread->wait());
    }

    /// Runs `work` while the process has a lower limit for `resource`. \return the result of `work`
    template <class Work>
    static auto under(__rlimit_resource resource, rlim_t most, Work work)
    {
        rlimit usual = {};
        EXPECT_EQ(0, getrlimit(resource, &usual));
        const rlimit low = {most, usual.rlim_max};
        EXPECT_EQ(0, setrlimit(resource, &low));
        const auto result = work();
        EXPECT_EQ(0, setrlimit(resource, &usual));
        return result;
    }

    static HRESULT loadNested(int depth) { return newDocument()->loadXML(nested(depth).get(), nullptr); }
    static Bstr nested(int depth)
    {
        return Bstr(keltest::expand("{<a>}t{</a>}", depth).toStdWString().c_str());
    }

    /// Runs `work` while `kBytes` bytes of the stack are in use. \return the result of `work`
    template <std::size_t kBytes, class Work>
    static HRESULT withUsedStack(Work work)
    {
        volatile char used[kBytes] = {};
        return work() + used[0];
    }

    /// Copies the root of `document`, reads the copy, appends the copy to another document, and saves
    /// `document`. If the library refuses to save, an existing file must stay as it was.
    /// \return whether the document was saved
    bool use(const ComPtr<IXMLDOMDocument>& document)
    {
        ComPtr<IXMLDOMNode> copy;
        EXPECT_EQ(S_OK, rootOf(document)->cloneNode(1, copy.put()));
        EXPECT_EQ("t", kel::Node(*copy).text());
        const auto other = newDocument();
        create(*other, NODE_ELEMENT, L"e"); // without a tree, `other` would refuse children
        append(*other, *copy);
        EXPECT_TRUE(firstChildOf(*other));
        const QString path = pathOf("there.xml");
        write(path, "there");
        const bool isSaved = save(*document, path) == S_OK;
        EXPECT_EQ(isSaved, contentOf(path) != "there") << "only a successful save may write";
        return isSaved;
    }
};

// Must run on the main thread: the library must find the main thread's stack even if no file can be opened.
TEST_F(StackRoom, AFailedStackLookupRefusesNothingAndIsNotCached)
{
    EXPECT_EQ(S_FALSE, loadNested(0)); // lets a sanitizer open the files that it needs
    EXPECT_EQ(S_OK, under(RLIMIT_NOFILE, 0, [] { return loadNested(100); }));
    const Bstr text = nested(100);
    const auto document = newDocument();
    for (std::size_t nth = 1; nth < 40; ++nth) {
        const auto load = [&] {
            EXPECT_EQ(S_OK, document->loadXML(text.get(), nullptr)) << "allocation " << nth;
        };
        onStackOf(8 << 20, [&] {
            allocations::failsIn(nth, load);
            load();
        });
    }
}

TEST_F(StackRoom, EveryDepthIsLoadedOrRefusedOnEveryStack)
{
    const auto kept = documentOf(L"<kept/>");
    onStackOf(256 * 1024, [&kept] {
        const auto load = [&kept] { return kept->loadXML(Bstr(L"<!--k-->").get(), nullptr); };
        EXPECT_EQ(S_FALSE, withUsedStack<216 * 1024>(load));
    });
    EXPECT_EQ(L"kept", nameOf(*rootOf(kept))) << "a refused load must keep the earlier tree";

    const auto tryDepths = [this](unsigned kib, int first, int leastLoaded, int leastSaved) {
        auto deepest = documentOf(nested(2048).c_str()); // on a large stack
        onStackOf(kib * 1024, [&] {
            int deepestLoaded = 0, deepestSaved = 0;
            for (int depth = first; depth <= 2049; depth += depth < 64 || depth == 2048 ? 1 : 31) {
                const auto document = newDocument();
                if (document->loadXML(nested(depth).get(), nullptr) == S_OK) {
                    deepestLoaded = depth;
                    deepestSaved = use(document) ? depth : deepestSaved;
                }
            }
            EXPECT_GE(deepestLoaded, leastLoaded) << leastLoaded << " levels must load on " << kib << " KiB";
            EXPECT_GE(deepestSaved, leastSaved) << leastSaved << " levels must be saved on " << kib << " KiB";
            EXPECT_LE(deepestLoaded, 2048);
            EXPECT_EQ(leastSaved == 2048, use(deepest)) << "saving depth 2048 on " << kib << " KiB";
            deepest.reset(); // frees it on this stack
        });
    };
    tryDepths(512, 1, 700, 200);
    tryDepths(1024, 1, 1500, 450);
    tryDepths(8192, 2048, 2048, 2048);
}

TEST_F(StackRoom, TheMainThreadsStackLimitIsReadEachTime)
{
    const auto load = [&](rlim_t limit, int depth) {
        use(documentOf(nested(8).c_str())); // grows the stack now, because it cannot grow under `limit`
        return under(RLIMIT_STACK, limit, [depth] { return loadNested(depth); });
    };
    EXPECT_EQ(S_FALSE, withUsedStack<90 * 1024>([&] { return load(128 * 1024, 120); })) << "must be refused";
    EXPECT_EQ(S_FALSE, withUsedStack<1 << 20>([&] { return load(512 * 1024, 1); })) << "no stack is left";
    EXPECT_EQ(S_FALSE, load(100 * 1024, 200));
    EXPECT_EQ(S_OK, loadNested(120)) << "the usual limit must hold again";
}

TEST_F(StackRoom, AStackUnknownToTheSystemCountsAsSmall)
{
    static ucontext_t caller, coroutine;
    static HRESULT shallow, deep;
    std::vector<char> stack(256 * 1024);
    getcontext(&coroutine);
    coroutine.uc_stack.ss_sp = stack.data();
    coroutine.uc_stack.ss_size = stack.size();
    coroutine.uc_link = &caller;
    const auto load = [] { shallow = loadNested(10), deep = loadNested(300); };
    makecontext(&coroutine, load, 0);
    swapcontext(&caller, &coroutine);
    EXPECT_EQ(S_OK, shallow);
    EXPECT_EQ(S_FALSE, deep);
}

} // namespace
