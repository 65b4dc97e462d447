// Scans a string, and the bytes of a file while they are decoded.

#include "parsing/prescan.h"

#include "parsing/prescanner.h"

#include <QtCore/QBuffer>
#include <QtXml/QXmlInputSource>
#include <memory>

// Deprecated, but QDomDocument reads devices with it, and no other class decodes in the same way.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace kelxml::parsing
{

namespace
{

/// \param bytes decoded piece by piece, on demand
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
