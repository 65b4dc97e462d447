// Entry points, identity and lifetime, seen through the library's own headers.

#include "support/dom_fixture.h"

#include <algorithm>
#include <vector>

namespace
{

using Identity = DomTest;

TEST(EntryPoints, RefuseUntilTheHostHasAttached)
{
    _xmlModule = nullptr; // as the library is loaded; other tests may have attached it
    void* object = &object;
    EXPECT_EQ(1, ylrxDelegatedLoadEntry());
    for (const unsigned int reason : {0u, 2u, 3u})
        EXPECT_EQ(1, DllMain(nullptr, reason, nullptr));
    EXPECT_EQ(E_FAIL, DllGetClassObject(CLSID_DOMDocument, IID_IXMLDOMDocument, &object));
    EXPECT_EQ(&object, object);
    EXPECT_EQ(1, DllMain(nullptr, 1, nullptr));
    EXPECT_EQ(1, DllMain(nullptr, 0, nullptr));
    ASSERT_NE(nullptr, _xmlModule);
    EXPECT_EQ(nullptr, _xmlModule[1].creator);
    ylrxDelegatedUnloadEntry();

    EXPECT_EQ(E_FAIL, DllGetClassObject(CLSID_DOMDocument, IID_IXMLDOMDocument, nullptr));
    for (std::size_t byte = 0; byte < sizeof(GUID); ++byte) {
        GUID other = CLSID_DOMDocument;
        reinterpret_cast<unsigned char*>(&other)[byte] ^= 1;
        EXPECT_EQ(E_NOTIMPL, DllGetClassObject(other, IID_IXMLDOMDocument, &object));
    }
    EXPECT_EQ(&object, object);
}

TEST_F(Identity, DllGetClassObjectMakesADistinctDocumentForEachInterfaceItAnswers)
{
    expectNothingLeft([] {
        const GUID classFactory{1, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
        void* refused = &refused;
        EXPECT_EQ(E_NOINTERFACE, DllGetClassObject(CLSID_DOMDocument, classFactory, &refused));
        EXPECT_EQ(nullptr, refused);
        void* earlier = nullptr;
        std::vector<ComPtr<IUnknown>> made;
        for (const GUID& interface : {IID_IUnknown, IID_IDispatch, IID_IXMLDOMDocument, IID_IXMLDOMNode}) {
            void* object = nullptr;
            EXPECT_EQ(S_OK, DllGetClassObject(CLSID_DOMDocument, interface, &object));
            EXPECT_NE(earlier, object);
            earlier = object;
            made.push_back(ComPtr<IUnknown>::adopt(static_cast<IUnknown*>(object)));
            EXPECT_EQ(2u, made.back()->AddRef());
            EXPECT_EQ(1u, made.back()->Release());
        }
    });
}

TEST_F(Identity, EachClassAnswersForItsOwnInterfacesWithItsOwnAddress)
{
    const auto [document, root, text, attribute, list, map] = oneOfEach(L"<a x='1'>text</a>");
    const struct
    {
        IUnknown* object;
        std::vector<GUID> answered;
    } cases[] = {
        {document.get(), {IID_IXMLDOMDocument, IID_IXMLDOMNode}},
        {root.get(), {IID_IXMLDOMElement, IID_IXMLDOMNode}},
        {attribute.get(), {IID_IXMLDOMAttribute, IID_IXMLDOMNode}},
        {text.get(), {IID_IXMLDOMNode}},
        {list.get(), {IID_IXMLDOMNodeList}},
        {map.get(), {IID_IXMLDOMNamedNodeMap}},
    };
    const GUID all[] = {
        IID_IUnknown,         IID_IDispatch,           IID_IXMLDOMDocument, IID_IXMLDOMElement,
        IID_IXMLDOMAttribute, IID_IXMLDOMNode,         IID_IXMLDOMNodeList, IID_IXMLDOMNamedNodeMap,
        IID_IXMLDOMText,      IID_IXMLDOMCharacterData};
    for (const auto& test : cases) {
        const ULONG count = test.object->AddRef();
        EXPECT_EQ(E_POINTER, test.object->QueryInterface(IID_IUnknown, nullptr));
        for (const GUID& interface : all) {
            const bool expected = interface == IID_IUnknown || interface == IID_IDispatch ||
                                  std::count(test.answered.begin(), test.answered.end(), interface);
            void* answer = &answer;
            EXPECT_EQ(expected ? S_OK : E_NOINTERFACE, test.object->QueryInterface(interface, &answer));
            EXPECT_EQ(expected ? test.object : nullptr, answer);
            if (expected) {
                EXPECT_EQ(count, test.object->Release());
            }
        }
        EXPECT_EQ(count - 1, test.object->Release());
    }
}

TEST_F(Identity, WhatIsHandedOutOutlivesWhatItCameFromAndIsFreedOnce)
{
    expectNothingLeft([] {
        auto document = documentOf(L"<a><b y='2'/></a>");
        auto child = firstChildOf(*rootOf(document));
        const auto owner = get(*child, &IXMLDOMNode::get_ownerDocument);
        EXPECT_EQ(owner.get(), get(*child, &IXMLDOMNode::get_ownerDocument).get());
        EXPECT_NE(document.get(), owner.get());
        EXPECT_NE(firstChildOf(*rootOf(document)).get(), child.get());
        document.reset();
        EXPECT_EQ(2u, child->AddRef());
        EXPECT_EQ(1u, child->Release());
        child.reset();
        EXPECT_EQ(L"a", nameOf(*rootOf(owner)));
    });
}

} // namespace
