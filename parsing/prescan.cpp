// The prescan of a string, and of the bytes of a file as they are decoded.

#include "parsing/prescan.h"

#include "parsing/prescanner.h"

#include <QtCore/QBuffer>
#include <QtXml/QXmlInputSource>
#include <memory>

// Deprecated, and still what QDomDocument reads a device through: no other class decodes as it does.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace kelxml::parsing
{

namespace
{

/// \param bytes are decoded as they are asked for
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
