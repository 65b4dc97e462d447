// Whole documents: loading, saving, copying.

#include "host.h"
#include "inputs.h"
#include "rows.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTextStream>
#include <memory>

namespace bench
{

namespace
{

constexpr int kIndent = 4; // of the library

const std::vector<Size> kUpTo10MB = {{"mime", 0, 15}, {"1 MB", 1'000'000, 25}, {"10 MB", 10'000'000, 5}};
const std::vector<Size> kUpTo100MB = {
    {"mime", 0, 15}, {"1 MB", 1'000'000, 25}, {"10 MB", 10'000'000, 5}, {"100 MB", 100'000'000, 3}};

Pair load(const Size& size)
{
    const QString path = inputFile(size.value);
    const auto wide = std::make_shared<Text>(path);
    const auto ours = std::make_shared<ComPtr<IXMLDOMDocument>>();
    const auto qts = std::make_shared<QDomDocument>();
    return {{[=] { return std::uint64_t{(*ours)->load(variantOf(wide->bstr), nullptr) == S_OK}; },
             [=] {
                 ours->reset();
                 *ours = newDocument();
             }},
            {[=] {
                 QFile file(path);
                 return std::uint64_t{file.open(QIODevice::ReadOnly) && qts->setContent(&file)};
             },
             [=] { *qts = QDomDocument(); }},
            1};
}

Pair loadXML(const Size& size)
{
    const auto text = std::make_shared<Text>(QString::fromUtf8(readFile(inputFile(size.value))));
    const auto ours = std::make_shared<ComPtr<IXMLDOMDocument>>();
    const auto qts = std::make_shared<QDomDocument>();
    return {{[=] { return std::uint64_t{(*ours)->loadXML(text->bstr.get(), nullptr) == S_OK}; },
             [=] {
                 ours->reset();
                 *ours = newDocument();
             }},
            {[=] {
                 const QString narrowed =
                     QString::fromWCharArray(text->wide.data(), static_cast<int>(text->wide.size()));
                 return std::uint64_t{qts->setContent(narrowed)};
             },
             [=] { *qts = QDomDocument(); }},
            1};
}

std::uint64_t sizeOf(const QString& path)
{
    return static_cast<std::uint64_t>(QFileInfo(path).size());
}

Pair save(const Size& size)
{
    const auto ours = loadedDocument(inputFile(size.value));
    const QDomDocument qts = loadedByQt(inputFile(size.value));
    const auto path = std::make_shared<Text>(outputFile(QStringLiteral("saved.xml")));
    return {{[=] {
                 ours->save(variantOf(path->bstr));
                 return sizeOf(path->ready);
             },
             [=] { QFile::remove(path->ready); }},
            {[=] {
                 QFile file(path->ready);
                 if (file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
                     QTextStream stream(&file);
                     stream.setCodec("UTF-8");
                     qts.save(stream, kIndent, QDomNode::EncodingFromDocument);
                 }
                 file.close();
                 return sizeOf(path->ready);
             },
             [=] { QFile::remove(path->ready); }},
            1};
}

Pair clone(const Size& size)
{
    const auto document = loadedDocument(inputFile(size.value));
    const auto ours = rootOf(*document);
    const auto ourCopy = std::make_shared<ComPtr<IXMLDOMNode>>();
    const QDomDocument qts = loadedByQt(inputFile(size.value));
    const auto qtsCopy = std::make_shared<QDomNode>();
    return {{[=] { return std::uint64_t{ours->cloneNode(VARIANT_TRUE, ourCopy->put()) == S_OK && *ourCopy}; },
             [=] { ourCopy->reset(); }},
            {[=] {
                 *qtsCopy = qts.documentElement().cloneNode(true);
                 return std::uint64_t{!qtsCopy->isNull()};
             },
             [=] { *qtsCopy = QDomNode(); }},
            1};
}

} // namespace

std::vector<Row> documentRows()
{
    return {{"load", kUpTo100MB, load, 1.05},
            {"loadXML", kUpTo10MB, loadXML, 0.95},
            {"save", kUpTo100MB, save, 1.02},
            {"cloneNode", kUpTo10MB, clone}};
}

} // namespace bench
