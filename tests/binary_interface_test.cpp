// What other binaries rely on: slot numbers, calling conventions, no-ops, and objects that are released after
// the library was closed.

#include "support/allocations.h"
#include "support/rows.h"
#include "support/vtable_calls.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <string>
#include <unistd.h>

namespace
{

using namespace vtable_calls;

struct BinaryInterface : testing::Test
{
    void SetUp() override
    {
        m_library = dlopen(KEL_LIBRARY, RTLD_NOW);
        ASSERT_TRUE(m_library) << dlerror();
        ASSERT_EQ(1, run("DllMain", m_library, 1u, nullptr));
        ASSERT_EQ(1, run("ylrxDelegatedLoadEntry"));
        ASSERT_EQ(0, run("DllGetClassObject", symbol("CLSID_DOMDocument"), symbol("IID_IXMLDOMDocument"),
                         &m_document));
        wchar_t xml[] = L"<a x='1'>t<b/></a>", load[] = L"load", *names[] = {load};
        std::int16_t success = 7;
        ASSERT_EQ(0, call(m_document, kLoadXml, xml, &success));
        EXPECT_EQ(-1, success);
        EXPECT_EQ(0, call(m_document, kDocumentElement, &m_root));
        EXPECT_EQ(0, call(m_root, kFirstChild, &m_text));
        EXPECT_EQ(0, call(m_root, kChildNodes, &m_list));
        EXPECT_EQ(0, call(m_root, kAttributes, &m_map));
        EXPECT_EQ(0, call(m_map, kMapItem, 0, &m_attribute));
        const auto registerLibrary = "_ZN10KelTypelib15RegisterTypeLibERK4GUIDPKw";
        EXPECT_EQ(0, run(registerLibrary, symbol("LIBID_MSXML"), L"" KEL_TYPE_LIBRARY));
        std::int32_t id = 0;
        EXPECT_EQ(0, call(m_document, kGetIdsOfNames, symbol("IID_IXMLDOMNode"), names, 1u, 0u, &id));
        EXPECT_EQ(58, id);
    }
    /// Closes the library, and only then releases the objects.
    void TearDown() override
    {
        run("ylrxDelegatedUnloadEntry");
        EXPECT_EQ(0, dlclose(m_library));
        // The root has a second reference, held by the document.
        for (void* object : {m_attribute, m_map, m_list, m_text, m_root, m_document})
            EXPECT_EQ(object == m_root ? 1 : 0, call(object, kRelease)) << "references left";
    }

    void* symbol(const char* name) { return dlsym(m_library, name); }
    /// Calls an exported function, whatever its type is.
    template <class... Arguments>
    int run(const char* name, Arguments... arguments)
    {
        return reinterpret_cast<int (*)(Arguments...)>(symbol(name))(arguments...);
    }

    void *m_document = nullptr, *m_root = nullptr, *m_text = nullptr, *m_list = nullptr, *m_map = nullptr,
         *m_attribute = nullptr, *m_library = nullptr;
};

TEST_F(BinaryInterface, VtablesAndInterfacesAreAsListedAndNoOpsReturnOkAndWriteNothing)
{
    const std::map<std::string, void*> objects{{"document", m_document},   {"root", m_root}, {"text", m_text},
                                               {"attribute", m_attribute}, {"list", m_list}, {"map", m_map}};
    keltest::forEachRow(KEL_TESTS "vtables.txt", [&](keltest::Row row) {
        SCOPED_TRACE(row.where);
        std::string name, kind, method;
        int slot = 0;
        ASSERT_TRUE(row >> name >> slot >> kind >> method);
        void* const object = objects.at(name);
        if (kind == "has" || kind == "lacks") {
            const bool hasInterface = kind == "has";
            void* found = &found;
            EXPECT_EQ(hasInterface ? 0 : kNoInterface, call(object, slot, symbol(method.c_str()), &found));
            ASSERT_EQ(hasInterface ? object : nullptr, found);
            EXPECT_EQ(kNullPointer, call(object, slot, symbol(method.c_str()), nullptr));
            if (hasInterface)
                call(found, kRelease);
            return;
        }
        EXPECT_EQ(symbol(method.c_str()), (*static_cast<void***>(object))[slot]) << "wrong method in slot";
        if (kind == "works")
            return;
        // Passes pointers to this storage in every register and stack slot that an argument of a no-op can
        // use.
        std::array<std::array<unsigned char, 64>, 3> storage;
        std::memset(&storage, 0xA5, sizeof storage);
        const auto expected = storage;
        const Variant value{8, {}, storage[2].data(), nullptr};
        EXPECT_EQ(0, call(object, slot, storage[0].data(), storage[1].data(), storage[2].data(), value));
        EXPECT_EQ(expected, storage) << "a no-op must write nothing";
    });
    const std::string path = testing::TempDir() + "after_no_ops." + std::to_string(getpid());
    std::wstring widePath(path.begin(), path.end());
    EXPECT_EQ(0, call(m_document, kSave, Variant{8, {}, widePath.data(), nullptr}));
    std::ifstream saved(path);
    EXPECT_EQ("<a x=\"1\">t<b/>\n</a>\n", std::string(std::istreambuf_iterator<char>(saved), {}));
    std::remove(path.c_str());
}

TEST_F(BinaryInterface, LoadingCallingByNameAndClosingRepeatedlyLeaksNothing)
{
    const std::size_t before = allocations::live();
    for (int round = 0; round < 3; ++round) {
        TearDown();
        SetUp();
    }
    EXPECT_EQ(before, allocations::live()) << "no allocation may be left";
}

} // namespace
