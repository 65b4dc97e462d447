// Whole documents: loading, saving, and writing with the filer.

#include "host.h"
#include "rows.h"

#include "KelXmlLib/filer.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTextStream>
#include <QtCore/QXmlStreamWriter>

namespace bench
{

namespace
{

constexpr int kIndent = 4; // the indentation that the library uses

Pair load(const QString& path)
{
    return onFresh<LibraryDocument, QDomDocument>(
        1,
        [name = std::make_shared<Bstr>(bstrOf(path))](LibraryDocument& library) {
            return std::uint64_t{library.document->load(variantOf(*name), nullptr) == S_OK};
        },
        [path](QDomDocument& document) {
            QFile file(path);
            return std::uint64_t{file.open(QIODevice::ReadOnly) && document.setContent(&file)};
        });
}

Pair loadXML(const Size& size)
{
    QFile input(inputFile(size.value));
    require(input.open(QIODevice::ReadOnly), "opening an input");
    const auto text = std::make_shared<Text>(QString::fromUtf8(input.readAll()));
    return onFresh<LibraryDocument, QDomDocument>(
        1,
        [=](LibraryDocument& library) {
            return std::uint64_t{library.document->loadXML(text->bstr.get(), nullptr) == S_OK};
        },
        [=](QDomDocument& document) {
            return std::uint64_t{document.setContent(QString::fromStdWString(text->wide))};
        });
}

std::uint64_t sizeOf(const QString& path)
{
    return static_cast<std::uint64_t>(QFileInfo(path).size());
}

Pair save(const Size& size)
{
    const auto ours = loadedByLibrary(inputFile(size.value));
    const QDomDocument qts = loadedByQt(inputFile(size.value));
    const auto path = std::make_shared<Text>(outputFile(QStringLiteral("saved.xml")));
    return {{[=] {
                ours->save(variantOf(path->bstr));
                return sizeOf(path->ready);
            }},
            {[=] {
                QFile file(path->ready);
                if (file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
                    QTextStream stream(&file);
                    stream.setCodec("UTF-8");
                    qts.save(stream, kIndent, QDomNode::EncodingFromDocument);
                }
                file.close();
                return sizeOf(path->ready);
            }},
            1};
}

constexpr std::int64_t kElementsPerRecord = 2;

void writeRecords(IKelXmlFiler& filer, std::size_t count)
{
    filer.writeDocBegin();
    filer.writeElmBegin(names().item.wide.c_str());
    for (std::size_t index = 0; index < count; ++index) {
        filer.writeElmBegin(names().record.wide.c_str());
        filer.writeAttribute(names().id.wide.c_str(), textAt(index).wide.c_str());
        filer.writeElmBegin(names().note.wide.c_str());
        filer.writeText(textAt(index + 1).wide.c_str());
        filer.writeElmEnd();
        filer.writeElmEnd();
    }
    filer.writeDocEnd();
}

void writeRecords(QXmlStreamWriter& writer, std::size_t count)
{
    writer.writeStartDocument();
    writer.writeStartElement(names().item.ready);
    for (std::size_t index = 0; index < count; ++index) {
        writer.writeStartElement(names().record.ready);
        writer.writeAttribute(names().id.ready, textAt(index).ready);
        writer.writeStartElement(names().note.ready);
        writer.writeCharacters(textAt(index + 1).ready);
        writer.writeEndElement();
        writer.writeEndElement();
    }
    writer.writeEndDocument();
}

Pair file(const Size& size)
{
    const auto path = std::make_shared<Text>(outputFile(QStringLiteral("filed.xml")));
    const auto count = static_cast<std::size_t>(size.value / kElementsPerRecord);
    return {{[=] {
                const std::unique_ptr<IKelXmlFiler> filer(morvCreateXmlFiler(
                    path->wide.c_str(), KelXmlLib::eEncodingUtf8, 0, true, false, nullptr, nullptr));
                writeRecords(*filer, count);
                filer->close();
                return sizeOf(path->ready);
            }},
            {[=] {
                QFile file(path->ready);
                file.open(QIODevice::WriteOnly | QIODevice::Text);
                QXmlStreamWriter writer(&file);
                writer.setAutoFormatting(true);
                writeRecords(writer, count);
                file.close();
                return sizeOf(path->ready);
            }},
            size.value};
}

} // namespace

std::vector<Row> documentRows()
{
    const Size mime = {"MIME", 0, 15};
    const Size small = {"1 MB", 1'000'000, 25};
    const Size medium = {"10 MB", 10'000'000, 5};
    const Size large = {"100 MB", 100'000'000, 2};
    const auto loadFile = [](const Size& size) { return load(inputFile(size.value)); };
    const auto loadTags = [](const Size& size) { return load(inputFileOfTags(size.value)); };
    return {{"load", {mime, medium, large}, loadFile, 1.08},
            {"load, almost only tags", {medium}, loadTags},
            {"loadXML", {mime, small, medium}, loadXML, 0.95},
            {"save", {mime, small, medium}, save, 1.02},
            {"filer", {{"10000", 10'000, 20}, {"100000", 100'000, 5}}, file, 1.14}};
}

} // namespace bench
