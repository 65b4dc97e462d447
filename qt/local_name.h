// Names without prefixes.

#pragma once

#include <QtXml/QDomNode>

namespace kelxml::qt
{

/// Returns the name of `node` without the prefix. A node that was created without a namespace has no prefix,
/// even if the name contains a colon. For such a node, returns the whole name.
inline QString localNameOf(const QDomNode& node)
{
    const QString local = node.localName();
    return local.isNull() ? node.nodeName() : local;
}

} // namespace kelxml::qt
