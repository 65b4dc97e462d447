// Documents at every depth on threads with small stacks: the result or a refusal, never an overrun. A crash
// here ends the test program.

#include "KelXmlLib/kel.h"
#include "support/dom_fixture.h"
#include "support/lines.h"

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

    /// Does `work` under a lower limit. \return what it answers
    template <class Work>
    static auto under(__rlimit_resource resource, rlim_t most, Work work)
    {
        rlimit usual = {};
        EXPECT_EQ(0, getrlimit(resource, &usual));
        const rlimit low = {most, usual.rlim_max};
        EXPECT_EQ(0, setrlimit(resource, &low));
        const auto answer = work();
        EXPECT_EQ(0, setrlimit(resource, &usual));
        return answer;
    }

    static HRESULT loadNested(int depth) { return newDocument()->loadXML(nested(depth).get(), nullptr); }
    static Bstr nested(int depth)
    {
        return Bstr(keltest::expand("{<a>}t{</a>}", depth).toStdWString().c_str());
    }

    /// Copies, reads, appends and saves; a refusal must leave an existing file as it was. \return whether it
    /// was saved
    bool use(const ComPtr<IXMLDOMDocument>& document)
    {
        ComPtr<IXMLDOMNode> copy;
        EXPECT_EQ(S_OK, rootOf(document)->cloneNode(1, copy.put()));
        EXPECT_EQ("t", kel::Node(*copy).text());
        const auto other = newDocument();
        create(*other, NODE_ELEMENT, L"e"); // with which there is a tree
        append(*other, *copy);
        EXPECT_TRUE(firstChildOf(*other));
        const QString path = pathOf("there.xml");
        write(path, "there");
        const bool isSaved = save(*document, path) == S_OK;
        EXPECT_EQ(isSaved, contentOf(path) != "there");
        return isSaved;
    }
};

// First, and on the first thread: what is known of a stack is remembered.
TEST_F(StackRoom, APassingShortageRefusesNothingAndIsNotRemembered)
{
    EXPECT_EQ(S_FALSE, loadNested(0)); // for a sanitizer to know the classes: it needs files
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

TEST_F(StackRoom, EveryStackGetsTheResultOrARefusalAtEveryDepth)
{
    const auto kept = documentOf(L"<kept/>");
    onStackOf(256 * 1024, [&kept] {
        volatile char used[216 * 1024] = {};
        EXPECT_EQ(S_FALSE, kept->loadXML(Bstr(L"<!--k-->").get(), nullptr) + used[0]);
    });
    EXPECT_EQ(L"kept", nameOf(*rootOf(kept))) << "at no depth, there was no room for the rest";

    struct
    {
        unsigned kib;
        int from, loaded, saved;
    } const kLeast[] = {{512, 1, 700, 200}, {1024, 1, 1500, 450}, {8192, 2048, 2048, 2048}};
    for (const auto& least : kLeast) {
        auto deepest = documentOf(nested(2048).c_str()); // on a large stack
        onStackOf(least.kib * 1024, [&] {
            int deepestLoaded = 0, deepestSaved = 0;
            for (int depth = least.from; depth <= 2049; depth += depth < 64 || depth == 2048 ? 1 : 31) {
                const auto document = newDocument();
                if (document->loadXML(nested(depth).get(), nullptr) == S_OK) {
                    deepestLoaded = depth;
                    deepestSaved = use(document) ? depth : deepestSaved;
                }
            }
            EXPECT_GE(deepestLoaded, least.loaded) << "on " << least.kib << " KiB";
            EXPECT_GE(deepestSaved, least.saved) << "on " << least.kib << " KiB";
            EXPECT_LE(deepestLoaded, 2048);
            EXPECT_EQ(least.saved == 2048, use(deepest));
            deepest.reset(); // frees it on this stack
        });
    }
}

TEST_F(StackRoom, TheFirstStacksLimitIsAskedForEachTime)
{
    const auto load = [&](rlim_t limit, int depth) {
        use(documentOf(nested(8).c_str())); // what this uses of the stack is there then
        return under(RLIMIT_STACK, limit, [depth] { return loadNested(depth); });
    };
    const auto deeper = [&] {
        volatile char used[90 * 1024] = {};
        return load(128 * 1024, 120) + used[0];
    };
    EXPECT_EQ(S_FALSE, deeper());
    const auto belowTheLimit = [&] {
        volatile char used[1 << 20] = {};
        return load(512 * 1024, 1) + used[0];
    };
    EXPECT_EQ(S_FALSE, belowTheLimit());
    EXPECT_EQ(S_FALSE, load(100 * 1024, 200));
    EXPECT_EQ(S_OK, loadNested(120)) << "the limit is high again";
}

TEST_F(StackRoom, AStackTheSystemDoesNotKnowCountsAsSmall)
{
    static ucontext_t caller, coroutine;
    static HRESULT shallow, deep;
    std::vector<char> stack(256 * 1024);
    getcontext(&coroutine);
    coroutine.uc_stack.ss_sp = stack.data();
    coroutine.uc_stack.ss_size = stack.size();
    coroutine.uc_link = &caller;
    makecontext(
        &coroutine,
        [] {
            shallow = loadNested(10);
            deep = loadNested(300);
        },
        0);
    swapcontext(&caller, &coroutine);
    EXPECT_EQ(S_OK, shallow);
    EXPECT_EQ(S_FALSE, deep);
}

} // namespace
