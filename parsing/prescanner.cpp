// Scans everything except the document type declaration, and counts what has a limit.

#include "parsing/prescanner.h"

#include <algorithm>

namespace kelxml::parsing
{

namespace
{

// The parser replaces references to predefined entities without splicing, even if the text declares these
// entities.
bool isPredefined(const QString& name)
{
    return name == QLatin1String("amp") || name == QLatin1String("lt") || name == QLatin1String("gt") ||
           name == QLatin1String("quot") || name == QLatin1String("apos");
}

} // namespace

// The scan ends after the document element, because the parser accepts neither elements nor references after
// the document element.
Prescan Prescanner::document()
{
    if (prolog())
        content(false);
    return {m_exceeded, m_nesting};
}

Prescan Prescanner::value()
{
    content(true);
    return {m_exceeded, m_nesting};
}

// Scans up to and including the start tag of the document element. Accepts several document type
// declarations, as the parser does.
bool Prescanner::prolog()
{
    while (skipSpaces() == u'<') {
        char16_t c = m_in.get();
        if (c == u'!') {
            c = m_in.get();
            if (!(c == u'-' ? comment() : c == u'D' && documentType()))
                return false;
        } else if (c != u'?') {
            return startTag();
        } else if (!processingInstruction()) {
            return false;
        }
    }
    return false;
}

// This function scans nearly all of a text, so it must be fast. `flatten` inlines all calls in the function,
// so that the compiler keeps the read position in a register.
[[gnu::flatten]] void Prescanner::content(bool untilEnd)
{
    bool shouldContinue = true;
    while (shouldContinue && (untilEnd || m_depth > 0)) {
        const char16_t c = m_in.seek<u'<', u'&'>();
        shouldContinue = c != CharacterStream::kEnd && (c == u'<' ? markup() : reference(false));
    }
}

bool Prescanner::markup()
{
    beginText();
    char16_t c = m_in.get();
    if (c == u'/')
        return endTag();
    if (c == u'?')
        return processingInstruction();
    if (c != u'!')
        return c != CharacterStream::kEnd && startTag();
    c = m_in.get();
    return c == u'[' ? cdata() : c == u'-' && comment();
}

bool Prescanner::startTag()
{
    if (!enterLevel(m_depth))
        return false;
    const char16_t c = seekUnquoted<u'>', u'/', u'<'>(&Prescanner::attributeValue);
    if (c == u'/')
        --m_depth;
    return c == u'>' || (c == u'/' && m_in.get() == u'>');
}

bool Prescanner::endTag()
{
    m_depth = std::max(0, m_depth - 1); // an entity's value may have more end tags than start tags
    return m_in.seek<u'>'>() == u'>';
}

bool Prescanner::comment()
{
    if (m_in.get() != u'-')
        return false;
    for (;;) {
        if (m_in.seek<u'-'>() == CharacterStream::kEnd)
            return false;
        if (m_in.get() == u'-')
            return m_in.get() == u'>';
    }
}

bool Prescanner::cdata()
{
    for (const QChar expected : QStringView(u"CDATA["))
        if (m_in.get() != expected)
            return false;
    for (;;) {
        char16_t c = m_in.seek<u']'>();
        int brackets = 0;
        for (; c == u']'; c = m_in.get())
            ++brackets;
        if (c == CharacterStream::kEnd || (c == u'>' && brackets >= 2))
            return c == u'>';
    }
}

bool Prescanner::processingInstruction()
{
    constexpr QStringView xml(u"xml");
    qsizetype matched = 0;
    char16_t c = m_in.get();
    while (matched < xml.size() && xml[matched] == c) {
        ++matched;
        c = m_in.get();
    }
    // The parser reads the parts of an XML declaration as attributes, so a quoted "?>" does not end the
    // declaration.
    if (matched == xml.size() && isSpace(c))
        return seekUnquoted<u'?'>(&Prescanner::attributeValue) == u'?' && m_in.get() == u'>';
    for (;;) {
        if (c != u'?')
            c = m_in.seek<u'?'>();
        while (c == u'?')
            c = m_in.get();
        if (c == u'>' || c == CharacterStream::kEnd)
            return c == u'>';
    }
}

bool Prescanner::attributeValue(char16_t quote)
{
    beginText();
    for (;;) {
        const char16_t c = m_in.seek<u'&', u'<', u'"', u'\''>();
        if (c == quote && !m_in.isLiteral()) {
            beginText();
            return true;
        }
        if (c == u'&' ? !reference(true) : !isQuote(c))
            return false;
    }
}

bool Prescanner::reference(bool literal)
{
    // If no entities are declared, there is nothing to splice, and the scan can treat the reference as text.
    if (m_entities.isEmpty())
        return true;
    m_name.resize(0);
    if (!referenceName(m_name))
        return false;
    if (m_name.startsWith(u'#') || isPredefined(m_name))
        return true;
    const Entity* entity = find(m_name, Kind::General);
    return !entity || splice(*entity, entity->text, literal);
}

// Reads the name in a reference up to the semicolon. To save memory, stops storing characters once `name` is
// longer than every declared name.
bool Prescanner::referenceName(QString& name)
{
    for (;;) {
        const char16_t c = m_in.get();
        if (c == u';')
            return true;
        if (breaksReference(c))
            return false;
        if (name.size() <= m_longestName)
            name += QChar(c);
    }
}

const Prescanner::Entity* Prescanner::find(const QString& name, Kind kind) const
{
    const auto found = m_entities.constFind(name);
    return found != m_entities.constEnd() && found->kind == kind ? &*found : nullptr;
}

bool Prescanner::splice(const Entity& entity, QStringView text, bool literal)
{
    // The parser reports recursion and stops if the open splices outnumber both the general entities and the
    // parameter entities.
    const int open = std::max(m_generalEntities, m_parameterEntities) + 1;
    if (m_in.openSplices() >= static_cast<std::size_t>(open) || !addEntityText(text.size()))
        return false;
    m_splicedLength += literal ? entity.literalLength : text.size();
    if (m_splicedLength + m_documentLength >= limits::kTooLongForQt)
        return exceed(limits::Limit::TextLength);
    m_in.splice(text, literal);
    return true;
}

bool Prescanner::addEntityText(qint64 length)
{
    m_entityText += length;
    if (m_entityText > m_maxEntityText && m_length) {
        m_documentLength = m_length();
        m_maxEntityText = std::max(m_maxEntityText, limits::kMaxEntityAmplification * m_documentLength);
        m_length = nullptr;
    }
    return m_entityText <= m_maxEntityText || exceed(limits::Limit::EntityText);
}

bool Prescanner::enterLevel(int& depth)
{
    m_nesting = std::max(m_nesting, ++depth);
    return depth <= limits::kMaxNesting || exceed(limits::Limit::Nesting);
}

bool Prescanner::exceed(limits::Limit limit)
{
    m_exceeded = limit;
    return false;
}

} // namespace kelxml::parsing
