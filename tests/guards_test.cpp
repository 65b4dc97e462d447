// Calls in an order that Qt alone does not survive, and the answers that the caller gets instead or where
// nothing is found.

#include "support/beside_qt.h"
#include "support/dom_fixture.h"
#include "support/variant_text.h"

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

    static constexpr int kBound = 2048;
};

// The first two come before the others, in this order: once something was appended below an attribute, the
// process measures elements in another way.

TEST_F(Guards, NoTreeBecomesDeeperThanTheBoundInWhateverOrderItIsBuilt)
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

TEST_F(Guards, WhatAttributesHoldCountsForTheDepthAsWell)
{
    const auto document = newDocument();
    const auto attribute = create(*document, NODE_ATTRIBUTE, L"x");
    append(*attribute, *chainOf(kBound - 1, *document).first);
    const auto [top, bottom] = chainOf(2, *document);
    EXPECT_FALSE(takes(*bottom, *attribute));
    EXPECT_TRUE(takes(*top, *attribute));

    const auto carrier = kel::asElement(*create(*document, NODE_ELEMENT, L"e"));
    carrier->setAttribute(Bstr(L"x").get(), Variant(1).get());
    append(*attributeOf(*carrier, L"x"), *chainOf(1048, *document).first);
    const auto [high, place] = chainOf(1000, *document);
    EXPECT_FALSE(takes(*place, *carrier));
    EXPECT_TRUE(takes(*parentOf(*place), *carrier));

    const auto last = create(*document, NODE_ATTRIBUTE, L"x");
    const auto [highest, lowest] = chainOf(kBound + 1, *document, NODE_ATTRIBUTE);
    EXPECT_TRUE(takes(*lowest, *last)) << "two more than elements";
    EXPECT_FALSE(takes(*last, *create(*document, NODE_ATTRIBUTE, L"x")));
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

TEST_F(Guards, ALongListOfAnAttributesChildrenIsReadAnewOnceTheAttributeIsSet)
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

// Freed memory has to be used again at once for this, as it is outside of valgrind and the sanitizers.
TEST_F(Guards, ANodeAtTheAddressOfOneThatWasAdoptedIsNotTakenForIt)
{
    const auto home = documentOf(L"<h/>");
    auto other = documentOf(L"<x/>");
    const auto node = create(*home, NODE_ELEMENT, L"n");
    const auto child = create(*home, NODE_ELEMENT, L"z");
    append(*firstChildOf(*other), *node);       // the documents have met
    listOf(*create(*home, NODE_ELEMENT, L"n")); // adopted, and freed
    ComPtr<IXMLDOMNode> copy;
    node->cloneNode(VARIANT_FALSE, copy.put()); // where that was; it belongs to the other document
    other.reset();
    std::vector<std::string> zeros;
    for (std::size_t count = 0; count < 6000; ++count)
        zeros.emplace_back(16 + count % 60 * 16, '\0');
    append(*copy, *child);
    EXPECT_EQ(L"z", nameOf(*firstChildOf(*copy)));
}

TEST_F(Guards, AForeignChildIsRefusedAndNoChildChangesNothing)
{
    const auto made = oneOfEach(L"<a x='1'>t<b/></a>");
    // A foreign child: a vtable that must not be called, and not a byte behind it.
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

} // namespace
