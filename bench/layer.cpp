// Compares reading through the C++ layer with reading through Qt. The layer takes names in UTF-8 and returns
// texts as std::string. Qt takes names as QString, and this file converts Qt's texts to std::string.

#include "host.h"
#include "rows.h"

#include "KelXmlLib/kel.h"

namespace bench
{

namespace
{

/// Returns the XML of a document whose root has `count` elements. Each element has an attribute and a text.
QString textOfRecords(std::int64_t count)
{
    QString xml = QStringLiteral("<records>");
    for (std::int64_t index = 0; index < count; ++index)
        xml += QStringLiteral("<record amount=\"%1.5\">a note of record %1</record>").arg(index);
    return xml + QStringLiteral("</records>");
}

/// Makes a row that passes each record to a function and adds up the results.
/// \param read the function for a `kel::Element` of the layer
/// \param readByQt the function for a `QDomElement`; it must return the same number as `read`
template <class Read, class ReadByQt>
Row overRecords(const char* name, Read read, ReadByQt readByQt)
{
    const auto make = [=](const Size& size) -> Pair {
        const QString xml = textOfRecords(size.value);
        const auto document = kel::Document::parse(xml.toStdString());
        QDomDocument direct;
        require(direct.setContent(xml), "reading the records");
        return {{[=] {
                    std::uint64_t sum = 0;
                    for (const auto& record : document.root().children("record"))
                        sum += read(record);
                    return sum;
                }},
                {[=] {
                    const QString tag = QStringLiteral("record");
                    std::uint64_t sum = 0;
                    for (QDomElement record = direct.documentElement().firstChildElement(tag);
                         !record.isNull(); record = record.nextSiblingElement(tag))
                        sum += readByQt(record);
                    return sum;
                }},
                size.value};
    };
    return {name, {{"10000", 10'000, 25}, {"100000", 100'000, 5}}, make};
}

} // namespace

std::vector<Row> layerRows()
{
    return {overRecords(
                "layer: children", [](const kel::Element& record) { return record ? 1U : 0U; },
                [](const QDomElement& record) { return record.isNull() ? 0U : 1U; }),
            overRecords(
                "layer: attribute",
                [](const kel::Element& record) {
                    return static_cast<std::uint64_t>(record.attribute("amount", 0.0));
                },
                [](const QDomElement& record) {
                    return static_cast<std::uint64_t>(record.attribute(QStringLiteral("amount")).toDouble());
                }),
            overRecords(
                "layer: text", [](const kel::Element& record) { return record.text().size(); },
                [](const QDomElement& record) { return record.text().toStdString().size(); })};
}

} // namespace bench
