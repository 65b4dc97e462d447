// Each function here checks the results of its calls, so that the benchmarks need not check them.

#include "host.h"

#include "KelComWrapper/typelib.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <stdexcept>

namespace bench
{

namespace
{

constexpr char kMimeDatabase[] = "/usr/share/mime/packages/freedesktop.org.xml";

QString inputFileOf(const QString& name, const QString& record, std::int64_t bytes)
{
    const QString path = outputFile(QStringLiteral("%1-%2.xml").arg(name).arg(bytes));
    if (QFile::exists(path))
        return path;
    static const QString kWords =
        QString::fromUtf8("of steel, nickel and brass – to be kept dry; größer als ein Daumen, 三十年 old, "
                          "with threads at either end, greased, boxed by the dozen");
    QByteArray text = "<?xml version='1.0' encoding='UTF-8'?>\n<catalogue>\n";
    for (int number = 1; text.size() < bytes; ++number)
        text += QString(record)
                    .replace(QStringLiteral("%1"), QString::number(number))
                    .replace(QStringLiteral("%2"), kWords.left(20 + number * 37 % 120))
                    .toUtf8();
    text += "</catalogue>\n";
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(text) == text.size(), "writing an input file");
    return path;
}

} // namespace

void registerTypeLibrary()
{
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
    static const int isAttached = DllMain(nullptr, 1, nullptr);
    void* document = nullptr;
    require(isAttached && DllGetClassObject(CLSID_DOMDocument, IID_IXMLDOMDocument, &document) == S_OK,
            "creating a document");
    return ComPtr<IXMLDOMDocument>::adopt(static_cast<IXMLDOMDocument*>(document));
}

ComPtr<IXMLDOMNodeList> childrenOf(IXMLDOMNode& node)
{
    ComPtr<IXMLDOMNodeList> list;
    kel::check(node.get_childNodes(list.put()), "asking for children");
    return list;
}

ComPtr<IXMLDOMNamedNodeMap> attributesOf(IXMLDOMNode& node)
{
    ComPtr<IXMLDOMNamedNodeMap> map;
    kel::check(node.get_attributes(map.put()), "asking for attributes");
    return map;
}

ComPtr<IXMLDOMDocument> documentOf(const QString& xml)
{
    auto document = newDocument();
    require(document->loadXML(bstrOf(xml).get(), nullptr) == S_OK, "loading a text");
    return document;
}

ComPtr<IXMLDOMDocument> loadedByLibrary(const QString& path)
{
    auto document = newDocument();
    require(document->load(variantOf(bstrOf(path)), nullptr) == S_OK, "loading a file");
    return document;
}

ComPtr<IXMLDOMElement> rootOf(IXMLDOMDocument& document)
{
    ComPtr<IXMLDOMElement> root;
    require(document.get_documentElement(root.put()) == S_OK, "asking for the document element");
    return root;
}

ComPtr<IXMLDOMElement> newElement(IXMLDOMDocument& document, const Bstr& name)
{
    VARIANT type{};
    type.vt = VT_I4;
    type.lVal = NODE_ELEMENT;
    IXMLDOMNode* node = nullptr;
    require(document.createNode(type, name.get(), nullptr, &node) == S_OK, "creating an element");
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

const Names& names()
{
    static const Names kNames;
    return kNames;
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

QString inputFile(std::int64_t bytes)
{
    if (bytes == 0)
        return QString::fromUtf8(kMimeDatabase);
    static const QString kRecord = QString::fromUtf8("  <record id=\"r%1\" kind=\"spare\" weight=\"%1.5\">\n"
                                                     "    <name>Part %1</name>\n"
                                                     "    <name xml:lang=\"de\">Gerät für %1 Stück</name>\n"
                                                     "    <!-- checked -->\n"
                                                     "    <note>%2</note>\n"
                                                     "    <place><shelf>A%1 &amp; B</shelf><box/></place>\n"
                                                     "    <source><![CDATA[if (a < b) use(%1);]]></source>\n"
                                                     "  </record>\n");
    return inputFileOf(QStringLiteral("records"), kRecord, bytes);
}

QString inputFileOfTags(std::int64_t bytes)
{
    return inputFileOf(QStringLiteral("tags"), QStringLiteral("<a><b/><c><d/></c></a><e><f>%1</f></e>"),
                       bytes);
}

QString outputFile(const QString& name)
{
    static const QTemporaryDir directory;
    require(directory.isValid(), "creating a temporary directory");
    return directory.filePath(name);
}

QString flatTree(std::int64_t count)
{
    QString xml = QStringLiteral("<root>");
    for (std::int64_t number = 0; number < count; ++number)
        xml += QStringLiteral("<item id='%1' kind='spare'>text %1</item>").arg(number);
    return xml + QStringLiteral("</root>");
}

LibraryTree::LibraryTree(std::int64_t count)
    : document(documentOf(flatTree(count))), root(rootOf(*document)),
      otherRoot(rootOf(*documentOf(QStringLiteral("<other/>"))))
{
    const auto children = childrenOf(*root);
    while (const auto child = itemOf(*children, static_cast<LONG>(elements.size())))
        elements.push_back(asElement(child));
}

QtTree::QtTree(std::int64_t count)
{
    require(document.setContent(flatTree(count)) && other.setContent(QStringLiteral("<other/>")), "parsing");
    root = document.documentElement();
    for (QDomElement child = root.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        elements.push_back(child);
}

} // namespace bench
