// What the object-model tests share: documents from text, owners for what comes out, and a check that each
// test frees what it made.

#pragma once

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/typelib.h"
#include "KelXmlLib/guids.h"
#include "KelXmlLib/module.h"
#include "KelXmlLib/xmldom.h"
#include "support/allocations.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTextStream>
#include <QtXml/QDomDocument>
#include <gtest/gtest.h>
#include <string>

using kel::Bstr;
using kel::ComPtr;

/// Builds a VARIANT for a call; a BSTR in it stays the caller's.
inline VARIANT variantOf(const Bstr& text)
{
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = text.get();
    return value;
}

inline VARIANT variantOf(LONG number)
{
    VARIANT value{};
    value.vt = VT_I4;
    value.lVal = number;
    return value;
}

/// The wide string that a getter hands out; `L"(result n)"` when it does not answer S_OK.
template <class Object, class Getter>
std::wstring textOf(const Object& object, Getter getter)
{
    Bstr text;
    const HRESULT result = ((*object).*getter)(text.put());
    return result == S_OK ? std::wstring(text.c_str(), text.length())
                          : L"(result " + std::to_wstring(result) + L")";
}

/// An object of each class over one document: its element, and what that has.
struct OneOfEach
{
    ComPtr<IXMLDOMDocument> document;
    ComPtr<IXMLDOMElement> root;
    ComPtr<IXMLDOMNode> text;
    ComPtr<IXMLDOMAttribute> attribute;
    ComPtr<IXMLDOMNodeList> list;
    ComPtr<IXMLDOMNamedNodeMap> map;
};

class DomTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        DllMain(nullptr, 1, nullptr);
        KelTypelib::RegisterTypeLib(LIBID_MSXML, QString::fromUtf8(KEL_TYPE_LIBRARY).toStdWString().c_str());
    }

    static ComPtr<IXMLDOMDocument> newDocument()
    {
        ComPtr<IXMLDOMDocument> document;
        EXPECT_EQ(S_OK, DllGetClassObject(CLSID_DOMDocument, IID_IXMLDOMDocument,
                                          reinterpret_cast<void**>(document.put())));
        return document;
    }

    static ComPtr<IXMLDOMDocument> documentOf(const wchar_t* xml)
    {
        auto document = newDocument();
        VARIANT_BOOL success = 7;
        EXPECT_EQ(S_OK, document->loadXML(Bstr(xml).get(), &success));
        EXPECT_EQ(VARIANT_TRUE, success);
        return document;
    }

    static ComPtr<IXMLDOMElement> rootOf(const ComPtr<IXMLDOMDocument>& document)
    {
        ComPtr<IXMLDOMElement> root;
        EXPECT_EQ(S_OK, document->get_documentElement(root.put()));
        return root;
    }

    static ComPtr<IXMLDOMNode> firstChildOf(IXMLDOMNode& node)
    {
        ComPtr<IXMLDOMNode> child;
        node.get_firstChild(child.put());
        return child;
    }

    static ComPtr<IXMLDOMAttribute> attributeOf(IXMLDOMNode& element, const wchar_t* name)
    {
        ComPtr<IXMLDOMNamedNodeMap> map;
        element.get_attributes(map.put());
        ComPtr<IXMLDOMNode> node;
        EXPECT_EQ(S_OK, map->getNamedItem(Bstr(name).get(), node.put()));
        ComPtr<IXMLDOMAttribute> attribute;
        node->QueryInterface(IID_IXMLDOMAttribute, reinterpret_cast<void**>(attribute.put()));
        return attribute;
    }

    /// \param xml its element has text first and an attribute `x`
    static OneOfEach oneOfEach(const wchar_t* xml)
    {
        OneOfEach made;
        made.document = documentOf(xml);
        made.root = rootOf(made.document);
        made.text = firstChildOf(*made.root);
        made.attribute = attributeOf(*made.root, L"x");
        made.root->get_childNodes(made.list.put());
        made.root->get_attributes(made.map.put());
        return made;
    }

    static ComPtr<IXMLDOMNode> create(IXMLDOMDocument& document, LONG type, const wchar_t* name)
    {
        ComPtr<IXMLDOMNode> node;
        EXPECT_EQ(S_OK, document.createNode(variantOf(type), Bstr(name).get(), nullptr, node.put()));
        return node;
    }

    /// The children as a list, each by its own index.
    static ComPtr<IXMLDOMNode> childAt(IXMLDOMNode& node, LONG index)
    {
        ComPtr<IXMLDOMNodeList> list;
        node.get_childNodes(list.put());
        ComPtr<IXMLDOMNode> child;
        list->get_item(index, child.put());
        return child;
    }

    /// What `save` writes.
    std::string saved(const ComPtr<IXMLDOMDocument>& document)
    {
        const QString path = m_directory.filePath(QStringLiteral("saved.xml"));
        EXPECT_EQ(S_OK, document->save(variantOf(Bstr(path.toStdWString().c_str()))));
        return contentOf(path).toStdString();
    }

    /// The same by Qt directly.
    std::string saved(const QDomDocument& document)
    {
        const QString path = m_directory.filePath(QStringLiteral("saved_by_qt.xml"));
        {
            QFile file(path);
            EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text));
            QTextStream stream(&file);
            stream.setCodec("UTF-8");
            document.save(stream, 4, QDomNode::EncodingFromDocument);
        }
        return contentOf(path).toStdString();
    }

    QString pathOf(const char* name) const { return m_directory.filePath(QString::fromUtf8(name)); }

    static void write(const QString& path, const QByteArray& bytes)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    static QByteArray contentOf(const QString& path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    /// Loads a file with Qt directly and through the library. \return the verdict, expected to be the same
    static bool loadBoth(const QString& path, QDomDocument& theirs, const ComPtr<IXMLDOMDocument>& ours)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const bool verdict = theirs.setContent(&file);
        VARIANT_BOOL success = 7;
        EXPECT_EQ(verdict ? S_OK : S_FALSE, load(ours, path, &success));
        EXPECT_EQ(verdict ? VARIANT_TRUE : VARIANT_FALSE, success);
        return verdict;
    }

    static HRESULT load(const ComPtr<IXMLDOMDocument>& document, const QString& path, VARIANT_BOOL* success)
    {
        return document->load(variantOf(Bstr(path.toStdWString().c_str())), success);
    }

private:
    QTemporaryDir m_directory;
};

/// Runs `scenario` twice and expects the second run, which finds every lazy start done, to leave nothing
/// live.
template <class Scenario>
void expectNothingLeft(Scenario scenario)
{
    scenario();
    const std::size_t before = allocations::live();
    scenario();
    EXPECT_EQ(before, allocations::live());
}
