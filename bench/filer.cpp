// The filer against Qt's stream writer, which is fed with ready-made strings.

#include "host.h"
#include "inputs.h"
#include "rows.h"

#include "KelXmlLib/filer.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <memory>

namespace bench
{

namespace
{

struct FilerNames
{
    Text root{QStringLiteral("report")};
    Text record{QStringLiteral("record")};
    Text id{QStringLiteral("id")};
    Text state{QStringLiteral("state")};
    Text name{QStringLiteral("name")};
    Text note{QStringLiteral("note")};
};

/// How many elements a record comes to.
constexpr std::int64_t kElementsPerRecord = 3;

void writeRecords(IKelXmlFiler& filer, const FilerNames& names, std::size_t count)
{
    filer.writeDocBegin();
    filer.writeElmBegin(names.root.wide.c_str());
    for (std::size_t index = 0; index < count; ++index) {
        filer.writeElmBegin(names.record.wide.c_str());
        filer.writeAttribute(names.id.wide.c_str(), textAt(index).wide.c_str());
        filer.writeAttribute(names.state.wide.c_str(), textAt(index + 1).wide.c_str());
        filer.writeElmBegin(names.name.wide.c_str(), textAt(index + 2).wide.c_str());
        filer.writeElmBegin(names.note.wide.c_str());
        filer.writeText(textAt(index + 3).wide.c_str());
        filer.writeCData(textAt(index + 4).wide.c_str());
        filer.writeElmEnd();
        filer.writeComment(textAt(index + 5).wide.c_str());
        filer.writeElmEnd();
    }
    filer.writeDocEnd();
}

void writeRecords(QXmlStreamWriter& writer, const FilerNames& names, std::size_t count)
{
    writer.writeStartDocument();
    writer.writeStartElement(names.root.ready);
    for (std::size_t index = 0; index < count; ++index) {
        writer.writeStartElement(names.record.ready);
        writer.writeAttribute(names.id.ready, textAt(index).ready);
        writer.writeAttribute(names.state.ready, textAt(index + 1).ready);
        writer.writeTextElement(names.name.ready, textAt(index + 2).ready);
        writer.writeStartElement(names.note.ready);
        writer.writeCharacters(textAt(index + 3).ready);
        writer.writeCDATA(textAt(index + 4).ready);
        writer.writeEndElement();
        writer.writeComment(textAt(index + 5).ready);
        writer.writeEndElement();
    }
    writer.writeEndDocument();
}

Pair write(const Size& size, bool formatted)
{
    const auto names = std::make_shared<FilerNames>();
    const auto path = std::make_shared<Text>(outputFile(QStringLiteral("filed.xml")));
    const auto count = static_cast<std::size_t>(size.value / kElementsPerRecord);
    const auto written = [=] { return static_cast<std::uint64_t>(QFileInfo(path->ready).size()); };
    const auto remove = [=] { QFile::remove(path->ready); };
    return {{[=] {
                 const std::unique_ptr<IKelXmlFiler> filer(morvCreateXmlFiler(
                     path->wide.c_str(), KelXmlLib::eEncodingUtf8, 0, formatted, false, nullptr, nullptr));
                 writeRecords(*filer, *names, count);
                 filer->close();
                 return written();
             },
             remove},
            {[=] {
                 QFile file(path->ready);
                 file.open(QIODevice::WriteOnly | QIODevice::Text);
                 QXmlStreamWriter writer(&file);
                 writer.setAutoFormatting(formatted);
                 writeRecords(writer, *names, count);
                 file.close();
                 return written();
             },
             remove},
            size.value};
}

} // namespace

std::vector<Row> filerRows()
{
    return {{"filer, formatting", sizesFrom(10'000, 20), [](const Size& size) { return write(size, true); },
             1.12},
            {"filer, plain", sizesFrom(10'000, 20), [](const Size& size) { return write(size, false); }}};
}

} // namespace bench
