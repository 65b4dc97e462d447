// The fixture that the tests of the object model share. Loads documents from text, shortens the calls of
// getters, and checks for leaks.

#pragma once

#include "KelComWrapper/typelib.h"
#include "support/allocations.h"
#include "support/objects.h"

#include <QtCore/QTemporaryDir>
#include <array>
#include <gtest/gtest.h>
#include <string>

/// An object of each class: a document, its root, and the root's text, attribute, children and attribute map.
struct OneOfEach
{
    ComPtr<IXMLDOMDocument> document;
    ComPtr<IXMLDOMElement> root;
    ComPtr<IXMLDOMNode> text;
    ComPtr<IXMLDOMAttribute> attribute;
    ComPtr<IXMLDOMNodeList> list;
    ComPtr<IXMLDOMNamedNodeMap> map;

    /// The objects that are nodes.
    std::array<IXMLDOMNode*, 4> nodes() const
    {
        return {document.get(), root.get(), text.get(), attribute.get()};
    }
};

struct DomTest : testing::Test
{
    static void SetUpTestSuite()
    {
        DllMain(nullptr, 1, nullptr);
        KelTypelib::RegisterTypeLib(LIBID_MSXML, L"" KEL_TYPE_LIBRARY);
    }

    static ComPtr<IXMLDOMDocument> documentOf(const std::wstring& xml)
    {
        auto document = newDocument();
        VARIANT_BOOL success = 7;
        EXPECT_EQ(S_OK, document->loadXML(Bstr(xml.c_str()).get(), &success));
        EXPECT_EQ(VARIANT_TRUE, success);
        return document;
    }

    static auto rootOf(const ComPtr<IXMLDOMDocument>& document)
    {
        return get(*document, &IXMLDOMDocument::get_documentElement);
    }
    static auto firstChildOf(IXMLDOMNode& node) { return get(node, &IXMLDOMNode::get_firstChild); }
    static auto parentOf(IXMLDOMNode& node) { return get(node, &IXMLDOMNode::get_parentNode); }
    static auto listOf(IXMLDOMNode& node) { return get(node, &IXMLDOMNode::get_childNodes); }
    static auto mapOf(IXMLDOMNode& node) { return get(node, &IXMLDOMNode::get_attributes); }

    template <class List>
    static LONG lengthOf(List& list)
    {
        LONG length = -7;
        EXPECT_EQ(S_OK, list.get_length(&length));
        return length;
    }

    static ComPtr<IXMLDOMAttribute> attributeOf(IXMLDOMNode& element, const std::wstring& name)
    {
        ComPtr<IXMLDOMNode> node;
        EXPECT_EQ(S_OK, mapOf(element)->getNamedItem(Bstr(name.c_str()).get(), node.put()));
        return as<IXMLDOMAttribute>(node);
    }

    /// \param xml a document whose root element begins with text and has an attribute `x`
    static OneOfEach oneOfEach(const wchar_t* xml)
    {
        const auto document = documentOf(xml);
        const auto root = rootOf(document);
        return {document, root, firstChildOf(*root), attributeOf(*root, L"x"), listOf(*root), mapOf(*root)};
    }

    static ComPtr<IXMLDOMNode> create(IXMLDOMDocument& document, LONG type, const wchar_t* name,
                                      const wchar_t* uri = nullptr)
    {
        ComPtr<IXMLDOMNode> node;
        const Bstr qualifiedName(name), namespaceUri(uri);
        EXPECT_EQ(S_OK, document.createNode(Variant(type).get(), qualifiedName.get(), namespaceUri.get(),
                                            node.put()));
        return node;
    }
    static ComPtr<IXMLDOMNode> append(IXMLDOMNode& parent, IXMLDOMNode& child)
    {
        ComPtr<IXMLDOMNode> result;
        EXPECT_EQ(S_OK, parent.appendChild(&child, result.put()));
        EXPECT_TRUE(result) << "appendChild must return an object for the child even if it refuses the child";
        return result;
    }

    QString pathOf(const char* name) const { return m_directory.filePath(QString::fromUtf8(name)); }
    static HRESULT load(IXMLDOMDocument& document, const QString& path, VARIANT_BOOL* success)
    {
        return document.load(Variant(path.toStdWString()).get(), success);
    }
    static HRESULT save(IXMLDOMDocument& document, const QString& path)
    {
        return document.save(Variant(path.toStdWString()).get());
    }

    const QTemporaryDir m_directory;
};

/// Runs `scenario` twice, because the first run also initialises what the library creates lazily. \return the
/// number of allocations (under a sanitizer: bytes) that the second run leaks
inline std::size_t leakedBy(const std::function<void()>& scenario)
{
    scenario();
    const std::size_t before = allocations::live();
    scenario();
    return allocations::live() - before;
}

inline void expectNoLeaks(const std::function<void()>& scenario)
{
    EXPECT_EQ(0u, leakedBy(scenario)) << "the second run must leak nothing";
}
