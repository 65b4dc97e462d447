// The prescan of a string, and of the bytes of a file once they are decoded.

#include "guards/prescan.h"

#include "guards/prescanner.h"

#include <QtCore/QBuffer>
#include <QtXml/QXmlInputSource>

// Deprecated, and still what QDomDocument reads a device through: no other class decodes as it does.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace kelxml::guards
{

namespace
{

/// \param bytes shared, not copied
QString decoded(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QXmlInputSource source(&buffer);
    QString text;
    text.reserve(bytes.size());
    QString piece;
    do {
        source.fetchData();
        piece = source.data();
        text += piece;
    } while (!piece.isEmpty());
    return text;
}

} // namespace

Prescan prescan(const QString& text)
{
    return Prescanner(text).document();
}

Prescan prescan(const QByteArray& bytes)
{
    return prescan(decoded(bytes));
}

} // namespace kelxml::guards
