// What other binaries rely on: slot numbers and calling conventions, what is not carried out, and objects
// that outlive an unloading.

#include "support/allocations.h"
#include "support/own_host.h"

#include <array>
#include <cstring>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <sys/mman.h>
#include <tuple>
#include <unistd.h>

namespace
{

using namespace own_host;

class BinaryInterface : public testing::Test
{
protected:
    void SetUp() override
    {
        m_com = dlopen(KEL_COM_LIBRARY, RTLD_NOW);
        m_library = dlopen(KEL_LIBRARY, RTLD_NOW);
        ASSERT_TRUE(m_library && m_com) << dlerror();
        ASSERT_EQ(1, function<int (*)(void*, unsigned, void*)>("DllMain")(m_library, 1, nullptr));
        ASSERT_EQ(1, function<int (*)()>("ylrxDelegatedLoadEntry")());
        using Get = std::int32_t (*)(const Guid&, const Guid&, void**);
        ASSERT_EQ(0, function<Get>("DllGetClassObject")(guid("CLSID_DOMDocument"),
                                                        guid("IID_IXMLDOMDocument"), &m_document));
        wchar_t xml[] = L"<a x='1'>t<b/></a>", load[] = L"load", *names[] = {load};
        std::int16_t success = 7;
        ASSERT_EQ(0, call(m_document, kLoadXml, xml, &success));
        EXPECT_EQ(-1, success);
        EXPECT_EQ(0, call(m_document, kDocumentElement, &m_root));
        EXPECT_EQ(0, call(m_root, kFirstChild, &m_text));
        EXPECT_EQ(0, call(m_root, kChildNodes, &m_list));
        EXPECT_EQ(0, call(m_root, kAttributes, &m_map));
        EXPECT_EQ(0, call(m_map, kMapItem, 0, &m_attribute));
        using Register = std::int32_t (*)(const Guid&, const wchar_t*);
        const auto name = "_ZN10KelTypelib15RegisterTypeLibERK4GUIDPKw";
        EXPECT_EQ(0, function<Register>(name)(guid("LIBID_MSXML"), L"" KEL_TYPE_LIBRARY));
        std::int32_t id = 0;
        EXPECT_EQ(0, call(m_document, kGetIdsOfNames, &guid("IID_IXMLDOMNode"), names, 1u, 0u, &id));
        EXPECT_EQ(58, id);
    }
    /// The objects go after the libraries were unloaded.
    void TearDown() override
    {
        function<void (*)()>("ylrxDelegatedUnloadEntry")();
        EXPECT_EQ(0, dlclose(m_library));
        EXPECT_EQ(0, dlclose(m_com));
        // Only the document holds its element as well.
        for (void* object : {m_attribute, m_map, m_list, m_text, m_root, m_document})
            EXPECT_EQ(object == m_root ? 1 : 0, call(object, kRelease));
    }

    template <class Function>
    Function function(const char* name)
    {
        return reinterpret_cast<Function>(dlsym(m_library, name));
    }
    const Guid& guid(const char* name) { return *function<const Guid*>(name); }

