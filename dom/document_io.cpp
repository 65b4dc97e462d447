// Loading and saving. Qt parses and serialises; whatever goes wrong is answered S_FALSE.

#include "KelXmlLib/document.h"

#include "guards/memory_room.h"
#include "guards/parse.h"
#include "guards/save.h"
#include "text/strings.h"
#include "text/values.h"

#include <QtCore/QFile>

namespace
{

void setFlag(VARIANT_BOOL* flag, VARIANT_BOOL value)
{
    if (flag)
        *flag = value;
}

/// \param content a text or a file
template <class Content>
HRESULT parse(QDomDocument& document, Content& content, VARIANT_BOOL* success)
{
    if (!kelxml::guards::parse(document, content))
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
    kelxml::guards::makeSureOfMemoryForFile();
    QFile file(*path);
    if (!file.exists() || !file.open(QIODevice::ReadOnly))
        return S_FALSE;
    return parse(m_document, file, success);
}

HRESULT CMorvXMLDOMDocument::loadXML(BSTR xml, VARIANT_BOOL* success)
{
    setFlag(success, VARIANT_FALSE);
    const QString text = kelxml::fromWide(xml);
    return text.isEmpty() ? S_FALSE : parse(m_document, text, success);
}

HRESULT CMorvXMLDOMDocument::save(VARIANT destination)
{
    const std::optional<QString> path = kelxml::readPath(destination);
    if (!path || path->isEmpty() || !kelxml::guards::canBeSaved(m_document))
        return S_FALSE;
    kelxml::guards::makeSureOfMemoryForFile();
    QFile file(*path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        return S_FALSE;
    kelxml::guards::save(m_document, file);
    return S_OK;
}
