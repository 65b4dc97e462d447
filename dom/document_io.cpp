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

HRESULT answer(bool isLoaded, VARIANT_BOOL* success)
{
    if (isLoaded)
        setFlag(success, VARIANT_TRUE);
    return isLoaded ? S_OK : S_FALSE;
}

} // namespace

HRESULT CMorvXMLDOMDocument::load(VARIANT source, VARIANT_BOOL* success)
{
    setFlag(success, VARIANT_FALSE);
    const std::optional<QString> path = kelxml::readPath(source);
    return answer(path && kelxml::guards::parseFile(m_document, *path), success);
}

HRESULT CMorvXMLDOMDocument::loadXML(BSTR xml, VARIANT_BOOL* success)
{
    setFlag(success, VARIANT_FALSE);
    return answer(bool(kelxml::guards::parse(m_document, kelxml::fromWide(xml))), success);
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
