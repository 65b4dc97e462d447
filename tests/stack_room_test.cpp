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

    static Bstr nested(int depth)
    {
        const QString text =
            QStringLiteral("<a>").repeated(depth) + u't' + QStringLiteral("</a>").repeated(depth);
        return Bstr(text.toStdWString().c_str());
    }

    /// Loads, copies, reads, saves and frees; what is refused must leave an existing file as it was.
    /// \return whether it was loaded, and saved
    std::pair<bool, bool> useDocument(int depth)
    {
        const QString path = pathOf("there.xml");
        write(path, "there");
        const auto document = newDocument();
        const bool isLoaded = document->loadXML(nested(depth).get(), nullptr) == S_OK;
        if (isLoaded) {
            ComPtr<IXMLDOMNode> copy;
            EXPECT_EQ(S_OK, rootOf(document)->cloneNode(1, copy.put()));
            EXPECT_EQ(L"t", kel::textOf(*copy, &IXMLDOMNode::get_text));
        }
        const bool isSaved = save(*document, path) == S_OK;
        EXPECT_EQ(isSaved, contentOf(path) != "there");
        return {isLoaded, isSaved};
    }
};

// First, and on the first thread: what is known of a stack is remembered.
TEST_F(StackRoom, APassingShortageRefusesNothingAndIsNotRemembered)
{
    const Bstr text = nested(100);
    const auto document = newDocument();
    EXPECT_EQ(S_FALSE,
              document->loadXML(nullptr, nullptr)); // for a sanitizer to know the class: it needs files
    rlimit files = {};
    ASSERT_EQ(0, getrlimit(RLIMIT_NOFILE, &files));
    const rlimit none = {0, files.rlim_max};
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &none));
    EXPECT_EQ(S_OK, document->loadXML(text.get(), nullptr));
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &files));

    for (std::size_t nth = 1; nth < 40; ++nth) {
        onStackOf(8 << 20, [&] {
            const auto load = [&] {
                EXPECT_EQ(S_OK, document->loadXML(text.get(), nullptr)) << "allocation " << nth;
            };
            allocations::failsIn(nth, load);
            load();
        });
    }
}

TEST_F(StackRoom, EveryStackGetsTheResultOrARefusalAtEveryDepth)
{
    struct
    {
        unsigned kib;
        int from, loaded, saved;
    } const kLeast[] = {{512, 1, 700, 200}, {1024, 1, 1500, 450}, {8192, 2048, 2048, 2048}};
    for (const auto& least : kLeast) {
        onStackOf(least.kib * 1024, [&] {
            int deepestLoaded = 0;
            int deepestSaved = 0;
            for (int depth = least.from; depth <= 2049; depth += depth < 64 || depth == 2048 ? 1 : 31) {
                const auto [isLoaded, isSaved] = useDocument(depth);
                deepestLoaded = isLoaded ? depth : deepestLoaded;
                deepestSaved = isSaved && isLoaded ? depth : deepestSaved;
            }
            EXPECT_GE(deepestLoaded, least.loaded) << "on " << least.kib << " KiB";
            EXPECT_GE(deepestSaved, least.saved) << "on " << least.kib << " KiB";
            EXPECT_LE(deepestLoaded, 2048);
        });
    }
}

TEST_F(StackRoom, ALimitThatIsLoweredIsHeeded)
{
    rlimit usual = {};
    ASSERT_EQ(0, getrlimit(RLIMIT_STACK, &usual));
    const rlimit low = {512 * 1024, usual.rlim_max};
    const Bstr text(nested(1500).c_str());
    const auto load = [&] {
        useDocument(8); // what this uses of the stack is there then
        EXPECT_EQ(0, setrlimit(RLIMIT_STACK, &low));
        const HRESULT answer = newDocument()->loadXML(text.get(), nullptr);
        EXPECT_EQ(0, setrlimit(RLIMIT_STACK, &usual));
        return answer;
    };
    EXPECT_EQ(S_FALSE, load());
    const auto belowTheLimit = [&] {
        volatile char used[1 << 20] = {};
        return load() + used[0];
    };
    EXPECT_EQ(S_FALSE, belowTheLimit());
}

TEST_F(StackRoom, WhatWasBuiltOnALargeStackCanBeFreedOnASmallOne)
{
    auto document = newDocument();
    EXPECT_EQ(S_OK, document->loadXML(nested(2048).get(), nullptr));
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
    std::vector<char> stack(256 * 1024);
    getcontext(&coroutine);
    coroutine.uc_stack.ss_sp = stack.data();
    coroutine.uc_stack.ss_size = stack.size();
    coroutine.uc_link = &caller;
    makecontext(
        &coroutine,
        [] {
            shallow = newDocument()->loadXML(nested(10).get(), nullptr);
            deep = newDocument()->loadXML(nested(300).get(), nullptr);
        },
        0);
    swapcontext(&caller, &coroutine);
    EXPECT_EQ(S_OK, shallow);
    EXPECT_EQ(S_FALSE, deep);
}

} // namespace
