// Loads and saves each input through the library and with Qt alone. The library must accept an input within
// the limits if and only if Qt accepts the input, and must save the same bytes as Qt. The library must refuse
// an input that exceeds a limit, and the document must keep the tree that it had before. The prescan is the
// library's check of an input before Qt parses the input. A tree must not be deeper than the nesting that the
// prescan found, and the values in a tree must not be longer than the limits allow.

#include "limits/limits.h"
#include "parsing/prescan.h"
#include "support.h"
#include "support/compare_with_qt.h"

#include <QtCore/QBuffer>

using namespace kelxml::limits;
using namespace kelxml::parsing;
using namespace kelfuzz;

namespace
{

/// \param load loads the content into the given document and sets the given success flag
/// \param seen the result of the prescan of the content
/// \param content the content in a type that Qt loads
/// \param length the largest possible number of characters in the content
/// \param text the content as text; null if the content is bytes that Qt must decode
template <class Load, class Content>
void compare(Load load, const Prescan& seen, Content&& content, qint64 length, const QString& text = {})
{
    requireAtMost(seen.nesting, kMaxNesting + !seen.isWithinLimits(), "stops at the first level too deep");
    // Without entities, a level of nesting takes at least one character. The shortest level is a parenthesis
    // in a content model. So the prescan must accept every text that has no entities and at most
    // `kMaxNesting` characters.
    const bool hasEntities = text.isNull() || text.contains(QLatin1String("<!EN"));
    require(seen.isWithinLimits() || hasEntities || length > kMaxNesting, "the prescan accepts a short text");
    const auto document = newDocument();
    const kel::Bstr earlier(L"<earlier/>");
    requireOk(document->loadXML(earlier.get(), nullptr), "loadXML of the earlier tree");
    QDomDocument direct;
    require(direct.setContent(QStringLiteral("<earlier/>")), "Qt loads the earlier tree");
    const bool isLoaded = loadAndCompareWithQt(direct, *document, load, content, seen.isWithinLimits());
    const Extent tree = extentOf(direct);
    if (seen.isWithinLimits())
        requireAtMost(tree.depth, seen.nesting, "a tree is not deeper than the prescan's nesting");
    // Apart from elements, only the parentheses in content models nest.
    const bool onlyElementsNest = !text.isNull() && !text.contains(u'(');
    if (isLoaded && onlyElementsNest)
        requireEqual(tree.depth, seen.nesting, "the prescan finds the depth of the tree");
    const qint64 most = length + std::max(kEntityActivationThreshold, kMaxEntityAmplification * length);
    requireAtMost(tree.length, most, "the values in a tree are not longer than the limits allow");
}

/// Generates documents. Most documents are well-formed, and contain text that looks like markup but is not.
class Grammar
{
public:
    explicit Grammar(Choices& choices) : m_choices(choices) {}

    QString document()
    {
        const char* const heads[] = {"", "<?xml version='1.0' encoding='?>'?>", "<!--<a>-->", "<?xmlx '?>"};
        return one(heads) + (m_choices.oneIn(3) ? QString() : doctype()) + element(0);
    }

private:
    template <std::size_t Count>
    QString one(const char* const (&words)[Count])
    {
        return QString::fromLatin1(words[m_choices.below(Count)]);
    }
    QString doctype()
    {
        QString all = QStringLiteral("<!DOCTYPE r [");
        while (m_choices.below(4) > 0 && all.size() < 500) {
            const char* const entities[] = {"<!ENTITY e ", "<!ENTITY f ", "<!ENTITY % p "};
            const char* const others[] = {"%p;",
                                          "<!ATTLIST r a CDATA ']>'>",
                                          "<!NOTATION n SYSTEM ']>'>",
                                          "<!ELEMENT r (a,(b))>",
                                          "<?p ]>?>",
                                          "<!--]>-->"};
            const char* const words[] = {
                "",  "x",  "&e;",  "&f;",         "%p;",  "&#34;", "&#39;", "<a>",      "?>",
                "'", "\"", "<a/>", "<a><a/></a>", "</a>", "]>",    ">",     "&#60;a/>", "&#65596;a/>"};
            all += m_choices.oneIn(4) ? one(others) : one(entities) + quoted(words) + u'>';
        }
        return all + QLatin1String("]>");
    }
    template <std::size_t Count>
    QString quoted(const char* const (&words)[Count])
    {
        const QChar quote = m_choices.oneIn(2) ? u'"' : u'\'';
        QString all;
        do
            all += one(words).remove(quote);
        while (m_choices.oneIn(3));
        return quote + all + quote;
    }
    QString element(int depth)
    {
        const char* const values[] = {"&e;", "&f;", "?>", "'", "\"", ">", "&#34;"};
        const char* const words[] = {
            "t", "&e;", "&f;", "&lt;", "<![CDATA[]></a>]]>", "<![CDATA[<a>]]]>", "<!--</a>-->", "<?p </a>?>"};
        QString all = QStringLiteral("<a");
        if (m_choices.oneIn(3))
            all += QLatin1String(" b=") + quoted(values);
        all += u'>';
        while (m_choices.oneIn(2))
            all += depth < 20 && m_choices.oneIn(2) ? element(depth + 1) : one(words);
        return all + QLatin1String("</a>");
    }

    Choices& m_choices;
};

void compareText(const QString& text)
{
    const kel::Bstr xml(text.toStdWString().c_str());
    compare([&xml](auto& document, auto* success) { return document.loadXML(xml.get(), success); },
            prescan(text), text, text.size(), text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    Choices choices(data, size);
    if (choices.oneIn(2)) {
        compareText(Grammar(choices).document());
        return 0;
    }
    const std::wstring wide = QString::fromUtf8(bytes).toStdWString();
    const QString text = QString::fromUcs4(reinterpret_cast<const char32_t*>(wide.c_str()));
    if (!text.isEmpty())
        compareText(text);

    write(filePath(), bytes);
    const kel::Variant path(filePath().toStdWString());
    QBuffer buffer(&bytes);
    require(buffer.open(QIODevice::ReadOnly), "the target can open its buffer");
    compare([&path](auto& document, auto* success) { return document.load(path.get(), success); },
            prescan(bytes), &buffer, bytes.size());
    return 0;
}
