// Loads and saves documents. Throws a `LoadError` if the functions in `parsing/parse.h` report a failure.

#include "KelXmlLib/kel/document.h"

#include "dom/wrap.h"
#include "layer/access.h"
#include "layer/options.h"
#include "layer/refuse.h"
#include "layer/saving.h"
#include "layer/text.h"
#include "limits/limits.h"
#include "parsing/parse.h"
#include "trees/content.h"

namespace kel
{

using detail::Access;
using detail::documentOf;
using kelxml::limits::Limit;
using kelxml::parsing::ParseFailure;
using kelxml::parsing::ParseResult;

namespace
{

/// Creates an empty document and returns a handle that is not null. The constructor of `QDomDocument` creates
/// a null handle: Qt allocates the document only when the handle first creates a node or parses a text.
QDomDocument newDocument()
{
    QDomDocument document;
    document.createDocumentFragment();
    return document;
}

std::string reasonOf(Limit limit)
{
    namespace limits = kelxml::limits;
    switch (limit) {
    case Limit::Nesting:
        return "nested deeper than " + std::to_string(limits::kMaxNesting) + " levels";
    case Limit::EntityDeclarations:
        return "more than " + std::to_string(limits::kMaxEntityDeclarations) + " entity declarations";
    case Limit::EntitySearch:
        return "entities that would take too long to search";
    case Limit::EntityText:
        return "too much text in entities";
    case Limit::TextLength:
        return "too much text in one text or attribute";
    case Limit::FileBytes:
        return "larger than " + std::to_string(limits::kMaxFileBytes >> 20) + " MiB";
    case Limit::UnsizedBytes:
        return "a device with more than " + std::to_string(limits::kMaxUnsizedBytes >> 20) + " MiB";
    case Limit::Stack:
        return "nested too deep for the free stack of this thread";
    case Limit::None:
        break;
    }
    return {};
}

/// \param result what the parser returned
/// \param source the path of the file; empty if a text was parsed
/// \throw LoadError if `result` is a failure
void requireParsed(const ParseResult& result, const std::string& source)
{
    using Kind = LoadError::Kind;
    switch (result.failure) {
    case ParseFailure::None:
        return;
    case ParseFailure::Unreadable:
        throw LoadError(Kind::unreadable, source, result.reason.toStdString());
    case ParseFailure::Empty:
        throw LoadError(Kind::empty, source, "it is empty");
    case ParseFailure::BeyondLimit:
        throw LoadError(Kind::beyondLimit, source, reasonOf(result.limit));
    case ParseFailure::NotWellFormed:
        throw LoadError(Kind::notWellFormed, source, result.reason.toStdString(), result.line, result.column);
    }
}

} // namespace

Document::Document()
{
    const QDomDocument document = newDocument();
    Access::assign(*this, QDomNode(document), document);
}

Document::Document(TextView rootName) : Document()
{
    append(rootName);
}

Document::Document(IXMLDOMDocument& document) : Container(document)
{
    if (*this)
        return;
    kelxml::dom::WrapperAccess::makeDocument(static_cast<CMorvXMLDOMDocument&>(document));
    Node::operator=(Node(document));
}

Document Document::load(const std::filesystem::path& path)
{
    Document document;
    QDomDocument content = documentOf(document);
    const std::string& name = path.native();
    requireParsed(kelxml::parsing::parseFile(content, name), name.empty() ? "''" : name);
    return document;
}

Document Document::parse(TextView text)
{
    Document document;
    QDomDocument content = documentOf(document);
    detail::Converted converted = detail::convert(text);
    if (converted.fault)
        throw LoadError(LoadError::Kind::notWellFormed, {}, converted.fault);
    if (converted.text.startsWith(QChar::ByteOrderMark))
        converted.text.remove(0, 1);
    requireParsed(kelxml::parsing::parseText(content, converted.text), {});
    return document;
}

Element Document::root() const
{
    return Access::make<Element>(documentOf(*this).documentElement(), documentOf(*this));
}

void Document::save(const std::filesystem::path& path, const SaveOptions& options) const
{
    if (!root())
        throw SaveError(path.native(),
                        *this ? "the document has no root element" : detail::reason::kNullArgument);
    detail::SavedFile file(path.native());
    kelxml::serialize::serialize(documentOf(*this), detail::optionsOf(options),
                                 [&](const QByteArray& bytes) { file.write(bytes); });
    file.commit();
}

Document Document::clone() const
{
    if (!*this)
        return Access::null<Document>();
    return Access::make<Document>(kelxml::trees::cloneNode(detail::refTo(*this), true), documentOf(*this));
}

ComPtr<IXMLDOMDocument> Document::get() const
{
    return *this ? ComPtr<IXMLDOMDocument>(new CMorvXMLDOMDocument(documentOf(*this))) : nullptr;
}

} // namespace kel
