// Calls to the library, as a host makes them. Also the documents, trees and texts that the library's side and
// Qt's side of a benchmark use.

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

/// Throws if a call has failed. Without this check, the benchmark would measure a failed call as a fast one.
/// \throw std::runtime_error with the text `action`
void require(bool succeeded, const char* action);

/// Creates an empty document.
ComPtr<IXMLDOMDocument> newDocument();
ComPtr<IXMLDOMDocument> documentOf(const QString& xml);
/// Returns the node at an index of a list or a map, or null if the index is beyond the end.
template <class List>
ComPtr<IXMLDOMNode> itemOf(List& list, LONG index)
{
    ComPtr<IXMLDOMNode> item;
    kel::check(list.get_item(index, item.put()), "asking for a node", kel::FalseIs::success);
    return item;
}
ComPtr<IXMLDOMNodeList> childrenOf(IXMLDOMNode& node);
ComPtr<IXMLDOMNamedNodeMap> attributesOf(IXMLDOMNode& node);
/// Casts without a check. The caller knows that the node is an element.
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

/// Takes over the BSTR that a getter wrote to a zeroed VARIANT. Returns null if the getter wrote nothing.
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

/// One text in three forms: a BSTR for the library, the `std::wstring` of a host, and a `QString` for Qt.
struct Text
{
    explicit Text(const QString& text) : bstr(bstrOf(text)), wide(text.toStdWString()), ready(text) {}

    Bstr bstr;
    std::wstring wide;
    QString ready;
};

/// The names of elements and attributes in the benchmarks.
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

/// One of a thousand short texts. Index 1000 returns the first one again.
const Text& textAt(std::size_t index);

/// Creates a file with slightly more than `bytes` bytes: a document with elements, attributes, short and long
/// texts, and characters beyond ASCII. The file is deleted at exit. If `bytes` is 0, creates nothing and
/// returns the path of the system's MIME database, a large XML file.
/// \return the path
QString inputFile(std::int64_t bytes);
/// Creates a file with slightly more than `bytes` bytes, which contains almost only tags. Returns its path.
QString inputFileOfTags(std::int64_t bytes);
/// The path of a temporary file, which is deleted at exit.
QString outputFile(const QString& name);

/// Returns the XML of a document whose root has `count` children. Each child has two attributes and a text.
QString flatTree(std::int64_t count);

/// The document of `flatTree`, loaded with the library; the objects of the root's children; and a second
/// document, to which nodes can be appended.
struct LibraryTree
{
    explicit LibraryTree(std::int64_t count);

    ComPtr<IXMLDOMDocument> document;
    ComPtr<IXMLDOMElement> root;
    ComPtr<IXMLDOMElement> otherRoot;
    std::vector<ComPtr<IXMLDOMElement>> elements;
    /// The attribute maps of `elements`. Only benchmarks that use the maps fill this vector.
    std::vector<ComPtr<IXMLDOMNamedNodeMap>> maps;
};

/// The document of `flatTree`, loaded with Qt; the handles of the root's children; and a second document, to
/// which nodes can be appended.
struct QtTree
{
    explicit QtTree(std::int64_t count);

    QDomDocument document;
    QDomElement root;
    QDomDocument other;
    std::vector<QDomElement> elements;
    std::vector<QDomNamedNodeMap> maps;
};

/// Makes a `Pair`: the library's side calls `work` with a `Library`, and Qt's side calls `qtWork` with a
/// `Qt`. Each turn gets a new object, whose creation is not measured.
/// \param arguments passed to the constructors of `Library` and `Qt`
template <class Library, class Qt, class Work, class QtWork, class... Arguments>
Pair onFresh(std::int64_t items, Work work, QtWork qtWork, Arguments... arguments)
{
    const auto ours = std::make_shared<std::unique_ptr<Library>>();
    const auto qts = std::make_shared<std::unique_ptr<Qt>>();
    const auto renew = [=](auto& held) { // destroys the old object first
        held.reset();
        held = std::make_unique<std::decay_t<decltype(*held)>>(arguments...);
    };
    return {{[=] { return work(**ours); }, [=] { renew(*ours); }},
            {[=] { return qtWork(**qts); }, [=] { renew(*qts); }},
            items};
}

} // namespace bench
