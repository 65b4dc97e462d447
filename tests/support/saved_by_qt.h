// Saves a node with Qt alone.

#pragma once

#include <QtCore/QTextStream>
#include <QtXml/QDomDocument>

inline QByteArray savedByQt(const QDomNode& node, int indent = 4)
{
    QByteArray bytes;
    QTextStream stream(&bytes, QIODevice::WriteOnly);
    stream.setCodec("UTF-8");
    node.save(stream, indent, QDomNode::EncodingFromDocument);
    stream.flush();
    return bytes;
}
