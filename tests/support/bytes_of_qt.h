// The bytes that Qt writes for a node.

#pragma once

#include <QtCore/QTextStream>
#include <QtXml/QDomDocument>

inline QByteArray bytesOfQt(const QDomNode& node, int indent = 4)
{
    QByteArray bytes;
    QTextStream stream(&bytes, QIODevice::WriteOnly);
    stream.setCodec("UTF-8");
    node.save(stream, indent, QDomNode::EncodingFromDocument);
    stream.flush();
    return bytes;
}
