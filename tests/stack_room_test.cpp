// Documents at every depth on threads with small stacks: the result or a refusal, never an overrun. A crash
// here ends the test program.

#include "support/dom_fixture.h"

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

    static std::wstring nested(int depth)
    {
        const QString text =
            QStringLiteral("<a>").repeated(depth) + u't' + QStringLiteral("</a>").repeated(depth);
        return text.toStdWString();
    }

    /// Loads, copies, reads, saves and frees; what is refused must leave an existing file as it was.
    auto useDocument(int depth)
    {
        struct Done
        {
            bool loaded, stored;
        };
        const QString path = pathOf("there.xml");
        write(path, "there");
        auto document = newDocument();
        VARIANT_BOOL success = 7;
        const bool loaded = document->loadXML(Bstr(nested(depth).c_str()).get(), &success) == S_OK;
        EXPECT_EQ(loaded ? VARIANT_TRUE : VARIANT_FALSE, success);
        if (loaded) {
            ComPtr<IXMLDOMNode> copy;
            EXPECT_EQ(S_OK, rootOf(document)->cloneNode(1, copy.put()));
            EXPECT_EQ(L"t", textIn(*copy));
        }
        const bool stored = save(*document, path) == S_OK;
        EXPECT_EQ(stored, contentOf(path) != "there");
        return Done{loaded, stored};
    }
};

// First, and on the first thread: what is known of a stack is remembered.
TEST_F(StackRoom, APassingShortageRefusesNothingAndIsNotRemembered)
{
    const Bstr text(nested(100).c_str());
    rlimit files = {};
    ASSERT_EQ(0, getrlimit(RLIMIT_NOFILE, &files));
    const rlimit none = {0, files.rlim_max};
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &none));
    EXPECT_EQ(S_OK, newDocument()->loadXML(text.get(), nullptr));
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &files));

    for (std::size_t nth = 1; nth < 40; ++nth) {
        onStackOf(8 << 20, [&] {
            const auto document = newDocument();
            try {
                const allocations::FailAt at(nth);
                EXPECT_EQ(S_OK, document->loadXML(text.get(), nullptr)) << "allocation " << nth;
            } catch (const std::bad_alloc&) {}
            EXPECT_EQ(S_OK, document->loadXML(text.get(), nullptr)) << "allocation " << nth;
        });
    }
}

TEST_F(StackRoom, SmallStacksGetTheResultOrARefusalAtEveryDepth)
{
    for (const unsigned kib : {512u, 1024u}) {
        onStackOf(kib * 1024, [&] {
            int deepestLoaded = 0;
            int deepestStored = 0;
            for (int depth = 1; depth <= 2048; depth += depth < 64 ? 1 : 31) {
                const auto [loaded, stored] = useDocument(depth);
                deepestLoaded = loaded ? depth : deepestLoaded;
                deepestStored = stored && loaded ? depth : deepestStored;
            }
            EXPECT_GT(deepestLoaded, kib == 512 ? 700 : 1500) << "on " << kib << " KiB";
            EXPECT_GT(deepestStored, kib == 512 ? 200 : 450);
        });
    }
}

TEST_F(StackRoom, AUsualStackTakesTheBoundAndOneMoreIsRefused)
{
    onStackOf(8 << 20, [&] {
        const auto [loaded, stored] = useDocument(2048);
        EXPECT_TRUE(loaded && stored);
        EXPECT_FALSE(useDocument(2049).loaded);
    });
}

TEST_F(StackRoom, ALimitThatIsLoweredIsHeeded)
{
    rlimit usual = {};
    ASSERT_EQ(0, getrlimit(RLIMIT_STACK, &usual));
    const rlimit low = {512 * 1024, usual.rlim_max};
    ASSERT_EQ(0, setrlimit(RLIMIT_STACK, &low));
    const auto [loaded, stored] = useDocument(1500);
    ASSERT_EQ(0, setrlimit(RLIMIT_STACK, &usual));
    EXPECT_FALSE(loaded);
    EXPECT_TRUE(stored) << "an empty document";
}

TEST_F(StackRoom, WhatWasBuiltOnALargeStackCanBeFreedOnASmallOne)
{
    auto document = documentOf(nested(2048).c_str());
    EXPECT_EQ(L"t", textIn(*rootOf(document)));
    onStackOf(512 * 1024, [&] {
        EXPECT_EQ(S_FALSE, save(*document, pathOf("new.xml")));
        EXPECT_FALSE(QFile::exists(pathOf("new.xml")));
        ComPtr<IXMLDOMNode> copy;
        EXPECT_EQ(S_OK, rootOf(document)->cloneNode(1, copy.put()));
        document.reset();
    });
}

TEST_F(StackRoom, AStackTheSystemDoesNotKnowCountsAsSmall)
{
    static ucontext_t caller, coroutine;
    static HRESULT shallow, deep;
    static const std::wstring texts[] = {nested(10), nested(300)};
    std::vector<char> stack(256 * 1024);
    getcontext(&coroutine);
    coroutine.uc_stack.ss_sp = stack.data();
    coroutine.uc_stack.ss_size = stack.size();
    coroutine.uc_link = &caller;
    makecontext(
        &coroutine,
        [] {
            shallow = newDocument()->loadXML(Bstr(texts[0].c_str()).get(), nullptr);
            deep = newDocument()->loadXML(Bstr(texts[1].c_str()).get(), nullptr);
        },
        0);
    swapcontext(&caller, &coroutine);
    EXPECT_EQ(S_OK, shallow);
    EXPECT_EQ(S_FALSE, deep);
}

} // namespace
