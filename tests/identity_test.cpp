// The entry points.

#include "support/dom_fixture.h"

namespace
{

using Identity = DomTest;

TEST_F(Identity, TheEntryPointRefusesUntilAttachedAndThenMakesADocumentForEachInterfaceItAnswers)
{
    _xmlModule = nullptr; // as the library is loaded; other tests may have attached it
    void* object = &object;
    for (const unsigned int reason : {0u, 2u, 3u})
        EXPECT_EQ(1, DllMain(nullptr, reason, nullptr));
    EXPECT_EQ(E_FAIL, DllGetClassObject(CLSID_DOMDocument, IID_IXMLDOMDocument, &object));
    EXPECT_EQ(1, DllMain(nullptr, 1, nullptr));
    EXPECT_EQ(1, DllMain(nullptr, 0, nullptr));
    EXPECT_EQ(nullptr, _xmlModule[1].creator);
    ylrxDelegatedUnloadEntry();

    EXPECT_EQ(E_FAIL, DllGetClassObject(CLSID_DOMDocument, IID_IXMLDOMDocument, nullptr));
    for (std::size_t byte = 0; byte < sizeof(GUID); ++byte) {
        GUID other = CLSID_DOMDocument;
        reinterpret_cast<unsigned char*>(&other)[byte] ^= 1;
        EXPECT_EQ(E_NOTIMPL, DllGetClassObject(other, IID_IXMLDOMDocument, &object));
    }
    EXPECT_EQ(&object, object);
    expectNothingLeft([] {
        const GUID classFactory{1, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
        void* made = &made;
        EXPECT_EQ(E_NOINTERFACE, DllGetClassObject(CLSID_DOMDocument, classFactory, &made));
        EXPECT_EQ(nullptr, made);
        for (const GUID& interface : {IID_IUnknown, IID_IDispatch, IID_IXMLDOMDocument, IID_IXMLDOMNode}) {
            EXPECT_EQ(S_OK, DllGetClassObject(CLSID_DOMDocument, interface, &made));
            EXPECT_EQ(0u, static_cast<IUnknown*>(made)->Release());
        }
    });
}

} // namespace