    void *m_document = nullptr, *m_root = nullptr, *m_text = nullptr, *m_list = nullptr, *m_map = nullptr,
         *m_attribute = nullptr, *m_com = nullptr, *m_library = nullptr;
};

TEST_F(BinaryInterface, AHostWithoutOurHeadersDrivesADocumentThroughTheSlots)
{
    wchar_t name[] = L"b", key[] = L"x", *none = nullptr;
    void *found = nullptr, *named = nullptr, *made = nullptr, *placed = nullptr;
    std::int32_t number = 0;
    const auto numeric = [](std::intptr_t value) {
        return Variant{3, {}, reinterpret_cast<void*>(value), nullptr};
    };
    EXPECT_EQ(0, call(m_root, kSetAttribute, key, numeric(5)));
    EXPECT_EQ(0, call(m_map, kMapNamedItem, key, &named));
    Variant value{};
    EXPECT_EQ(0, call(named, kAttributeValue, &value));
    EXPECT_EQ(8, value.type);
    EXPECT_STREQ(L"5", static_cast<wchar_t*>(value.value));
    reinterpret_cast<void (*)(void*)>(dlsym(m_com, "SysFreeString"))(value.value);
    EXPECT_EQ(0, call(m_document, kCreateNode, numeric(1), name, none, &made));
    EXPECT_EQ(0, call(m_root, kAppendChild, made, &placed));
    EXPECT_EQ(0, call(m_root, kSelectNodes, name, &found));
    EXPECT_EQ(0, call(found, kListLength, &number));
    EXPECT_EQ(2, number);
    EXPECT_EQ(0, call(m_document, kSave, Variant{8, {}, const_cast<wchar_t*>(L"/dev/null"), nullptr}));
    for (void* object : {placed, made, named, found})
        EXPECT_EQ(0, call(object, kRelease));
}

TEST_F(BinaryInterface, EveryVtableEndsWithTheDestructorAndItsNoOpsAnswerOkAndWriteNothing)
{
    const std::tuple<int, const char*> slots[] = {
        {kNodeName, "_ZN19CMorvXMLDOMDocument12get_nodeNameEPPw"},
        {42, "_ZN19CMorvXMLDOMDocument21transformNodeToObjectEP11IXMLDOMNode7VARIANT"},
        {43, "_ZN19CMorvXMLDOMDocument11get_doctypeEPP19IXMLDOMDocumentType"},
        {kLoad, "_ZN19CMorvXMLDOMDocument4loadE7VARIANTPs"},
        {75, "_ZN19CMorvXMLDOMDocument19put_ontransformnodeE7VARIANT"},
    };
    for (const auto& [slot, symbol] : slots)
        EXPECT_EQ(function<void*>(symbol), (*static_cast<void***>(m_document))[slot]) << symbol;

    const struct
    {
        void* object;
        int end; ///< the slot of the destructor
        const char* destructor;
        std::set<int> working; ///< the slots, from 7 on, of what is carried out, but for the common ones
    } classes[] = {
        {m_document, 76, "_ZN19CMorvXMLDOMDocumentD1Ev", {8, 36, 45, 56, 58, 65, 66}},
        {m_text, 43, "_ZN15CMorvXMLDOMNodeD1Ev", {8, 26}},
        {m_root, 52, "_ZN18CMorvXMLDOMElementD1Ev", {24, 26, 36, 45}},
        {m_attribute, 46, "_ZN20CMorvXMLDOMAttributeD1Ev", {26, 44}},
        {m_list, 12, "_ZN19CMorvXMLDOMNodeListD1Ev", {7, 8, 9}},
        {m_map, 17, "_ZN23CMorvXMLDOMNamedNodeMapD1Ev", {7, 10, 11}},
    };
    const std::set<int> common{7, 10, 11, 12, 13, 17, 20, 21, 22, 23, 27}; // to all nodes
    for (const auto& [object, end, destructor, working] : classes) {
        EXPECT_EQ(function<void*>(destructor), (*static_cast<void***>(object))[end]) << destructor;
        const bool isNode = object != m_list && object != m_map;
        for (int slot = 7; slot < end; ++slot) {
            if (working.count(slot) || (isNode && common.count(slot)))
                continue;
            // Pointers to this lie in every register that an argument may use, and where a VARIANT would.
            std::array<std::array<unsigned char, 64>, 3> storage;
            std::memset(&storage, 0xA5, sizeof storage);
            const auto expected = storage;
            const Variant value{8, {}, storage[2].data(), nullptr};
            EXPECT_EQ(0, call(object, slot, storage[0].data(), storage[1].data(), storage[2].data(), value))
                << destructor << slot;
            EXPECT_EQ(expected, storage) << destructor << slot;
        }
    }
    const int file = memfd_create("saved", 0);
    std::wstring path = L"/proc/self/fd/" + std::to_wstring(file);
    EXPECT_EQ(0, call(m_document, kSave, Variant{8, {}, path.data(), nullptr}));
    char content[64] = {};
    EXPECT_LT(0, pread(file, content, sizeof content - 1, 0));
    EXPECT_STREQ("<a x=\"1\">t<b/>\n</a>\n", content);
    close(file);
}

TEST_F(BinaryInterface, LoadingCallingByNameAndUnloadingOverAndOverLeavesNothingMore)
{
    const std::size_t before = allocations::live();
    for (int round = 0; round < 3; ++round) {
        TearDown();
        SetUp();
    }
    EXPECT_EQ(before, allocations::live());
}

} // namespace
