// What Qt's own save makes of a document, to hold the library's against.

#pragma once

#include <QtCore/QBuffer>
#include <QtCore/QTextStream>
#include <QtXml/QDomDocument>

inline QByteArray savedByQt(const QDomDocument& document)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly | QIODevice::Text);
    QTextStream stream(&buffer);
    stream.setCodec("UTF-8");
    document.save(stream, 4, QDomNode::EncodingFromDocument);
    stream.flush();
    return buffer.data();
}
