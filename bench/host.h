// The library as a host of it sees it, and the same trees on both sides.

#pragma once

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "KelXmlLib/guids.h"
#include "KelXmlLib/xmldom.h"

#include <QtXml/QDomDocument>
#include <string>
#include <vector>

namespace bench
{

using kel::Bstr;
using kel::ComPtr;

/// Makes the library usable, by name as well.
void startLibrary();

/// A benchmark of what did not work would measure nothing. \throw std::runtime_error
void require(bool works, const char* what);

ComPtr<IXMLDOMDocument> newDocument();
ComPtr<IXMLDOMDocument> loadedDocument(const QString& path);
ComPtr<IXMLDOMElement> rootOf(IXMLDOMDocument& document);
ComPtr<IXMLDOMElement> newElement(IXMLDOMDocument& document, const Bstr& name);
QDomDocument loadedByQt(const QString& path);

inline VARIANT variantOf(const Bstr& text)
{
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = text.get();
    return value;
}

/// Takes over the BSTR that a getter left in a zeroed VARIANT; null where it left none.
inline Bstr taken(const VARIANT& value)
{
    Bstr text;
    text.reset(value.bstrVal);
    return text;
}

Bstr bstrOf(const QString& text);

/// One text in the forms in which a program may hold it.
struct Text
{
    explicit Text(const QString& text) : bstr(bstrOf(text)), wide(text.toStdWString()), ready(text) {}

    Bstr bstr;
    std::wstring wide;
    QString ready;
};

/// A thousand different texts of a few words, over and over.
const Text& textAt(std::size_t index);

/// A root with `count` children, each of which has two attributes and a text. The wrappers and handles of the
/// children are held.
struct LibraryTree
{
    explicit LibraryTree(std::int64_t count);

    ComPtr<IXMLDOMDocument> document;
    ComPtr<IXMLDOMElement> root;
    std::vector<ComPtr<IXMLDOMElement>> elements;
};

struct QtTree
{
    explicit QtTree(std::int64_t count);

    QDomDocument document;
    QDomElement root;
    std::vector<QDomElement> elements;
};

/// That tree as a text; the same for both.
QString flatTree(std::int64_t count);

} // namespace bench
