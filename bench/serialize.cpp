// Serializes trees in memory, with our serializer and with Qt's: whole documents, and one element with many
// attributes.

#include "host.h"
#include "rows.h"

#include "serialize/serialize.h"

#include <QtCore/QTextStream>

namespace bench
{

namespace
{

Pair serialize(const QDomDocument& document)
{
    return {{[document] { return static_cast<std::uint64_t>(kelxml::serialize::bytesOf(document).size()); }},
            {[document] {
                QByteArray bytes;
                QTextStream stream(&bytes, QIODevice::WriteOnly);
                stream.setCodec("UTF-8");
                document.save(stream, kelxml::serialize::Options().indent, QDomNode::EncodingFromDocument);
                stream.flush();
                return static_cast<std::uint64_t>(bytes.size());
            }},
            1};
}

QDomDocument documentOfAttributes(std::int64_t count)
{
    QDomDocument document;
    QDomElement element = document.createElement(names().item.ready);
    for (std::int64_t index = 0; index < count; ++index)
        element.setAttribute(names().item.ready + QString::number(index),
                             textAt(static_cast<std::size_t>(index)).ready);
    document.appendChild(element);
    return document;
}

} // namespace

std::vector<Row> serializeRows()
{
    return {{"serialize",
             {{"MIME", 0, 15}, {"10 MB", 10'000'000, 5}},
             [](const Size& size) { return serialize(loadedByQt(inputFile(size.value))); },
             0.5},
            {"serialize attributes",
             {{"1000", 1000, 25}, {"10000", 10'000, 5}, {"100000", 100'000, 5}},
             [](const Size& size) { return serialize(documentOfAttributes(size.value)); }}};
}

} // namespace bench
