// Every answer is looked at here, so that the rows need not.

#include "host.h"

#include "KelComWrapper/typelib.h"
#include "KelXmlLib/module.h"

#include <QtCore/QFile>
#include <stdexcept>

namespace bench
{

void startLibrary()
{
    DllMain(nullptr, 1, nullptr);
    const std::wstring path = QString::fromUtf8(KEL_TYPE_LIBRARY).toStdWString();
    require(KelTypelib::RegisterTypeLib(LIBID_MSXML, path.c_str()) == S_OK, "registering the type library");
}

void require(bool works, const char* what)
{
    if (!works)
        throw std::runtime_error(what);
}

ComPtr<IXMLDOMDocument> newDocument()
{
    ComPtr<IXMLDOMDocument> document;
    require(DllGetClassObject(CLSID_DOMDocument, IID_IXMLDOMDocument,
                              reinterpret_cast<void**>(document.put())) == S_OK,
            "making a document");
    return document;
}

ComPtr<IXMLDOMDocument> loadedDocument(const QString& path)
{
    auto document = newDocument();
    require(document->load(variantOf(bstrOf(path)), nullptr) == S_OK, "loading through the library");
    return document;
}

ComPtr<IXMLDOMElement> rootOf(IXMLDOMDocument& document)
{
    ComPtr<IXMLDOMElement> root;
    require(document.get_documentElement(root.put()) == S_OK, "the document element");
    return root;
}

ComPtr<IXMLDOMElement> newElement(IXMLDOMDocument& document, const Bstr& name)
{
    VARIANT type{};
    type.vt = VT_I4;
    type.lVal = NODE_ELEMENT;
    IXMLDOMNode* node = nullptr;
    require(document.createNode(type, name.get(), nullptr, &node) == S_OK, "making an element");
    return ComPtr<IXMLDOMElement>::adopt(static_cast<IXMLDOMElement*>(node));
}

QDomDocument loadedByQt(const QString& path)
{
    QFile file(path);
    QDomDocument document;
    require(file.open(QIODevice::ReadOnly) && document.setContent(&file), "loading with Qt");
    return document;
}

Bstr bstrOf(const QString& text)
{
    return Bstr(text.toStdWString().c_str());
}

const Text& textAt(std::size_t index)
{
    constexpr std::size_t kDifferent = 1000;
    static const std::vector<Text> kTexts = [] {
        std::vector<Text> texts;
        for (std::size_t number = 0; number < kDifferent; ++number)
            texts.emplace_back(QStringLiteral("a few words about %1").arg(number));
        return texts;
    }();
    return kTexts[index % kDifferent];
}

QString flatTree(std::int64_t count)
{
    QString xml = QStringLiteral("<root>");
    for (std::int64_t number = 0; number < count; ++number)
        xml += QStringLiteral("<item id='%1' kind='spare'>text %1</item>").arg(number);
    return xml + QStringLiteral("</root>");
}

LibraryTree::LibraryTree(std::int64_t count) : document(newDocument())
{
    require(document->loadXML(bstrOf(flatTree(count)).get(), nullptr) == S_OK, "loading a text");
    root = rootOf(*document);
    ComPtr<IXMLDOMNodeList> children;
    root->get_childNodes(children.put());
    ComPtr<IXMLDOMNode> child;
    while (children->nextNode(child.put()) == S_OK)
        elements.push_back(ComPtr<IXMLDOMElement>::adopt(static_cast<IXMLDOMElement*>(child.detach())));
}

QtTree::QtTree(std::int64_t count)
{
    require(document.setContent(flatTree(count)), "parsing a text");
    root = document.documentElement();
    for (QDomElement child = root.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        elements.push_back(child);
}

} // namespace bench
