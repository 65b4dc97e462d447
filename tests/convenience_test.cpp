// The optional helpers for C++ callers, beside what the tour shows: who owns what after copies, moves and
// exceptions, what a loop over a live list sees, what is an error.

#include "KelXmlLib/files.h"

#include "support/dom_fixture.h"

#include <filesystem>
#include <limits>

namespace
{

using Convenience = DomTest;

template <class Range>
std::wstring namesIn(const Range& range)
{
    std::wstring names;
    for (const auto& node : range)
        names += kel::textOf(*node, &IXMLDOMNode::get_nodeName) + L' ';
    return names;
}

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

TEST_F(Convenience, ValuesHoldWhatTheyWereMadeFromAndConvertNothingElse)
{
    EXPECT_EQ(std::int64_t{1} << 40, Variant(std::int64_t{1} << 40).integer());
    EXPECT_EQ(1.5, Variant(1.5).number());
    EXPECT_EQ(-3.0, Variant(-3).number());
    EXPECT_EQ(VARIANT_TRUE, Variant(true).get().boolVal);
    EXPECT_FALSE(Variant(false).truth());
    EXPECT_EQ(std::wstring_view(L"a\0b", 3), Variant(std::wstring(L"a\0b", 3)).text());
    EXPECT_EQ(L"", Variant(std::wstring_view()).text());
    EXPECT_EQ(VT_BSTR, Variant(static_cast<const wchar_t*>(nullptr)).type());
    EXPECT_EQ(L"taken", Variant(Bstr(L"taken")).text());
    EXPECT_FALSE(Variant(ComPtr<IDispatch>()).object());
    VARIANT widest = Variant(-1).get();
    widest.vt = VT_UI4;
    EXPECT_EQ(0xFFFFFFFFLL, Variant::adopt(widest).integer());

    EXPECT_EQ(DISP_E_TYPEMISMATCH, errorOf([] { Variant(L"5").number(); }).code());
    EXPECT_EQ(DISP_E_TYPEMISMATCH, errorOf([] { Variant(L"5").object(); }).code());
    EXPECT_EQ(DISP_E_TYPEMISMATCH, errorOf([] { Variant(1).truth(); }).code());
    EXPECT_EQ(DISP_E_TYPEMISMATCH, errorOf([] { Variant().text(); }).code());

    // What would quietly become a truth value or another number does not compile.
    static_assert(!std::is_constructible_v<Variant, const char*> &&
                  !std::is_constructible_v<Variant, void*> && !std::is_constructible_v<Variant, IDispatch*> &&
                  !std::is_constructible_v<Variant, VARIANT_BOOL> && !std::is_constructible_v<Variant, UINT>);
}

TEST_F(Convenience, AValueFreesItsTextOrReferenceOnceWhateverIsDoneWithIt)
{
    expectNothingLeft([] {
        auto document = newDocument();
        VARIANT unknown = Variant(document).detach();
        unknown.vt = VT_UNKNOWN;
        for (const Variant& value : {Variant(L"text"), Variant(document), Variant::adopt(unknown)}) {
            Variant first(value), copy(first), moved(std::move(first));
            EXPECT_EQ(VT_EMPTY, first.type());
            first = copy;
            copy = std::move(moved);
            Variant& same = copy;
            copy = same;
            copy = std::move(same);
            EXPECT_EQ(value.type(), copy.type());
            EXPECT_EQ(VT_EMPTY, first.put()->vt);
            *first.put() = copy.detach();
            if (value.type() == VT_BSTR && allocations::kCanFail) {
                allocations::failsIn(1, [&] { EXPECT_THROW(copy = first, std::bad_alloc); });
                EXPECT_EQ(VT_EMPTY, copy.type());
                EXPECT_EQ(L"text", first.text());
            }
        }
        EXPECT_EQ(0u, document.detach()->Release());
    });
}

TEST_F(Convenience, LoopsKeepTheirListAliveAndCanBeRepeatedAndOutrunByChanges)
{
    const auto document = documentOf(L"<r a='1' b='2'><x/>text<y><x/></y><!--c--></r>");
    const auto root = rootOf(document);
    EXPECT_EQ(L"", namesIn(kel::each(ComPtr<IXMLDOMNodeList>())));
    EXPECT_EQ(4u, namesIn(kel::attributesOf(*root)).size());
    const auto list = listOf(*root);
    ComPtr<IXMLDOMNode> next;
    list->nextNode(next.put());
    EXPECT_EQ(L"x #text y #comment ", namesIn(kel::each(list)));
    // Every node that goes lets the next one move up.
    for (const auto& node : kel::childrenOf(*root))
        root->removeChild(node.get(), nullptr);
    EXPECT_EQ(L"#text #comment ", namesIn(kel::each(list)));
    // The list's cursor was nobody's but its owner's.
    EXPECT_EQ(S_OK, list->nextNode(next.put()));
    EXPECT_EQ(L"#comment", nameOf(*next));
}

TEST_F(Convenience, FilesAreNamedInUtf8AndAFailureSaysWhichFileAndWhy)
{
    const std::string path = pathOf("h\xC3\xA9\xF0\x9F\x98\x80.xml").toStdString();
    kel::save(*documentOf(L"<r/>"), path.c_str());
    ASSERT_TRUE(std::filesystem::exists(path)) << "under other bytes";
    EXPECT_EQ(L"r", nameOf(*rootOf(kel::load(path))));

    const auto messageOf = [](auto action) { return std::string(errorOf(action).what()); };
    write(QString::fromStdString(path), "<r>");
    EXPECT_EQ("loading '" + path +
                  "': it cannot be read, or holds no well-formed XML within the library's limits",
              messageOf([&] { kel::load(path); }));
    EXPECT_EQ("loading '" + path + "/': there is no such file", messageOf([&] { kel::load(path + '/'); }));
    EXPECT_EQ("saving '" + path +
                  "/': it cannot be opened for writing, file names cannot hold the path, or the tree is too "
                  "deep for the free stack",
              messageOf([&] { kel::save(*newDocument(), path + '/'); }));
    EXPECT_EQ("loading '\xFF': the path is not UTF-8", messageOf([] { kel::load("\xFF"); }));
}

TEST_F(Convenience, WhatIsSetIsReadAndARefusalIsAnError)
{
    expectNothingLeft([] {
        const auto document = newDocument();
        const auto element = kel::appendElement(*document, L"r");
        const auto given = [&element](auto value) {
            kel::setAttribute(*element, L"a", value);
            return kel::attributeOf(*element, L"a", L"none") + L' ';
        };
        EXPECT_EQ(L" 18446744073709551615 -5 4294967295 0.5 1.5 ",
                  given(L"") + given(std::numeric_limits<std::size_t>::max()) + given(short{-5}) +
                      given(std::numeric_limits<unsigned>::max()) + given(0.5F) + given(1.5));
        const auto attribute = attributeOf(*element, L"a");
        kel::setText(*attribute, L"7");
        EXPECT_EQ(L"7", kel::attributeOf(*element, L"a"));
        EXPECT_EQ(S_FALSE, errorOf([&] { kel::textOf(*attribute); }).code());

        for (const DOMNodeType type : {NODE_ELEMENT, NODE_ELEMENT, NODE_ATTRIBUTE})
            append(*element, *create(*document, type, L"child"));
        kel::setText(*element, L"all");
        EXPECT_EQ(L"#text ", namesIn(kel::childrenOf(*element)));
        const auto text = firstChildOf(*element);
        EXPECT_EQ(L"all", kel::textOf(*text));
        EXPECT_EQ(L"none", kel::attributeOf(*text, L"a", L"none"));
        EXPECT_EQ(E_NOINTERFACE, errorOf([&] { kel::setAttribute(*text, L"a", 1); }).code());

        EXPECT_EQ(S_FALSE, errorOf([&] { kel::appendElement(*element, L""); }).code());
    });
    EXPECT_FALSE(kel::check(S_FALSE, kel::FalseIs::success));
    EXPECT_STREQ("loading: could not be done", errorOf([] { kel::check(S_FALSE, "loading"); }).what());
    EXPECT_EQ(E_FAIL, errorOf([] { kel::check(E_FAIL, kel::FalseIs::success); }).code());
    // A success code that nobody knows is no permission to go on as after `S_OK`.
    EXPECT_STREQ("unknown answer 0x00000002", errorOf([] { kel::check(2); }).what());
}

} // namespace
