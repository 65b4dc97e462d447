// Calls in an order that Qt alone does not survive, and the answers that the caller gets instead.

#include "support/dom_fixture.h"

namespace
{

struct Guards : DomTest
{
    /// Refusing what has no place to write to is the same for all getters.
    template <class Object, class... Getters>
    static void expectNullRefused(Object& object, Getters... getters)
    {
        for (const HRESULT answer : {(object.*getters)(nullptr)...})
            EXPECT_EQ(S_FALSE, answer);
    }

    /// A chain of elements, each the only child of the one before.
    static ComPtr<IXMLDOMNode> chainOf(int length, IXMLDOMDocument& document)
    {
        auto top = create(document, NODE_ELEMENT, L"e");
        for (int count = 1; count < length; ++count) {
            auto above = create(document, NODE_ELEMENT, L"e");
            append(*above, *top);
            top = above;
        }
        return top;
    }
    static ComPtr<IXMLDOMNode> bottomOf(ComPtr<IXMLDOMNode> node)
    {
        for (auto below = node; below; below = firstChildOf(*node))
            node = below;
        return node;
    }
    static int depthOf(ComPtr<IXMLDOMNode> node)
    {
        int depth = 0;
        for (; node; node = firstChildOf(*node))
            ++depth;
        return depth;
    }

