// Loading and saving. Qt parses and serialises; whatever goes wrong is answered S_FALSE.

#include "KelXmlLib/document.h"

#include "dom/text.h"
#include "dom/tree_depth.h"
#include "dom/tree_guards.h"
#include "dom/values.h"

#include <QtCore/QFile>
#include <QtCore/QTextStream>

namespace
{

constexpr int kIndent = 4;

void setFlag(VARIANT_BOOL* flag, VARIANT_BOOL value)
{
    if (flag)
        *flag = value;
}

/// Hands `content`, a device or a text, to Qt's parser.
template <class Content>
HRESULT parseInto(QDomDocument& document, Content&& content, VARIANT_BOOL* success)
{
    kelxml::clearBeforeSetContent(document);
    kelxml::forgetHeights();
    if (!document.setContent(content))
        return S_FALSE;
    setFlag(success, VARIANT_TRUE);
    return S_OK;
}

} // namespace

HRESULT CMorvXMLDOMDocument::load(VARIANT source, VARIANT_BOOL* success)
{
    setFlag(success, VARIANT_FALSE);
    const std::optional<QString> path = kelxml::readPath(source);
    if (!path)
        return S_FALSE;
    QFile file(*path);
    if (!file.exists() || !file.open(QIODevice::ReadOnly))
        return S_FALSE;
    return parseInto(m_document, &file, success);
}

HRESULT CMorvXMLDOMDocument::loadXML(BSTR xml, VARIANT_BOOL* success)
{
    setFlag(success, VARIANT_FALSE);
    const QString text = kelxml::fromWide(xml);
    if (text.isEmpty())
        return S_FALSE;
    return parseInto(m_document, text, success);
}

HRESULT CMorvXMLDOMDocument::save(VARIANT destination)
{
    const std::optional<QString> path = kelxml::readPath(destination);
    if (!path || path->isEmpty())
        return S_FALSE;
    QFile file(*path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        return S_FALSE;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    m_document.save(stream, kIndent, QDomNode::EncodingFromDocument);
    file.close();
    return S_OK;
}
