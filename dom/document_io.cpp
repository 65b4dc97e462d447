// Loads and saves documents with Qt's parser and writer. A method that fails returns S_FALSE, with one
// exception: after a write error, `save` returns S_OK.

#include "KelXmlLib/document.h"

#include "files/file.h"
#include "parsing/parse.h"
#include "serialize/save.h"
#include "text/strings.h"

using namespace kelxml;

namespace
{

void setFlag(VARIANT_BOOL* flag, VARIANT_BOOL value)
{
    if (flag)
        *flag = value;
}

HRESULT loadResult(bool isLoaded, VARIANT_BOOL* success)
{
    if (isLoaded)
        setFlag(success, VARIANT_TRUE);
    return isLoaded ? S_OK : S_FALSE;
}

} // namespace

HRESULT CMorvXMLDOMDocument::load(VARIANT source, VARIANT_BOOL* success)
{
    setFlag(success, VARIANT_FALSE);
    const std::optional<files::Path> path = files::Path::from(source);
    return loadResult(path && parsing::parseFile(m_document, *path), success);
}

HRESULT CMorvXMLDOMDocument::loadXML(BSTR xml, VARIANT_BOOL* success)
{
    setFlag(success, VARIANT_FALSE);
    return loadResult(bool(parsing::parseText(m_document, text::fromWide(xml))), success);
}

HRESULT CMorvXMLDOMDocument::save(VARIANT destination)
{
    const std::optional<files::Path> path = files::Path::from(destination);
    if (!path || !serialize::canBeSaved(m_document))
        return S_FALSE;
    files::File file(*path);
    if (!file.openForWriting())
        return S_FALSE;
    serialize::save(m_document, file);
    return S_OK;
}
