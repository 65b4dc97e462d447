// What other binaries rely on: exported names, slot numbers, calling conventions.

#include "support/own_host.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <dlfcn.h>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <set>
#include <sstream>
#include <string>

namespace
{

using namespace own_host;

class BinaryInterface : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_com = dlopen(KEL_COM_LIBRARY, RTLD_NOW);
        m_library = dlopen(KEL_LIBRARY, RTLD_NOW);
        ASSERT_TRUE(m_library && m_com) << dlerror();
        ASSERT_EQ(1, function<int (*)(void*, unsigned, void*)>("DllMain")(m_library, 1, nullptr));
        ASSERT_EQ(1, function<int (*)()>("ylrxDelegatedLoadEntry")());
    }
    void TearDown() override
    {
        function<void (*)()>("ylrxDelegatedUnloadEntry")();
        EXPECT_EQ(0, dlclose(m_library));
        EXPECT_EQ(0, dlclose(m_com));
    }

    template <class Function>
    Function function(const char* name)
    {
        return reinterpret_cast<Function>(dlsym(m_library, name));
    }
    const Guid& guid(const char* name) { return *function<const Guid*>(name); }

    void* newDocument()
    {
        void* document = nullptr;
        using Get = std::int32_t (*)(const Guid&, const Guid&, void**);
        EXPECT_EQ(0, function<Get>("DllGetClassObject")(guid("CLSID_DOMDocument"),
                                                        guid("IID_IXMLDOMDocument"), &document));
        return document;
    }

    std::wstring takeString(wchar_t* text)
    {
        const std::wstring copy = text ? text : L"(null)";
        reinterpret_cast<void (*)(wchar_t*)>(dlsym(m_com, "SysFreeString"))(text);
        return copy;
    }

private:
    void* m_com = nullptr;
    void* m_library = nullptr;
};

TEST_F(BinaryInterface, AHostWithoutOurHeadersDrivesADocumentThroughTheSlots)
{
    wchar_t xml[] = L"<a x='1'><b>t</b><b/></a>";
    std::int16_t success = 7;
    void* const document = newDocument();
    ASSERT_EQ(0, call(document, kLoadXml, xml, &success));
    EXPECT_EQ(-1, success);
    void *root = nullptr, *child = nullptr, *list = nullptr, *map = nullptr, *attribute = nullptr,
         *made = nullptr;
    EXPECT_EQ(0, call(document, kDocumentElement, &root));
    EXPECT_EQ(0, call(root, kFirstChild, &child));
    wchar_t* text = nullptr;
    EXPECT_EQ(0, call(child, kNodeName, &text));
    EXPECT_EQ(L"b", takeString(text));
    EXPECT_EQ(0, call(child, kGetText, &text));
    EXPECT_EQ(L"t", takeString(text));
    wchar_t name[] = L"b";
    std::int32_t number = 0;
    EXPECT_EQ(0, call(root, kSelectNodes, name, &list));
    EXPECT_EQ(0, call(list, kListLength, &number));
    EXPECT_EQ(2, number);
    EXPECT_EQ(0, call(root, kAttributes, &map));
    wchar_t key[] = L"x";
    EXPECT_EQ(0, call(map, kMapNamedItem, key, &attribute));
    Variant value{};
    EXPECT_EQ(0, call(attribute, kAttributeValue, &value));
    EXPECT_EQ(8, value.type);
    EXPECT_EQ(L"1", takeString(static_cast<wchar_t*>(value.value)));
    Variant five{3, {}, reinterpret_cast<void*>(5), nullptr};
    EXPECT_EQ(0, call(root, kSetAttribute, key, five));
    Variant element{3, {}, reinterpret_cast<void*>(1), nullptr};
    EXPECT_EQ(0, call(document, kCreateNode, element, name, static_cast<wchar_t*>(nullptr), &made));
    void* placed = nullptr;
    EXPECT_EQ(0, call(root, kAppendChild, made, &placed));
    EXPECT_EQ(0, call(list, kListLength, &number));
    EXPECT_EQ(3, number);
    Variant path{8, {}, const_cast<wchar_t*>(L"/dev/null"), nullptr};
    EXPECT_EQ(0, call(document, kSave, path));
    for (void* object : {placed, made, attribute, map, list, child, root, document})
        EXPECT_EQ(object == root ? 1 : 0, call(object, kRelease));
}

