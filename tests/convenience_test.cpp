// The optional helpers for C++ callers: who owns what after copies, moves and exceptions, and what a loop
// over a live list sees.

#include "KelXmlLib/files.h"

#include "support/dom_fixture.h"

#include <filesystem>
#include <vector>

namespace
{

struct Convenience : DomTest
{
    static ULONG referencesOn(IUnknown& object)
    {
        object.AddRef();
        return object.Release();
    }

    template <class Range>
    static std::wstring namesIn(const Range& range)
    {
        std::wstring names;
        for (const auto& node : range)
            names += nameOf(*node) + L' ';
        return names;
    }
};

/// The error that `action` throws; one of `S_OK` when it throws none.
template <class Action>
kel::Error errorOf(Action action)
{
    try {
        action();
    } catch (const kel::Error& error) {
        return error;
    }
    return kel::Error(S_OK);
}
template <class Action>
HRESULT thrownBy(Action action)
{
    return errorOf(action).code();
}

TEST_F(Convenience, ValuesHoldWhatTheyWereMadeFromAndConvertNothingElse)
{
    EXPECT_EQ(-7, Variant(-7).integer());
    EXPECT_EQ(std::int64_t{1} << 40, Variant(std::int64_t{1} << 40).integer());
    EXPECT_EQ(1.5, Variant(1.5).number());
    EXPECT_EQ(3.0, Variant(3).number());
    EXPECT_EQ(VARIANT_TRUE, Variant(true).get().boolVal);
    EXPECT_FALSE(Variant(false).truth());
    EXPECT_EQ(std::wstring_view(L"a\0b", 3), Variant(std::wstring(L"a\0b", 3)).text());
    EXPECT_EQ(std::wstring_view(), Variant(std::wstring_view()).text());
    EXPECT_EQ(VT_BSTR, Variant(static_cast<const wchar_t*>(nullptr)).type());
    EXPECT_EQ(L"taken", Variant(Bstr(L"taken")).text());
    VARIANT widest{};
    widest.vt = VT_UI4;
    widest.ulVal = 0xFFFFFFFFU;
    EXPECT_EQ(0xFFFFFFFFLL, Variant::adopt(widest).integer());

    const Variant text(L"5");
    EXPECT_EQ(DISP_E_TYPEMISMATCH, thrownBy([&] { text.integer(); }));
    EXPECT_EQ(DISP_E_TYPEMISMATCH, thrownBy([&] { text.number(); }));
    EXPECT_EQ(DISP_E_TYPEMISMATCH, thrownBy([&] { text.object(); }));
    EXPECT_EQ(DISP_E_TYPEMISMATCH, thrownBy([] { Variant(1).truth(); }));
    EXPECT_EQ(DISP_E_TYPEMISMATCH, thrownBy([] { Variant().text(); }));

    // What would quietly become a truth value or another number does not compile.
    static_assert(!std::is_constructible_v<Variant, const char*> &&
                  !std::is_constructible_v<Variant, void*> && !std::is_constructible_v<Variant, IDispatch*> &&
                  !std::is_constructible_v<Variant, VARIANT_BOOL> && !std::is_constructible_v<Variant, UINT>);
}

TEST_F(Convenience, ATextIsFreedOnceWhateverIsDoneWithItsValue)
{
    expectNothingLeft([] {
        Variant first(L"first");
        Variant copy(first);
        EXPECT_NE(first.get().bstrVal, copy.get().bstrVal);
        Variant moved(std::move(first));
        EXPECT_EQ(VT_EMPTY, first.type());
        first = copy;
        copy = std::move(moved);
        Variant& same = copy;
        copy = same;
        EXPECT_EQ(L"first", copy.text());
        copy = std::move(same);
        EXPECT_EQ(L"first", copy.text());
        EXPECT_EQ(VT_EMPTY, copy.put()->vt);
        *copy.put() = Variant(L"given out").detach();
        EXPECT_EQ(L"given out", copy.text());
        std::vector<Variant> values(3, copy);
        values.insert(values.begin(), first);
        EXPECT_EQ(L"first", values.front().text());
    });
}

TEST_F(Convenience, AnObjectHasOneReferenceForEachValueThatCarriesIt)
{
    const auto document = newDocument();
    const ULONG before = referencesOn(*document);
    {
        const Variant first(document);
        EXPECT_EQ(before + 1, referencesOn(*document));
        Variant copy(first);
        EXPECT_EQ(before + 2, referencesOn(*document));
        const Variant moved(std::move(copy));
        EXPECT_EQ(before + 2, referencesOn(*document));
        EXPECT_EQ(before + 3, referencesOn(*moved.object().get()));
        VARIANT unknown{};
        unknown.vt = VT_UNKNOWN;
        unknown.punkVal = ComPtr<IUnknown>(document.get()).detach();
        const Variant owner = Variant::adopt(unknown);
        const Variant copied(owner);
        EXPECT_EQ(before + 4, referencesOn(*document));
    }
    EXPECT_EQ(before, referencesOn(*document));
    EXPECT_FALSE(Variant(ComPtr<IDispatch>()).object());
}

TEST_F(Convenience, WithoutMemoryACopyThrowsAndBothSidesStayWhole)
{
    if (!allocations::kCanFail)
        GTEST_SKIP() << "this allocator cannot be made to fail";
    expectNothingLeft([] {
        const Variant source(L"source");
        Variant target(L"target");
        const allocations::FailAt failing(1);
        EXPECT_THROW(target = source, std::bad_alloc);
        EXPECT_EQ(L"target", target.text());
        EXPECT_EQ(L"source", source.text());
    });
}

TEST_F(Convenience, AnAnswerOfFalseIsAFailureUnlessItWasSaidToBeNone)
{
    EXPECT_TRUE(kel::check(S_OK));
    EXPECT_FALSE(kel::check(S_FALSE, kel::FalseIs::success));
    EXPECT_EQ(S_FALSE, thrownBy([] { kel::check(S_FALSE); }));
    EXPECT_STREQ("loading: could not be done", errorOf([] { kel::check(S_FALSE, "loading"); }).what());
    EXPECT_EQ(E_FAIL, thrownBy([] { kel::check(E_FAIL, kel::FalseIs::success); }));
    // A success code that nobody knows is no permission to go on as after `S_OK`.
    EXPECT_EQ(2, thrownBy([] { kel::check(2); }));
    EXPECT_STREQ("loading: out of memory", kel::Error(E_OUTOFMEMORY, "loading").what());
    EXPECT_STREQ("unknown answer 0x80001234", kel::Error(static_cast<HRESULT>(0x80001234U)).what());
}

TEST_F(Convenience, LoopsVisitEveryNodeAndKeepTheirListAlive)
{
    expectNothingLeft([] {
        const auto document = documentOf(L"<r a='1' b='2'><x/>text<y><x/></y><!--c--></r>");
        const auto root = rootOf(document);
        EXPECT_EQ(L"x #text y #comment ", namesIn(kel::childrenOf(*root)));
        EXPECT_EQ(L"x x ", namesIn(kel::elementsNamed(*document, L"x")));
        EXPECT_EQ(L"", namesIn(kel::elementsNamed(*root, L"none")));
        EXPECT_EQ(L"", namesIn(kel::attributesOf(*firstChildOf(*root))));
        EXPECT_EQ(4u, namesIn(kel::attributesOf(*root)).size());
        for (const auto& node : kel::attributesOf(*root)) {
            EXPECT_EQ(nameOf(*node) == L"a" ? L"1" : L"2", valueOf(*kel::asAttribute(*node)));
            EXPECT_FALSE(kel::asElement(*node));
        }
    });
    EXPECT_EQ(L"", namesIn(kel::each(ComPtr<IXMLDOMNodeList>())));
}

TEST_F(Convenience, ALoopCanBeRepeatedLeftByAnExceptionAndOutrunByChanges)
{
    expectNothingLeft([] {
        const auto document = documentOf(L"<r><a/><b/><c/><d/></r>");
        const auto root = rootOf(document);
        const auto list = listOf(*root);
        ComPtr<IXMLDOMNode> first;
        list->nextNode(first.put());
        EXPECT_EQ(L"a b c d ", namesIn(kel::each(list)));
        EXPECT_EQ(L"a b c d ", namesIn(kel::each(list)));
        EXPECT_THROW(
            {
                for (const auto& node : kel::each(list))
                    throw nameOf(*node);
            },
            std::wstring);

        // Every node that goes lets the next one move up.
        for (const auto& node : kel::each(list))
            root->removeChild(node.get(), nullptr);
        EXPECT_EQ(L"b d ", namesIn(kel::each(list)));
        // The list's cursor was nobody's but its owner's.
        EXPECT_EQ(S_OK, list->nextNode(first.put()));
        EXPECT_EQ(L"d", nameOf(*first));
    });
}

TEST_F(Convenience, FilesAreNamedInUtf8AndAFailureSaysWhichFileAndWhy)
{
    const std::string path = pathOf("h\xC3\xA9\xF0\x9F\x98\x80.xml").toStdString();
    kel::save(*documentOf(L"<r/>"), path.c_str());
    ASSERT_TRUE(std::filesystem::exists(path)) << "under other bytes";
    EXPECT_EQ(L"r", nameOf(*rootOf(kel::load(std::filesystem::path(path)))));

    write(QString::fromStdString(path), "<r>");
    const auto messageOf = [](auto action) { return std::string(errorOf(action).what()); };
    EXPECT_EQ("loading '" + path +
                  "': it cannot be read, or holds no well-formed XML within the library's limits",
              messageOf([&] { kel::load(path); }));
    EXPECT_EQ("loading '" + path + "/': there is no such file", messageOf([&] { kel::load(path + '/'); }));
    EXPECT_EQ("saving '" + path +
                  "/': it cannot be opened for writing, or the tree is too deep for the free stack",
              messageOf([&] { kel::save(*newDocument(), path + '/'); }));
    EXPECT_EQ("loading '\xFF': the path is not UTF-8", messageOf([] { kel::load("\xFF"); }));
}

TEST_F(Convenience, WhatIsSetIsReadAndARefusalIsAnError)
{
    expectNothingLeft([] {
        const auto document = newDocument();
        auto element = kel::appendElement(*document, L"r");
        kel::appendElement(*element, L"x", L"one");
        kel::appendElement(*element, L"y", L"two");
        EXPECT_EQ(L"onetwo", kel::textOf(*element));
        kel::setAttribute(*element, L"a", L"");
        EXPECT_EQ(L"", kel::attributeOf(*element, L"a", L"none"));
        const auto attribute = attributeOf(*element, L"a");
        kel::setText(*attribute, L"7");
        EXPECT_EQ(L"7", kel::attributeOf(*element, L"a"));
        EXPECT_EQ(S_FALSE, thrownBy([&] { kel::textOf(*attribute); }));

        element->appendChild(create(*document, NODE_ATTRIBUTE, L"odd").get(), nullptr);
        kel::setText(*element, L"all");
        EXPECT_EQ(L"all", kel::textOf(*element));
        EXPECT_EQ(L"#text ", namesIn(kel::childrenOf(*element)));
        const auto text = firstChildOf(*element);
        EXPECT_EQ(L"none", kel::attributeOf(*text, L"a", L"none"));
        EXPECT_EQ(E_NOINTERFACE, thrownBy([&] { kel::setAttribute(*text, L"a", 1); }));

        EXPECT_EQ(S_FALSE, thrownBy([&] { kel::appendElement(*element, L""); }));
        EXPECT_EQ(S_FALSE, thrownBy([&] {
                      for (int level = 0; level < 3000; ++level)
                          element = kel::appendElement(*element, L"deeper");
                  }));
    });
}

} // namespace
