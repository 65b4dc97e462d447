// Calls in orders after which Qt alone follows pointers to freed nodes or documents. Freed memory is
// overwritten in these runs, or watched by valgrind.

#include "support/dom_fixture.h"

namespace
{

struct Dangling : DomTest
{
    static void remove(IXMLDOMNode& parent, IXMLDOMNode& child)
    {
        EXPECT_EQ(S_OK, parent.removeChild(&child, nullptr));
    }
    /// Removes the document element's first child, which only what `keep` returns may keep alive.
    template <class Keep>
    static auto keptOfRemovedElement(Keep keep)
    {
        const auto root = rootOf(documentOf(L"<a><e x='1'/></a>"));
        const auto element = firstChildOf(*root);
        const auto kept = keep(*element);
        remove(*root, *element);
        return kept;
    }
    static std::wstring childNamesOf(IXMLDOMNode& node)
    {
        std::wstring names;
        for (const auto& child : kel::each(listOf(node)))
            names += nameOf(*child);
        return names;
    }
};

TEST_F(Dangling, AnAttributeKeepsItsElement)
{
    const auto attribute = keptOfRemovedElement([](auto& element) { return attributeOf(element, L"x"); });
    EXPECT_EQ(L"e", nameOf(*parentOf(*attribute)));
}

TEST_F(Dangling, AMapKeepsItsElement)
{
    const auto map = keptOfRemovedElement([](auto& element) { return mapOf(element); });
    ComPtr<IXMLDOMNode> attribute;
    EXPECT_EQ(S_OK, map->getNamedItem(Bstr(L"x").get(), attribute.put()));
    EXPECT_EQ(L"e", nameOf(*parentOf(*attribute)));
}

TEST_F(Dangling, AListOfAnAttributesChildrenKeepsTheElement)
{
    const auto list = keptOfRemovedElement([](auto& element) { return listOf(*attributeOf(element, L"x")); });
    ComPtr<IXMLDOMNode> text;
    EXPECT_EQ(S_OK, list->get_item(0, text.put()));
    EXPECT_EQ(L"e", nameOf(*parentOf(*parentOf(*text))));
}

TEST_F(Dangling, AnAttributeBelowAnAttributeDoesNotKeepThatOne)
{
    const auto below = keptOfRemovedElement([](auto& element) {
        const auto attribute = attributeOf(element, L"x");
        ComPtr<IXMLDOMDocument> document;
        element.get_ownerDocument(document.put());
        append(*attribute, *create(*document, NODE_ATTRIBUTE, L"y"));
        ComPtr<IXMLDOMNode> last;
        listOf(*attribute)->get_item(1, last.put());
        return last;
    });
    EXPECT_FALSE(parentOf(*below));
}

TEST_F(Dangling, TopLevelNodesThatAreHeldLoseTheirPlaceInALoad)
{
    const auto document = documentOf(L"<!--c--><a/><?p q?>");
    const auto comment = firstChildOf(*document);
    EXPECT_EQ(S_OK, document->loadXML(Bstr(L"<b><x/></b>").get(), nullptr));
    const auto root = firstChildOf(*document);
    append(*root, *comment);
    append(*root, *create(*document, NODE_ELEMENT, L"y"));
    EXPECT_EQ(L"x#commenty", childNamesOf(*root));
}

TEST_F(Dangling, AChildThatOutlivedItsParentIsAppendedWithoutItsSiblings)
{
    const auto document = documentOf(L"<a><gone><b/><c/><d/></gone><x/></a>");
    const auto root = rootOf(document);
    auto gone = firstChildOf(*root);
    ComPtr<IXMLDOMNode> child;
    listOf(*gone)->get_item(1, child.put());
    remove(*root, *gone);
    gone.reset();
    append(*root, *child);
    EXPECT_EQ(L"xc", childNamesOf(*root));
}

TEST_F(Dangling, ANodeThatOutlivedADocumentItWasInBelongsToOneThatLives)
{
    const auto home = documentOf(L"<h/>");
    const auto node = create(*home, NODE_ELEMENT, L"n");
    {
        const auto other = rootOf(documentOf(L"<x/>"));
        append(*other, *node);
        remove(*other, *node);
    }
    ComPtr<IXMLDOMNode> copy;
    EXPECT_EQ(S_OK, node->cloneNode(VARIANT_TRUE, copy.put()));
    append(*node, *copy);
    EXPECT_EQ(L"n", childNamesOf(*node));
    ComPtr<IXMLDOMDocument> owner;
    EXPECT_EQ(S_OK, node->get_ownerDocument(owner.put()));
    EXPECT_EQ(L"h", nameOf(*firstChildOf(*owner)));
}

TEST_F(Dangling, WhatADocumentThatWasNeverLoadedReturnsKeepsTheNodesOwnDocument)
{
    ComPtr<IXMLDOMNode> node;
    {
        const auto empty = newDocument();
        node = append(*empty, *rootOf(documentOf(L"<h><i/></h>")));
    }
    ComPtr<IXMLDOMNode> copy;
    EXPECT_EQ(S_OK, node->cloneNode(VARIANT_TRUE, copy.put()));
    append(*node, *copy);
    append(*copy, *create(*documentOf(L"<o/>"), NODE_ELEMENT, L"z"));
    EXPECT_EQ(L"ih", childNamesOf(*node));
    EXPECT_EQ(L"iz", childNamesOf(*copy));
}

} // namespace