    static constexpr int kBound = 2048;
};

// First of all, as long as no node has come from one document into another: from then on a guard before this
// one hides the fault.
TEST_F(Guards, ANodeThatOutlivedItsParentTakesNoNeighbourOfThenAlong)
{
    const auto document = newDocument();
    const auto elementOf = [&](const wchar_t* name) { return create(*document, NODE_ELEMENT, name); };
    auto parent = elementOf(L"parent");
    const auto one = elementOf(L"one");
    const auto two = elementOf(L"two");
    append(*two, *elementOf(L"leaf"));
    append(*parent, *one);
    append(*parent, *two);
    parent.reset();
    append(*two, *one); // whose next was two itself
    LONG length = 0;
    listOf(*two)->get_length(&length);
    ASSERT_EQ(2, length) << "or else two stands below itself";
    append(*document, *two);
    EXPECT_EQ("<two>\n    <leaf/>\n    <one/>\n</two>\n", saved(document));

    const auto loaded = documentOf(L"<r><a/><b/></r>");
    auto root = firstChildOf(*loaded);
    const auto held = firstChildOf(*root);
    loaded->removeChild(root.get(), nullptr);
    root.reset(); // and with it the neighbour
    ASSERT_EQ(S_OK, loaded->loadXML(Bstr(L"<home><x/></home>").get(), nullptr));
    append(*firstChildOf(*loaded), *held);
    EXPECT_EQ("<home>\n    <x/>\n    <a/>\n</home>\n", saved(loaded));
}

// The next three come before the others, in this order: once something was appended below an attribute, the
// process measures elements in another way.

TEST_F(Guards, NoTreeBecomesDeeperThanTheBoundInWhateverOrderItIsBuilt)
{
    const auto document = newDocument();
    const auto top = create(*document, NODE_ELEMENT, L"e");
    auto downwards = top;
    auto upwards = create(*document, NODE_ELEMENT, L"e");
    for (int count = 1; count < kBound + 5; ++count) {
        const auto below = create(*document, NODE_ELEMENT, L"e");
        append(*downwards, *below);
        downwards = below;
        const auto above = create(*document, NODE_ELEMENT, L"e");
        append(*above, *upwards);
        if (firstChildOf(*above))
            upwards = above;
    }
    EXPECT_EQ(kBound, depthOf(top));
    EXPECT_EQ(kBound, depthOf(upwards));
    append(*top, *upwards);
    EXPECT_EQ(kBound, depthOf(top));
}

TEST_F(Guards, AllChildrenOfASubtreeCountForItsHeight)
{
    const auto document = newDocument();
    const auto high = chainOf(1000, *document);
    const auto place = bottomOf(high);
    const auto mixed = create(*document, NODE_ELEMENT, L"e");
    mixed->put_text(Bstr(L"t").get());
    append(*mixed, *chainOf(1048, *document));
    append(*place, *mixed);
    EXPECT_FALSE(firstChildOf(*place)) << "a first child without children says nothing of the second";
}

TEST_F(Guards, WhatAttributesHoldCountsForTheDepthAsWell)
{
    const auto document = newDocument();
    const auto attribute = create(*document, NODE_ATTRIBUTE, L"x");
    append(*attribute, *chainOf(kBound - 1, *document));
    const auto pair = chainOf(2, *document);
    append(*firstChildOf(*pair), *attribute);
    EXPECT_FALSE(parentOf(*attribute)) << "one element too many";
    append(*pair, *attribute);
    EXPECT_TRUE(parentOf(*attribute));

    const auto carrier = kel::asElement(*create(*document, NODE_ELEMENT, L"e"));
    carrier->setAttribute(Bstr(L"x").get(), Variant(1).get());
    append(*attributeOf(*carrier, L"x"), *chainOf(1048, *document));
    const auto high = chainOf(1000, *document);
    const auto place = bottomOf(high);
    append(*place, *carrier);
    EXPECT_FALSE(parentOf(*carrier)) << "one element too many";
    append(*parentOf(*place), *carrier);
    EXPECT_TRUE(parentOf(*carrier));
}

TEST_F(Guards, RingsDocumentsAndPlacedAttributesAreNotAppended)
{
    const auto document = documentOf(L"<a x='1'><b><c/></b></a>");
    const auto root = rootOf(document);
    const auto b = firstChildOf(*root);
    const auto c = firstChildOf(*b);
    const auto attribute = itemOf(*mapOf(*root), 0);
    const std::string before = saved(document);
    for (const auto& child : {ComPtr<IXMLDOMNode>(root.get()), b, c, parentOf(*root), attribute,
                              ComPtr<IXMLDOMNode>(document.get())})
        append(*c, *child);
    append(*b, *attribute);
    append(*newDocument(), *documentOf(L"<z/>"));
    EXPECT_EQ(before, saved(document));
}

TEST_F(Guards, NeitherAChildNorAMapOfAnAttributeKeepsItWithoutItsElement)
{
    const auto document = documentOf(L"<a><b x='1'/></a>");
    auto b = firstChildOf(*rootOf(document));
    auto attribute = attributeOf(*b, L"x");
    const auto below = append(*attribute, *create(*document, NODE_ATTRIBUTE, L"w"));
    const auto empty = mapOf(*attribute);
    rootOf(document)->removeChild(b.get(), nullptr);
    attribute.reset();
    b.reset();
    EXPECT_FALSE(parentOf(*below));
}

TEST_F(Guards, HeldNodesSurviveAReloadAndCanBeAppendedAgain)
{
    const auto document = documentOf(L"<!--1--><a><b/><c/><d/></a><!--2-->");
    const auto comment = childAt(*document, 0);
    const auto last = childAt(*document, 2);
    const auto c = childAt(*childAt(*document, 1), 1);
    EXPECT_EQ(S_OK, document->loadXML(Bstr(L"<n/>").get(), nullptr));
    for (const auto& node : {comment, last, c})
        EXPECT_FALSE(parentOf(*node));
    append(*firstChildOf(*document), *c);
    append(*document, *comment);
    append(*document, *last);
    EXPECT_EQ("<n>\n    <c/>\n</n>\n<!--1-->\n<!--2-->\n", saved(document));
}

TEST_F(Guards, AListOfANodeThatMovedToAnotherDocumentIsMadeAnew)
{
    // Qt knows a list that is out of date by its document's count of changes. Two documents' can be the same.
    std::wstring others;
    for (; others.size() < 200; others += L"<x/>") {
        const auto from = documentOf(L"<a><b/>" + others + L"</a>");
        const auto to = documentOf(L"<q/>");
        const auto b = firstChildOf(*rootOf(from));
        const auto list = listOf(*b);
        EXPECT_EQ(0, lengthOf(*list));
        append(*rootOf(to), *b);
        append(*b, *create(*to, NODE_ELEMENT, L"c"));
        EXPECT_EQ(1, lengthOf(*list)) << others.size();
    }
}

// Only valgrind, or freed memory filled with rubbish, shows what these calls do to Qt without the guard.
TEST_F(Guards, ATreeTouchedFromADocumentThatWasNeverLoadedBelongsToOneThatLives)
{
    for (const bool isAppended : {false, true}) {
        const auto never = newDocument();
        const auto document = documentOf(L"<a><b><c/></b></a>");
        const auto b = firstChildOf(*rootOf(document));
        ComPtr<IXMLDOMNode> carrier;
        EXPECT_EQ(S_OK, isAppended ? never->appendChild(b.get(), carrier.put())
                                   : never->removeChild(b.get(), carrier.put()));
        rootOf(document)->removeChild(b.get(), nullptr);
        const auto list = listOf(*carrier);
        const auto copy = firstChildOf(*carrier);
        carrier->put_text(Bstr(L"t").get());
        EXPECT_EQ(S_OK, document->loadXML(Bstr(L"<a/>").get(), nullptr));
        append(*carrier, *copy);
        append(*carrier, *create(*never, NODE_ELEMENT, L"e"));
        EXPECT_EQ(3, lengthOf(*list));
        ComPtr<IXMLDOMDocument> owner;
        EXPECT_EQ(S_OK, carrier->get_ownerDocument(owner.put()));
        EXPECT_FALSE(firstChildOf(*owner)) << "the document that was never loaded";
    }
}

// Freed memory has to be used again at once for this, as it is outside of valgrind and the sanitizers.
TEST_F(Guards, ANodeAtTheAddressOfOneThatWasAdoptedIsNotTakenForIt)
{
    const auto home = documentOf(L"<h/>");
    auto other = documentOf(L"<x/>");
    const auto node = create(*home, NODE_ELEMENT, L"n");
    append(*firstChildOf(*other), *node);                          // the documents have met
    create(*home, NODE_ELEMENT, L"n")->put_text(Bstr(L"t").get()); // adopted, and freed
    ComPtr<IXMLDOMNode> copy;
    node->cloneNode(VARIANT_FALSE, copy.put()); // where that was; it belongs to the other document
    other.reset();
    std::vector<std::string> zeros;
    for (std::size_t count = 0; count < 6000; ++count)
        zeros.emplace_back(16 + count % 60 * 16, '\0');
    append(*copy, *create(*home, NODE_ELEMENT, L"z"));
    EXPECT_EQ(L"z", nameOf(*firstChildOf(*copy)));
}

TEST_F(Guards, NullPointersAndForeignChildrenGetTheirAnswerAndChangeNothing)
{
    const auto made = oneOfEach(L"<a x='1'>t<b/></a>");
    const auto& [document, root, text, attribute, list, map] = made;
    // A foreign child: a vtable that must not be called, and not a byte behind it.
    const void* const noTable[120] = {};
    const void* const* foreignObject[1] = {noTable};
    auto* const foreign = reinterpret_cast<IXMLDOMNode*>(foreignObject);
    for (IXMLDOMNode* node : made.nodes()) {
        expectNullRefused(*node, &IXMLDOMNode::get_nodeName, &IXMLDOMNode::get_nodeType,
                          &IXMLDOMNode::get_parentNode, &IXMLDOMNode::get_firstChild,
                          &IXMLDOMNode::get_childNodes, &IXMLDOMNode::get_attributes,
                          &IXMLDOMNode::hasChildNodes, &IXMLDOMNode::get_ownerDocument);
        IXMLDOMNode* preset = root.get();
        EXPECT_EQ(S_OK, node->appendChild(nullptr, &preset));
        EXPECT_EQ(S_OK, node->removeChild(nullptr, &preset));
        EXPECT_EQ(S_FALSE, node->appendChild(foreign, &preset));
        EXPECT_EQ(S_FALSE, node->removeChild(foreign, &preset));
        EXPECT_EQ(root.get(), preset);
    }
    expectNullRefused(*root, &IXMLDOMNode::get_text);
    expectNullRefused(*text, &IXMLDOMNode::get_text, &IXMLDOMNode::get_nodeValue);
    expectNullRefused(*document, &IXMLDOMNode::get_nodeValue, &IXMLDOMDocument::get_documentElement);
    expectNullRefused(*attribute, &IXMLDOMNode::get_text, &IXMLDOMAttribute::get_value);
    expectNullRefused(*list, &IXMLDOMNodeList::get_length, &IXMLDOMNodeList::nextNode);
    expectNullRefused(*map, &IXMLDOMNamedNodeMap::get_length);
    EXPECT_EQ(S_FALSE, list->get_item(0, nullptr));
    EXPECT_EQ(S_FALSE, map->get_item(0, nullptr));
    EXPECT_EQ(S_FALSE, map->getNamedItem(Bstr(L"x").get(), nullptr));
    EXPECT_EQ(S_FALSE, root->selectNodes(nullptr, nullptr));
    EXPECT_EQ(S_FALSE, document->selectNodes(nullptr, nullptr));
    EXPECT_EQ(S_FALSE, document->createNode(Variant(1).get(), Bstr(L"n").get(), nullptr, nullptr));
    EXPECT_EQ(S_OK, root->cloneNode(1, nullptr));
    EXPECT_EQ("<a x=\"1\">t<b/>\n</a>\n", saved(document));
    EXPECT_EQ(S_OK, root->removeChild(text.get(), nullptr));
    EXPECT_EQ(S_OK, root->appendChild(text.get(), nullptr));
    EXPECT_EQ("<a x=\"1\">\n    <b/>t</a>\n", saved(document));
}

} // namespace
