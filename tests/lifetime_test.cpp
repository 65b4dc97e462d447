// The entry points of the library, and the last release, which destroys an object.

#include "support/dom_fixture.h"

namespace
{

using Lifetime = DomTest;

TEST_F(Lifetime, TheEntryPointFailsUntilAttachedAndThenCreatesDocuments)
{
    _xmlModule = nullptr; // as when the library has just been loaded
    void* object = &object;
    EXPECT_EQ(E_FAIL, DllGetClassObject(CLSID_DOMDocument, IID_IXMLDOMDocument, &object));
    EXPECT_EQ(1, DllMain(nullptr, 1, nullptr));
    EXPECT_EQ(1, DllMain(nullptr, 0, nullptr));
    EXPECT_EQ(nullptr, _xmlModule[1].creator);

    EXPECT_EQ(E_FAIL, DllGetClassObject(CLSID_DOMDocument, IID_IXMLDOMDocument, nullptr));
    for (std::size_t byte = 0; byte < sizeof(GUID); ++byte) {
        GUID other = CLSID_DOMDocument;
        reinterpret_cast<unsigned char*>(&other)[byte] ^= 1;
        EXPECT_EQ(E_NOTIMPL, DllGetClassObject(other, IID_IXMLDOMDocument, &object)) << "byte " << byte;
    }
    EXPECT_EQ(&object, object);
    expectNoLeaks([] {
        const GUID classFactory{1, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
        void* made = &made;
        EXPECT_EQ(E_NOINTERFACE, DllGetClassObject(CLSID_DOMDocument, classFactory, &made));
        EXPECT_EQ(nullptr, made);
        for (const GUID& interface : {IID_IUnknown, IID_IDispatch, IID_IXMLDOMDocument, IID_IXMLDOMNode}) {
            EXPECT_EQ(S_OK, DllGetClassObject(CLSID_DOMDocument, interface, &made));
            EXPECT_EQ(0u, static_cast<IUnknown*>(made)->Release()) << std::hex << interface.Data1;
        }
    });
}

TEST_F(Lifetime, TheLastReleaseCallsTheDestructorThroughTheVtable)
{
    static void (*destroy)(void*);
    static std::size_t destroyed;
    destroyed = 0;
    const auto releaseWithChangedVtable = [](auto object, std::size_t destructor) {
        void* const raw = object.detach();
        void**& vtable = *static_cast<void***>(raw);
        // Also copies the offset and the type, which precede the slots.
        std::vector<void*> copy(vtable - 2, vtable + destructor + 1);
        vtable = copy.data() + 2;
        destroy = reinterpret_cast<void (*)(void*)>(vtable[destructor]);
        vtable[destructor] = reinterpret_cast<void*>(+[](void* self) { ++destroyed, destroy(self); });
        EXPECT_EQ(0u, static_cast<IUnknown*>(raw)->Release()) << "destructor in slot " << destructor;
    };
    OneOfEach one = oneOfEach(L"<a x='1'>t</a>");
    auto element = as<IXMLDOMElement>(parentOf(*one.text));
    one.root.reset();
    releaseWithChangedVtable(std::move(one.map), 18);
    releaseWithChangedVtable(std::move(one.list), 13);
    releaseWithChangedVtable(std::move(one.attribute), 47);
    releaseWithChangedVtable(std::move(one.text), 44);
    releaseWithChangedVtable(std::move(element), 53);
    releaseWithChangedVtable(std::move(one.document), 77);
    EXPECT_EQ(6u, destroyed);
}

} // namespace
