// The library as a host uses it, and the same documents, trees and texts for both sides.

#pragma once

#include "rows.h"

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/error.h"
#include "KelXmlLib/guids.h"
#include "KelXmlLib/module.h"
#include "KelXmlLib/xmldom.h"

#include <QtXml/QDomDocument>
#include <memory>

namespace bench
{

using kel::Bstr;
using kel::ComPtr;

/// Registers the type library, for calls by name.
void registerTypeLibrary();

/// Checks that a call worked: a benchmark of failed calls would measure nothing. \throw std::runtime_error
void require(bool works, const char* what);

/// A new, empty document.
ComPtr<IXMLDOMDocument> newDocument();
ComPtr<IXMLDOMDocument> documentOf(const QString& xml);
/// The node at an index of a list or a map; null beyond the end.
template <class List>
ComPtr<IXMLDOMNode> itemOf(List& list, LONG index)
{
    ComPtr<IXMLDOMNode> item;
    kel::check(list.get_item(index, item.put()), "asking for a node", kel::FalseIs::success);
    return item;
}
ComPtr<IXMLDOMNodeList> childrenOf(IXMLDOMNode& node);
ComPtr<IXMLDOMNamedNodeMap> attributesOf(IXMLDOMNode& node);
/// The node as an element, which the caller knows it to be.
inline ComPtr<IXMLDOMElement> asElement(const ComPtr<IXMLDOMNode>& node)
{
    return ComPtr<IXMLDOMElement>(static_cast<IXMLDOMElement*>(node.get()));
}
ComPtr<IXMLDOMElement> rootOf(IXMLDOMDocument& document);
ComPtr<IXMLDOMElement> newElement(IXMLDOMDocument& document, const Bstr& name);
QDomDocument loadedByQt(const QString& path);
ComPtr<IXMLDOMDocument> loadedByLibrary(const QString& path);

inline VARIANT variantOf(const Bstr& text)
{
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = text.get();
    return value;
}

/// Takes over the BSTR that a getter wrote to a zeroed VARIANT; null if it wrote none.
inline Bstr taken(const VARIANT& value)
{
    Bstr text;
    text.reset(value.bstrVal);
    return text;
}

Bstr bstrOf(const QString& text);

struct LibraryDocument
{
    ComPtr<IXMLDOMDocument> document = newDocument();
};

/// One text in the forms in which a program may have it.
struct Text
{
    explicit Text(const QString& text) : bstr(bstrOf(text)), wide(text.toStdWString()), ready(text) {}

    Bstr bstr;
    std::wstring wide;
    QString ready;
};

/// The names of elements and attributes.
struct Names
{
    Text record{QStringLiteral("record")};
    Text item{QStringLiteral("item")};
    Text note{QStringLiteral("note")};
    Text id{QStringLiteral("id")};
    Text kind{QStringLiteral("kind")};
    Text seen{QStringLiteral("seen")};
};
const Names& names();

/// The texts repeat after a thousand; each has a few words.
const Text& textAt(std::size_t index);

/// Creates a file with a document of slightly more than `bytes`: a mix of elements, attributes, short and
/// long text, and characters beyond ASCII. For 0 bytes, the MIME database. \return its path; the file is
/// deleted at exit
QString inputFile(std::int64_t bytes);
/// The same with hardly anything but tags.
QString inputFileOfTags(std::int64_t bytes);
/// A path to write to; the file is deleted at exit.
QString outputFile(const QString& name);

/// A root with `count` children, each of which has two attributes and a text.
QString flatTree(std::int64_t count);

/// That tree, with the wrappers or handles of its children, and another document to append to.
struct LibraryTree
{
    explicit LibraryTree(std::int64_t count);

    ComPtr<IXMLDOMDocument> document;
    ComPtr<IXMLDOMElement> root;
    ComPtr<IXMLDOMElement> otherRoot;
    std::vector<ComPtr<IXMLDOMElement>> elements;
    std::vector<ComPtr<IXMLDOMNamedNodeMap>>
        maps; ///< attribute maps of the elements; filled by rows that need them
};

struct QtTree
{
    explicit QtTree(std::int64_t count);

    QDomDocument document;
    QDomElement root;
    QDomDocument other;
    std::vector<QDomElement> elements;
    std::vector<QDomNamedNodeMap> maps;
};

/// Work that gets a new `Library` or `Qt` at each turn. \param arguments for the constructor
template <class Library, class Qt, class Work, class QtWork, class... Arguments>
Pair onFresh(std::int64_t items, Work work, QtWork qtWork, Arguments... arguments)
{
    const auto ours = std::make_shared<std::unique_ptr<Library>>();
    const auto qts = std::make_shared<std::unique_ptr<Qt>>();
    const auto renew = [=](auto& held) { // destroys the old one first
        held.reset();
        held = std::make_unique<std::decay_t<decltype(*held)>>(arguments...);
    };
    return {{[=] { return work(**ours); }, [=] { renew(*ours); }},
            {[=] { return qtWork(**qts); }, [=] { renew(*qts); }},
            items};
}

} // namespace bench
