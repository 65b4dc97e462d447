// Calls in an order that Qt alone does not survive, and the answers that the caller gets instead or where
// nothing is found.

#include "KelXmlLib/kel.h"
#include "support/beside_qt.h"
#include "support/dom_fixture.h"
#include "support/variant_text.h"

#include <cstring>
#include <set>

namespace
{

struct Guards : DomTest
{
    /// A chain of nodes, each the only child of the one before. \return its top and its bottom
    static std::pair<ComPtr<IXMLDOMNode>, ComPtr<IXMLDOMNode>> chainOf(int length, IXMLDOMDocument& document,
                                                                       LONG type = NODE_ELEMENT)
    {
        const auto top = create(document, type, L"e");
        auto bottom = top;
        while (--length > 0)
            bottom = append(*bottom, *create(document, type, L"e"));
        return {top, bottom};
    }
    /// Whether a node without a parent gets this one.
    static bool takes(IXMLDOMNode& parent, IXMLDOMNode& child)
    {
        append(parent, child);
        return static_cast<bool>(parentOf(child));
    }

    static void expectNoTreeDeeperThanTheBound();

    static constexpr int kBound = 2048;
};

void Guards::expectNoTreeDeeperThanTheBound()
{
    const auto document = newDocument();
    const auto one = create(*document, NODE_ELEMENT, L"e");
    const auto [top, bottom] = chainOf(kBound, *document);
    EXPECT_TRUE(firstChildOf(*top)) << "up to the bound";
    EXPECT_FALSE(takes(*one, *top));
    EXPECT_FALSE(takes(*bottom, *one));
    EXPECT_TRUE(takes(*parentOf(*bottom), *one));

    const auto [high, place] = chainOf(1000, *document);
    const auto mixed = create(*document, NODE_ELEMENT, L"e");
    mixed->put_text(Bstr(L"t").get());
    append(*mixed, *chainOf(1048, *document).first);
    EXPECT_FALSE(takes(*place, *mixed)) << "a first child without children says nothing of the second";
    EXPECT_FALSE(takes(*place, *chainOf(1049, *document).first));
    EXPECT_TRUE(takes(*place, *chainOf(1048, *document).first));
}

TEST_F(Guards, NoTreeBecomesDeeperThanTheBoundInWhateverOrderItIsBuilt)
{
    // In a new process: once something is appended to an attribute, a process measures elements in another
    // way.
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const auto expectAndExit = [] {
        expectNoTreeDeeperThanTheBound();
        std::exit(HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(expectAndExit(), testing::ExitedWithCode(0), "");
}

TEST_F(Guards, WhatAttributesHoldCountsForTheDepthAsWell)
{
    const auto document = newDocument();
    const auto attribute = create(*document, NODE_ATTRIBUTE, L"x");
    append(*attribute, *chainOf(kBound - 2, *document).first);
    const auto [top, bottom] = chainOf(2, *document);
    EXPECT_FALSE(takes(*bottom, *attribute));
    EXPECT_TRUE(takes(*top, *attribute));

    const auto carrier = kel::asElement(*create(*document, NODE_ELEMENT, L"e"));
    carrier->setAttribute(Bstr(L"x").get(), Variant(1).get());
    append(*attributeOf(*carrier, L"x"), *chainOf(1047, *document).first);
    const auto [high, place] = chainOf(1000, *document);
    EXPECT_FALSE(takes(*place, *carrier));
    EXPECT_TRUE(takes(*parentOf(*place), *carrier));

    const auto last = create(*document, NODE_ATTRIBUTE, L"x");
    const auto [highest, lowest] = chainOf(kBound, *document, NODE_ATTRIBUTE);
    EXPECT_TRUE(takes(*lowest, *last)) << "one more than elements: a leaf";
    EXPECT_FALSE(takes(*last, *create(*document, NODE_ATTRIBUTE, L"x")));
    expectNoTreeDeeperThanTheBound();
}

TEST_F(Guards, RingsDocumentsAndPlacedAttributesAreNotAppended)
{
    const auto document = documentOf(L"<a x='1'><b><c/></b></a>");
    const ComPtr<IXMLDOMNode> root(rootOf(document).get());
    const auto b = firstChildOf(*root);
    const auto c = firstChildOf(*b);
    const ComPtr<IXMLDOMNode> attribute(attributeOf(*root, L"x").get());
    const std::string before = saved(*document);
    for (const auto& child : {root, b, c, parentOf(*root), attribute, ComPtr<IXMLDOMNode>(document.get())})
        append(*c, *child);
    append(*newDocument(), *documentOf(L"<z/>"));
    EXPECT_EQ(before, saved(*document));
}

TEST_F(Guards, ALongListOfAnAttributesChildrenIsReReadOnceTheAttributeIsSet)
{
    const auto document = documentOf(L"<a x='1'/>");
    const auto root = rootOf(document);
    const auto attribute = attributeOf(*root, L"x");
    const auto list = listOf(*attribute);
    for (int count = 0; count < 40; ++count)
        append(*attribute, *create(*document, NODE_ELEMENT, L"e"));
    EXPECT_EQ(41, lengthOf(*list));
    root->setAttribute(Bstr(L"x").get(), Variant(2).get()); // in the place of the first child, at the end
    EXPECT_EQ(L"e", nameOf(**kel::each(list).begin()));
}

TEST_F(Guards, NextNodeMeetsWhatItemReturnsInListsOfAllLengthsAndEndsWithAnyCursor)
{
    for (const int length : {7, 8, 9, 31, 32, 40}) {
        const auto document = documentOf(L"<a><z/></a>");
        const auto root = rootOf(document);
        ComPtr<IXMLDOMNodeList> found;
        root->selectNodes(Bstr(L"z").get(), found.put());
        for (const auto& list : {listOf(*root), found}) {
            while (lengthOf(*list) < length)
                append(*root, *create(*document, NODE_ELEMENT, L"z"));
            ComPtr<IXMLDOMNode> node;
            ComPtr<IXMLDOMNode> item;
            LONG index = 0;
            for (; list->nextNode(node.put()) == S_OK; ++index) {
                const std::wstring text = std::to_wstring(index);
                node->put_text(Bstr(text.c_str()).get());
                list->get_item(index, item.put());
                EXPECT_EQ(text, kel::textOf(*item, &IXMLDOMNode::get_text));
            }
            EXPECT_EQ(length, index);
            const std::uint32_t cursor = 0x80000000; // after as many calls
            std::memcpy(reinterpret_cast<std::byte*>(list.get()) + 80, &cursor, sizeof cursor);
            EXPECT_EQ(S_FALSE, list->nextNode(node.put()));
        }
    }
}

TEST_F(Guards, ALargeMapGivesEachAttributeOnceAlsoAfterOthersHaveComeAndGone)
{
    const auto document = documentOf(L"<a/>");
    const auto root = rootOf(document);
    const auto map = mapOf(*root);
    for (const int count : {2001, 2002}) {
        for (int number = 0; number < count; ++number)
            kel::setAttribute(*root, L"a" + std::to_wstring(number), L"v");
        std::set<std::wstring> names;
        for (const auto& attribute : kel::each(map))
            names.insert(nameOf(*attribute));
        EXPECT_EQ(static_cast<std::size_t>(count), names.size());
        kel::Element(*root).removeAttribute("a1");
        EXPECT_EQ(count - 1, lengthOf(*map));
    }
}

TEST_F(Guards, AForeignChildIsRefusedAndNoChildChangesNothing)
{
    const auto made = oneOfEach(L"<a x='1'>t<b/></a>");
    // A foreign child: a vtable that must not be called, and not a byte after it.
    const void* const noTable[120] = {};
    const void* const* foreignObject[1] = {noTable};
    auto* const foreign = reinterpret_cast<IXMLDOMNode*>(foreignObject);
    for (IXMLDOMNode* node : made.nodes()) {
        IXMLDOMNode* preset = made.root.get();
        EXPECT_EQ(S_OK, node->appendChild(nullptr, &preset));
        EXPECT_EQ(S_OK, node->removeChild(nullptr, &preset));
        EXPECT_EQ(S_FALSE, node->appendChild(foreign, &preset));
        EXPECT_EQ(S_FALSE, node->removeChild(foreign, &preset));
        EXPECT_EQ(made.root.get(), preset);
    }
    EXPECT_EQ("<a x=\"1\">t<b/>\n</a>\n", saved(*made.document));
}

TEST_F(Guards, WhatIsNotFoundLeavesTheOutputAloneButInMapsAndAtTheEndOfAWalk)
{
    const auto [document, root, text, attribute, list, map] = oneOfEach(L"<a x=''>t</a>");
    const auto free = create(*document, NODE_ATTRIBUTE, L"free");
    IXMLDOMNode* out = root.get();
    EXPECT_EQ(S_FALSE, document->get_parentNode(&out));
    EXPECT_EQ(S_FALSE, text->get_firstChild(&out));
    EXPECT_EQ(S_FALSE, free->get_parentNode(&out));
    for (const LONG index : {1, -1, INT32_MAX, INT32_MIN})
        EXPECT_EQ(S_FALSE, list->get_item(index, &out));
    for (const wchar_t* const name : {L"z", static_cast<const wchar_t*>(nullptr)})
        EXPECT_EQ(S_FALSE, map->getNamedItem(Bstr(name).get(), &out));
    EXPECT_EQ(S_FALSE, document->createNode(Variant(1).get(), nullptr, nullptr, &out));
    for (const Variant& type : {Variant(3), Variant(0), Variant(L"element")})
        EXPECT_EQ(S_OK, document->createNode(type.get(), Bstr(L"n").get(), nullptr, &out));
    EXPECT_EQ(root.get(), out);

    for (const LONG index : {1, -1}) {
        out = root.get();
        EXPECT_EQ(S_OK, map->get_item(index, &out));
        EXPECT_EQ(nullptr, out);
    }
    ComPtr<IXMLDOMNode> node;
    EXPECT_EQ(S_OK, list->nextNode(node.put()));
    EXPECT_EQ(S_OK, list->reset());
    out = root.get();
    EXPECT_EQ(S_FALSE, list->nextNode(&out)) << "the cursor only grows";
    EXPECT_EQ(nullptr, out);
    EXPECT_NE(free.get(), append(*root, *free).get()) << "a new object";
    EXPECT_FALSE(kel::query<IXMLDOMDocument>(*parentOf(*root), IID_IXMLDOMDocument));

    keltest::Variants values;
    EXPECT_EQ(S_OK, root->setAttribute(Bstr(L"none").get(), values.of("&i4:1"))) << "as values of most types";
    EXPECT_EQ(1, lengthOf(*map));
}

TEST_F(Guards, NamespacesAreSavedAndListsFindElementsByTheirLocalNames)
{
    const auto document = documentOf(L"<r/>");
    const auto root = rootOf(document);
    ComPtr<IXMLDOMNodeList> list;
    EXPECT_EQ(S_OK, root->selectNodes(Bstr(L"e").get(), list.put()));
    for (LONG length = 0; length < 6; ++length) { // a list of four or more is cached
        EXPECT_EQ(length, lengthOf(*list));
        append(*root, *create(*document, NODE_ELEMENT, L"p:e", L"urn:e"));
    }
    append(*root, *create(*document, NODE_ATTRIBUTE, L"q:a", L"urn:a"));
    const std::string bytes = saved(*document);
    for (const char* const part : {"<p:e xmlns:p=\"urn:e\"/>", "xmlns:q=\"urn:a\""})
        EXPECT_NE(std::string::npos, bytes.find(part)) << bytes;
}

TEST_F(Guards, ExternalEntitiesAreNotReadAndTheHostsHashSeedGivesOneOrder)
{
    const std::wstring path = pathOf("external").toStdWString();
    for (const char* const content : {"secret", "<!ENTITY e 'secret'>"}) {
        write(QString::fromStdWString(path), content);
        for (const std::wstring& type :
             {L"a [<!ENTITY e SYSTEM '" + path + L"'>]", L"a SYSTEM '" + path + L"'",
              L"a [<!ENTITY % p SYSTEM '" + path + L"'> %p;]"}) {
            const auto document = newDocument();
            document->loadXML(Bstr((L"<!DOCTYPE " + type + L"><a>&e;</a>").c_str()).get(), nullptr);
            EXPECT_EQ(std::string::npos, saved(*document).find("secret"));
        }
    }

    qSetGlobalQHashSeed(0);
    const wchar_t* const xml = L"<r a='' b='' c='' d='' e='' f='' g='' h=''/>";
    const std::string first = saved(*documentOf(xml));
    for (int count = 0; count < 4; ++count)
        EXPECT_EQ(first, saved(*documentOf(xml)));
    qSetGlobalQHashSeed(-1);
}

} // namespace
