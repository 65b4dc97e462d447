// Calls in an order that Qt alone does not survive, and the answers that the caller gets instead.

#include "support/dom_fixture.h"

namespace
{

class Guards : public DomTest
{
protected:
    static void append(IXMLDOMNode& parent, IXMLDOMNode& child)
    {
        ComPtr<IXMLDOMNode> result;
        EXPECT_EQ(S_OK, parent.appendChild(&child, result.put()));
        EXPECT_TRUE(result) << "a refusal is not reported: the result is made as ever";
    }
};

TEST_F(Guards, RingsDocumentsAndPlacedAttributesAreNotAppended)
{
    auto document = documentOf(L"<a x='1'><b><c/></b></a>");
    auto root = rootOf(document);
    auto b = firstChildOf(*root);
    auto c = firstChildOf(*b);
    ComPtr<IXMLDOMNode> top, attribute;
    root->get_parentNode(top.put());
    ComPtr<IXMLDOMNamedNodeMap> map;
    root->get_attributes(map.put());
    map->get_item(0, attribute.put());
    const std::string before = saved(document);
    for (IXMLDOMNode* child : {static_cast<IXMLDOMNode*>(root.get()), b.get(), c.get(), top.get(),
                               attribute.get(), static_cast<IXMLDOMNode*>(document.get())})
        append(*c, *child);
    append(*b, *attribute);
    append(*newDocument(), *documentOf(L"<z/>"));
    EXPECT_EQ(before, saved(document));
}

TEST_F(Guards, AnAttributeKeepsItsElementAlive)
{
    auto document = documentOf(L"<a><b x='1'/></a>");
    ComPtr<IXMLDOMNode> attribute, parent;
    ComPtr<IXMLDOMNamedNodeMap> map;
    ComPtr<IXMLDOMNodeList> values;
    {
        auto b = firstChildOf(*rootOf(document));
        b->get_attributes(map.put());
        map->get_item(0, attribute.put());
        attribute->get_childNodes(values.put());
        rootOf(document)->removeChild(b.get(), nullptr);
    }
    LONG length = 0;
    EXPECT_EQ(S_OK, values->get_length(&length));
    EXPECT_EQ(1, length);
    EXPECT_EQ(S_OK, attribute->put_text(Bstr(L"2").get()));
    ASSERT_EQ(S_OK, attribute->get_parentNode(parent.put()));
    EXPECT_EQ(L"b", textOf(parent, &IXMLDOMNode::get_nodeName));
    parent.reset();
    attribute.reset();
    EXPECT_EQ(S_OK, map->get_item(0, attribute.put()));
}

TEST_F(Guards, NeitherAChildNorAMapOfAnAttributeKeepsItWithoutItsElement)
{
    auto document = documentOf(L"<a><b x='1'/></a>");
    auto inner = create(*document, NODE_ATTRIBUTE, L"w");
    ComPtr<IXMLDOMNode> below;
    ComPtr<IXMLDOMNamedNodeMap> empty;
    {
        auto b = firstChildOf(*rootOf(document));
        auto attribute = attributeOf(*b, L"x");
        attribute->appendChild(inner.get(), below.put());
        attribute->get_attributes(empty.put());
        rootOf(document)->removeChild(b.get(), nullptr);
    }
    ComPtr<IXMLDOMNode> parent;
    below->get_parentNode(parent.put());
    EXPECT_FALSE(parent);
}

TEST_F(Guards, HeldNodesSurviveAReloadAndCanBeAppendedAgain)
{
    auto document = documentOf(L"<!--1--><a><b/><c/><d/></a><!--2-->");
    auto comment = childAt(*document, 0);
    auto last = childAt(*document, 2);
    auto c = childAt(*childAt(*document, 1), 1);
    EXPECT_EQ(S_OK, document->loadXML(Bstr(L"<n/>").get(), nullptr));
    IXMLDOMNode* none = nullptr;
    for (const auto& node : {comment, last, c})
        EXPECT_EQ(S_FALSE, node->get_parentNode(&none));
    append(*firstChildOf(*document), *c);
    append(*document, *comment);
    append(*document, *last);
    EXPECT_EQ("<n>\n    <c/>\n</n>\n<!--1-->\n<!--2-->\n", saved(document));
}

TEST_F(Guards, NodesThatMovedBetweenDocumentsOutliveBoth)
{
    expectNothingLeft([this] {
        auto one = documentOf(L"<a><b/></a>");
        auto two = documentOf(L"<q><r/></q>");
        auto b = firstChildOf(*rootOf(one));
        ComPtr<IXMLDOMNodeList> list;
        b->get_childNodes(list.put());
        append(*rootOf(two), *b);
        EXPECT_EQ("<q>\n    <r/>\n    <b/>\n</q>\n", saved(two));
        rootOf(two)->removeChild(b.get(), nullptr);
        two.reset();
        one.reset();
        LONG length = 7;
        EXPECT_EQ(S_OK, list->get_length(&length));
        EXPECT_EQ(0, length);
        auto three = documentOf(L"<s/>");
        append(*b, *create(*three, NODE_ELEMENT, L"t"));
        EXPECT_EQ(S_OK, list->get_length(&length));
        EXPECT_EQ(1, length);
        append(*rootOf(three), *b);
        EXPECT_EQ("<s>\n    <b>\n        <t/>\n    </b>\n</s>\n", saved(three));
    });
}

TEST_F(Guards, NoTreeBecomesDeeperThanTheBoundInWhateverOrderItIsBuilt)
{
    constexpr int kBound = 2048;
    const auto depthOf = [](IXMLDOMNode& top) {
        int depth = 0;
        ComPtr<IXMLDOMNode> node(&top);
        for (; node; node = firstChildOf(*node))
            ++depth;
        return depth;
    };
    auto document = newDocument();
    auto top = create(*document, NODE_ELEMENT, L"e");
    auto downwards = top;
    auto upwards = create(*document, NODE_ELEMENT, L"e");
    for (int count = 1; count < kBound + 5; ++count) {
        auto below = create(*document, NODE_ELEMENT, L"e");
        append(*downwards, *below);
        downwards = below;
        auto above = create(*document, NODE_ELEMENT, L"e");
        append(*above, *upwards);
        if (firstChildOf(*above))
            upwards = above;
    }
    EXPECT_EQ(kBound, depthOf(*top));
    EXPECT_EQ(kBound, depthOf(*upwards));
    append(*top, *upwards);
    EXPECT_EQ(kBound, depthOf(*top));

    auto attribute = create(*document, NODE_ATTRIBUTE, L"x");
    append(*attribute, *firstChildOf(*upwards));
    append(*firstChildOf(*top), *attribute);
    EXPECT_EQ(kBound, depthOf(*attribute)) << "the attribute carries a row one shorter than the bound";
    ComPtr<IXMLDOMNode> parent;
    EXPECT_EQ(S_FALSE, attribute->get_parentNode(parent.put())) << "and is therefore not placed";
}

TEST_F(Guards, AHeightOnceMeasuredIsNotTrustedWhenItNoLongerHolds)
{
    auto document = newDocument();
    const auto row = [&](int length) {
        auto top = create(*document, NODE_ELEMENT, L"e");
        for (int count = 1; count < length; ++count) {
            auto above = create(*document, NODE_ELEMENT, L"e");
            append(*above, *top);
            top = above;
        }
        return top;
    };
    const auto bottomOf = [](ComPtr<IXMLDOMNode> node) {
        for (auto below = node; below; below = firstChildOf(*node))
            node = below;
        return node;
    };
    auto tall = row(1500);
    auto high = row(1000);
    auto place = bottomOf(high);
    auto grown = firstChildOf(*row(4)); // appended, and therefore measured
    append(*bottomOf(grown), *tall);
    append(*place, *grown);
    EXPECT_FALSE(firstChildOf(*place)) << "3 when it was measured, 1503 by now";

    auto carrier = create(*document, NODE_ELEMENT, L"e");
    ComPtr<IXMLDOMElement> element;
    carrier->QueryInterface(IID_IXMLDOMElement, reinterpret_cast<void**>(element.put()));
    element->setAttribute(Bstr(L"x").get(), variantOf(1));
    append(*attributeOf(*element, L"x"), *row(1500));
    append(*place, *carrier);
    EXPECT_FALSE(firstChildOf(*place)) << "what an attribute holds counts as well";

    ComPtr<IXMLDOMElement> original;
    grown->QueryInterface(IID_IXMLDOMElement, reinterpret_cast<void**>(original.put()));
    for (int round = 0; round < 8; ++round) {
        // Freed last, a measured node is where the copy comes to stand.
        auto top = row(4);
        auto measured = firstChildOf(*top);
        top->removeChild(measured.get(), nullptr);
        top.reset();
        measured.reset();
        ComPtr<IXMLDOMNode> copy;
        original->cloneNode(VARIANT_TRUE, copy.put());
        append(*place, *copy);
        EXPECT_FALSE(firstChildOf(*place));
    }
}

TEST_F(Guards, NullPointersAndForeignChildrenGetTheirAnswerAndChangeNothing)
{
    const auto [document, root, text, attribute, list, map] = oneOfEach(L"<a x='1'>t<b/></a>");
    // A foreign child: a dispatch table that must not be called, and not a byte behind it.
    const void* const noTable[120] = {};
    const void* const* foreignObject[1] = {noTable};
    auto* const foreign = reinterpret_cast<IXMLDOMNode*>(foreignObject);
    for (IXMLDOMNode* node :
         {static_cast<IXMLDOMNode*>(document.get()), static_cast<IXMLDOMNode*>(root.get()), text.get(),
          static_cast<IXMLDOMNode*>(attribute.get())}) {
        EXPECT_EQ(S_FALSE, node->get_nodeName(nullptr));
        EXPECT_EQ(S_FALSE, node->get_nodeType(nullptr));
        EXPECT_EQ(S_FALSE, node->get_parentNode(nullptr));
        EXPECT_EQ(S_FALSE, node->get_firstChild(nullptr));
        EXPECT_EQ(S_FALSE, node->get_childNodes(nullptr));
        EXPECT_EQ(S_FALSE, node->get_attributes(nullptr));
        EXPECT_EQ(S_FALSE, node->hasChildNodes(nullptr));
        EXPECT_EQ(S_FALSE, node->get_ownerDocument(nullptr));
        IXMLDOMNode* preset = root.get();
        EXPECT_EQ(S_OK, node->appendChild(nullptr, &preset));
        EXPECT_EQ(S_OK, node->removeChild(nullptr, &preset));
        EXPECT_EQ(S_FALSE, node->appendChild(foreign, &preset));
        EXPECT_EQ(S_FALSE, node->removeChild(foreign, &preset));
        EXPECT_EQ(root.get(), preset);
    }
    EXPECT_EQ(S_FALSE, root->get_text(nullptr));
    EXPECT_EQ(S_FALSE, text->get_text(nullptr));
    EXPECT_EQ(S_FALSE, text->get_nodeValue(nullptr));
    EXPECT_EQ(S_FALSE, document->get_nodeValue(nullptr));
    EXPECT_EQ(S_FALSE, attribute->get_value(nullptr));
    EXPECT_EQ(S_FALSE, attribute->get_text(nullptr));
    EXPECT_EQ(S_FALSE, list->get_item(0, nullptr));
    EXPECT_EQ(S_FALSE, list->get_length(nullptr));
    EXPECT_EQ(S_FALSE, list->nextNode(nullptr));
    EXPECT_EQ(S_FALSE, map->get_item(0, nullptr));
    EXPECT_EQ(S_FALSE, map->get_length(nullptr));
    EXPECT_EQ(S_FALSE, map->getNamedItem(Bstr(L"x").get(), nullptr));
    EXPECT_EQ(S_FALSE, root->selectNodes(nullptr, nullptr));
    EXPECT_EQ(S_FALSE, document->selectNodes(nullptr, nullptr));
    EXPECT_EQ(S_FALSE, document->get_documentElement(nullptr));
    EXPECT_EQ(S_FALSE, document->createNode(variantOf(1), Bstr(L"n").get(), nullptr, nullptr));
    EXPECT_EQ(S_OK, root->cloneNode(1, nullptr));
    EXPECT_EQ("<a x=\"1\">t<b/>\n</a>\n", saved(document));
    EXPECT_EQ(S_OK, root->removeChild(text.get(), nullptr));
    EXPECT_EQ(S_OK, root->appendChild(text.get(), nullptr));
    EXPECT_EQ("<a x=\"1\">\n    <b/>t</a>\n", saved(document));
}

} // namespace