TEST_F(BinaryInterface, EveryVirtualTableEndsWithTheDestructorAfterThePublishedSlots)
{
    void* const document = newDocument();
    void *root = nullptr, *text = nullptr, *list = nullptr, *map = nullptr, *attribute = nullptr;
    wchar_t xml[] = L"<a x='1'>t</a>";
    call(document, kLoadXml, xml, static_cast<void*>(nullptr));
    call(document, kDocumentElement, &root);
    call(root, kFirstChild, &text);
    call(root, kChildNodes, &list);
    call(root, kAttributes, &map);
    call(map, kMapItem, 0, &attribute);
    const struct
    {
        void* object;
        int slot;
        const char* symbol;
    } rows[] = {
        {document, kQueryInterface, "_ZN19CMorvXMLDOMDocument14QueryInterfaceERK4GUIDPPv"},
        {document, kNodeName, "_ZN19CMorvXMLDOMDocument12get_nodeNameEPPw"},
        {document, 42, "_ZN19CMorvXMLDOMDocument21transformNodeToObjectEP11IXMLDOMNode7VARIANT"},
        {document, 43, "_ZN19CMorvXMLDOMDocument11get_doctypeEPP19IXMLDOMDocumentType"},
        {document, kLoad, "_ZN19CMorvXMLDOMDocument4loadE7VARIANTPs"},
        {document, 75, "_ZN19CMorvXMLDOMDocument19put_ontransformnodeE7VARIANT"},
        {document, 76, "_ZN19CMorvXMLDOMDocumentD1Ev"},
        {text, 43, "_ZN15CMorvXMLDOMNodeD1Ev"},
        {root, 52, "_ZN18CMorvXMLDOMElementD1Ev"},
        {attribute, 46, "_ZN20CMorvXMLDOMAttributeD1Ev"},
        {list, 12, "_ZN19CMorvXMLDOMNodeListD1Ev"},
        {map, 17, "_ZN23CMorvXMLDOMNamedNodeMapD1Ev"},
    };
    for (const auto& row : rows) {
        void** table = nullptr;
        std::memcpy(&table, row.object, sizeof table);
        EXPECT_EQ(function<void*>(row.symbol), table[row.slot]) << row.symbol;
    }
    for (void* object : {attribute, map, list, text, root, document})
        call(object, kRelease);
}

/// What `nm` says the library exports, as mangled names.
std::set<std::string> exportedNames()
{
    std::set<std::string> names;
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(
        popen("nm -D --defined-only --format=posix " KEL_LIBRARY, "r"), pclose);
    std::array<char, 1024> line{};
    while (pipe && std::fgets(line.data(), line.size(), pipe.get())) {
        std::istringstream fields(line.data());
        std::string name, kind;
        fields >> name >> kind;
        if (kind != "A")
            names.insert(name);
    }
    return names;
}

TEST(Exports, AreExactlyTheListedOnes)
{
    std::set<std::string> listed;
    std::ifstream file(KEL_EXPORTS);
    for (std::string line; std::getline(file, line);)
        listed.insert(line);
    const std::set<std::string> exported = exportedNames();
    ASSERT_GT(exported.size(), 300u);
    std::vector<std::string> difference;
    std::set_symmetric_difference(listed.begin(), listed.end(), exported.begin(), exported.end(),
                                  std::back_inserter(difference));
    for (const std::string& name : difference)
        ADD_FAILURE() << (listed.count(name) ? "no longer exported: " : "not in the list: ") << name;
    EXPECT_EQ(0, std::count_if(exported.begin(), exported.end(), [](const std::string& name) {
                  return name.find("CreateMe") != std::string::npos || name.find("Qt") != std::string::npos;
              }));
}

} // namespace
