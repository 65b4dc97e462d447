// Passes strings and bytes to the scanner. Bytes are decoded piece by piece during the scan.

#include "parsing/prescan.h"

#include "parsing/prescanner.h"

#include <QtCore/QBuffer>
#include <QtXml/QXmlInputSource>
#include <memory>

// QXmlInputSource is deprecated. It is used here because QDomDocument uses it to decode the bytes of a
// device. Another class could decode the same bytes differently.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace kelxml::parsing
{

namespace
{

/// Returns a function that decodes and returns the next piece of `bytes` each time it is called.
CharacterStream::NextPiece piecesOf(const QByteArray& bytes)
{
    const auto buffer = std::make_shared<QBuffer>();
    buffer->setData(bytes);
    buffer->open(QIODevice::ReadOnly);
    const auto source = std::make_shared<QXmlInputSource>(buffer.get());
    return [buffer, source] {
        source->fetchData();
        return source->data();
    };
}

} // namespace

Prescan prescan(const QString& text)
{
    return Prescanner(text).document();
}

Prescan prescan(const QByteArray& bytes)
{
    const auto length = [&bytes] {
        qint64 sum = 0;
        const auto next = piecesOf(bytes);
        for (QString piece = next(); !piece.isEmpty(); piece = next())
            sum += piece.size();
        return sum;
    };
    return Prescanner(piecesOf(bytes), length).document();
}

} // namespace kelxml::parsing
