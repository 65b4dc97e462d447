// The document type declaration: content models, and where entities come from.

#include "guards/prescanner.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace kelxml::guards
{

bool Prescanner::documentType()
{
    for (;;) {
        const char16_t c = m_in.seek<u'[', u'>', u'"', u'\''>();
        if (c == u'>')
            return true;
        if (c == u'[')
            return internalSubset() && m_in.seek<u'>'>() == u'>';
        if (c == CharacterStream::kEnd || !systemLiteral(c))
            return false;
    }
}

bool Prescanner::internalSubset()
{
    for (;;) {
        const char16_t c = m_in.get();
        if (c == u']')
            return true;
        if (isSpace(c))
            continue;
        if (!(c == u'%' ? parameterReference(false) : c == u'<' && declaration()))
            return false;
    }
}

bool Prescanner::declaration()
{
    const char16_t opening = m_in.get();
    if (opening == u'?')
        return processingInstruction();
    if (opening != u'!')
        return false;
    switch (m_in.get()) {
    case u'-':
        return dashedComment();
    case u'A':
        return attributeListDeclaration();
    case u'N':
        return literalsOnly();
    case u'E':
        switch (m_in.get()) {
        case u'L':
            return elementDeclaration();
        case u'N':
            return entityDeclaration();
        default:
            return false;
        }
    default:
        return false;
    }
}

bool Prescanner::elementDeclaration()
{
    int parentheses = 0;
    for (;;) {
        const char16_t c = m_in.seek<u'(', u')', u'>'>();
        if (c == u')')
            parentheses = std::max(0, parentheses - 1);
        else if (c != u'(')
            return c == u'>';
        else if (!deepen(parentheses))
            return false;
    }
}

bool Prescanner::attributeListDeclaration()
{
    for (;;) {
        const char16_t c = m_in.seek<u'>', u'"', u'\''>();
        if (c == u'>')
            return true;
        if (c == CharacterStream::kEnd || !attributeValue(c))
            return false;
    }
}

// The rest of a declaration in which quoted text is taken as it is.
bool Prescanner::literalsOnly()
{
    for (;;) {
        const char16_t c = m_in.seek<u'>', u'"', u'\''>();
        if (c == u'>')
            return true;
        if (c == CharacterStream::kEnd || !systemLiteral(c))
            return false;
    }
}

bool Prescanner::systemLiteral(char16_t quote)
{
    return (quote == u'"' ? m_in.seek<u'"'>() : m_in.seek<u'\''>()) == quote;
}

bool Prescanner::entityDeclaration()
{
    if (++m_declarations > kMaxEntityDeclarations)
        return beyond();
    const auto notSpace = [](char16_t x) { return !isSpace(x); };
    m_in.takeUntil(isSpace);
    char16_t c = m_in.takeUntil(notSpace);
    const bool parameter = c == u'%';
    if (parameter)
        c = m_in.takeUntil(notSpace);
    QString name{QChar(c)};
    const auto endsName = [](char16_t x) { return isSpace(x) || isQuote(x) || x == u'>' || x == u'<'; };
    while ((c = m_in.get()) != CharacterStream::kEnd && !endsName(c))
        name += QChar(c);
    if (!isSpace(c))
        return false;
    c = m_in.takeUntil(notSpace);
    if (!isQuote(c))
        return declare(name, {}, Kind::External) && literalsOnly();

    const QLatin1String blank(" ");
    QString value = parameter ? blank : QString();
    if (!entityValue(c, value))
        return false;
    if (parameter)
        value += blank;
    return declare(name, value, parameter ? Kind::Parameter : Kind::General) && m_in.seek<u'>'>() == u'>';
}

// The first declaration of a name counts; general and parameter entities share their names.
bool Prescanner::declare(const QString& name, const QString& text, Kind kind)
{
    if (kind == Kind::General && text.contains(u'<')) {
        DocumentChunks chunks{QStringView(text)};
        if (!Prescanner(chunks).value().within)
            return beyond();
    }
    if (m_entities.contains(name))
        return true;
    m_entities.insert(name, {text, kind});
    m_longestName = std::max(m_longestName, qsizetype(name.size()));
    if (kind == Kind::General)
        ++m_generalEntities;
    else if (kind == Kind::Parameter)
        ++m_parameterEntities;
    return true;
}

// References to general entities stay as they are, to be spliced where the value is used; characters and
// parameter entities come in at once.
bool Prescanner::entityValue(char16_t quote, QString& value)
{
    for (;;) {
        const char16_t c =
            m_in.seek<u'&', u'%', u'"', u'\''>([this, &value](QStringView run) { addToValue(value, run); });
        if (c == CharacterStream::kEnd || (c == quote && !m_in.literal()))
            return c == quote && m_within;
        if (c == u'%' ? !parameterReference(true) : c == u'&' && !referenceInValue(value))
            return false;
        if (isQuote(c)) {
            if (m_in.literal()) // the parser has replaced quotes in what it splices into a quoted value
                addToValue(value, c == u'"' ? QStringView(u"&quot;") : QStringView(u"&apos;"));
            else
                addToValue(value, QStringView(&c, 1));
        }
    }
}

bool Prescanner::referenceInValue(QString& value)
{
    char16_t c = m_in.get();
    if (c == u'#')
        return characterReference(value);
    addToValue(value, u"&");
    for (; c != u';'; c = m_in.get()) {
        if (isSpace(c) || isQuote(c) || c == u'<' || c == u'>' || c == u'&' || c == CharacterStream::kEnd)
            return false;
        addToValue(value, QStringView(&c, 1));
    }
    addToValue(value, u";");
    return true;
}

// The parser takes numbers of up to 32 bits and uses the lower 16 as a character: 65596 is a '<' like 60.
bool Prescanner::characterReference(QString& value)
{
    char16_t c = m_in.get();
    const unsigned base = c == u'x' ? 16 : 10;
    if (base == 16)
        c = m_in.get();
    std::uint64_t number = 0;
    for (; c != u';'; c = m_in.get()) {
        const unsigned digit = c >= u'0' && c <= u'9'   ? c - u'0'
                               : c >= u'a' && c <= u'f' ? c - u'a' + 10u
                               : c >= u'A' && c <= u'F' ? c - u'A' + 10u
                                                        : base;
        if (digit >= base)
            return false;
        number = number * base + digit;
        if (number > std::numeric_limits<std::uint32_t>::max())
            return false;
    }
    const auto character = static_cast<char16_t>(number & 0xFFFF);
    addToValue(value, QStringView(&character, 1));
    return true;
}

// What comes out of a splice was counted when it was put in.
void Prescanner::addToValue(QString& value, QStringView run)
{
    value += run;
    if (!m_in.spliced())
        addEntityText(run.size());
}

bool Prescanner::parameterReference(bool inValue)
{
    m_name.resize(0);
    if (!referenceName(m_name))
        return false;
    const Entity* entity = find(m_name, Kind::Parameter);
    if (!entity)
        return true;
    const QStringView text(entity->text);
    return inValue ? splice(text.mid(1, text.size() - 2), true) : splice(text, false);
}

} // namespace kelxml::guards
