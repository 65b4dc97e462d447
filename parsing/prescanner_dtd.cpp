// Scans the document type declaration, including content models and entity declarations.

#include "parsing/prescanner.h"

#include <algorithm>

namespace kelxml::parsing
{

namespace
{

/// Whether `c` is a decimal or hexadecimal digit.
bool isDigit(char16_t c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

} // namespace

bool Prescanner::documentType()
{
    const char16_t c = seekUnquoted<u'[', u'>'>(&Prescanner::systemLiteral);
    return c == u'>' || (c == u'[' && internalSubset() && m_in.seek<u'>'>() == u'>');
}

bool Prescanner::internalSubset()
{
    for (;;) {
        const char16_t c = skipSpaces();
        if (c == u']')
            return true;
        if (!(c == u'%' ? parameterReference(false) : c == u'<' && declaration()))
            return false;
    }
}

bool Prescanner::declaration()
{
    char16_t c = m_in.get();
    if (c == u'?')
        return processingInstruction();
    if (c != u'!')
        return false;
    switch (m_in.get()) {
    case u'-':
        return comment();
    case u'A':
        return seekUnquoted<u'>'>(&Prescanner::attributeValue) == u'>';
    case u'N':
        return seekUnquoted<u'>'>(&Prescanner::systemLiteral) == u'>';
    case u'E':
        c = m_in.get();
        return c == u'L' ? elementDeclaration() : c == u'N' && entityDeclaration();
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
        else if (!enterLevel(parentheses))
            return false;
    }
}

bool Prescanner::systemLiteral(char16_t quote)
{
    return (quote == u'"' ? m_in.seek<u'"'>() : m_in.seek<u'\''>()) == quote;
}

bool Prescanner::entityDeclaration()
{
    if (++m_declarations > limits::kMaxEntityDeclarations)
        return exceed(limits::Limit::EntityDeclarations);
    m_in.skipUntil(isSpace);
    char16_t c = skipSpaces();
    const bool parameter = c == u'%';
    if (parameter)
        c = skipSpaces();
    QString name{QChar(c)};
    const auto endsName = [](char16_t x) { return isSpace(x) || isQuote(x) || x == u'>' || x == u'<'; };
    while ((c = m_in.get()) != CharacterStream::kEnd && !endsName(c))
        name += QChar(c);
    if (!isSpace(c))
        return false;
    c = skipSpaces();
    if (!isQuote(c))
        return declare(name, {}, Kind::External) && seekUnquoted<u'>'>(&Prescanner::systemLiteral) == u'>';

    QString value;
    if (!entityValue(c, value) || !addEntitySearch(name, value))
        return false;
    const QLatin1String blank(" ");
    return declare(name, parameter ? blank + value + blank : value,
                   parameter ? Kind::Parameter : Kind::General) &&
           m_in.seek<u'>'>() == u'>';
}

bool Prescanner::addEntitySearch(const QString& name, const QString& value)
{
    m_referencesInValues += value.count(u'&');
    m_searchedCharacters += name.size() + value.size();
    const qint64 searches = m_declarations + m_referencesInValues;
    return searches * m_searchedCharacters <= limits::kMaxEntitySearch || exceed(limits::Limit::EntitySearch);
}

// The parser ignores the second declaration of a name, even if one of the two declarations is of a general
// entity and the other of a parameter entity.
bool Prescanner::declare(const QString& name, const QString& text, Kind kind)
{
    if (kind == Kind::General && text.contains(u'<') && !Prescanner(text).value().isWithinLimits())
        return exceed(limits::Limit::Nesting);
    if (m_entities.contains(name))
        return true;
    const qint64 quotes = text.count(u'"') + text.count(u'\'');
    m_entities.insert(name, {text, kind, text.size() + quotes * qint64{sizeof("quot;") - 1}});
    m_longestName = std::max(m_longestName, qsizetype(name.size()));
    m_generalEntities += kind == Kind::General ? 1 : 0;
    m_parameterEntities += kind == Kind::Parameter ? 1 : 0;
    return true;
}

// Reads the value in an entity declaration. Replaces character references and references to parameter
// entities immediately. Keeps references to general entities in `value`, because the parser replaces these
// references only when the value itself is spliced in.
bool Prescanner::entityValue(char16_t quote, QString& value)
{
    beginText();
    for (;;) {
        const char16_t c =
            m_in.seek<u'&', u'%', u'"', u'\''>([this, &value](QStringView run) { addToValue(value, run); });
        if (c == CharacterStream::kEnd || (c == quote && !m_in.isLiteral()))
            return c == quote && m_exceeded == limits::Limit::None;
        if (c == u'%' ? !parameterReference(true) : c == u'&' && !referenceInValue(value))
            return false;
        // When the parser splices a parameter entity into a quoted value, it replaces each quote from the
        // parameter entity with a reference.
        if (isQuote(c) && m_in.isLiteral())
            addToValue(value, c == u'"' ? QStringView(u"&quot;") : QStringView(u"&apos;"));
        else if (isQuote(c))
            addToValue(value, QStringView(&c, 1));
    }
}

bool Prescanner::referenceInValue(QString& value)
{
    char16_t c = m_in.get();
    if (c == u'#')
        return characterReference(value);
    addToValue(value, u"&");
    for (; c != u';'; c = m_in.get()) {
        if (breaksReference(c))
            return false;
        addToValue(value, QStringView(&c, 1));
    }
    addToValue(value, u";");
    return true;
}

// The parser accepts a number of up to 32 bits and uses the lower 16 bits as the character: both 60 and 65596
// mean '<'.
bool Prescanner::characterReference(QString& value)
{
    char16_t c = m_in.get();
    const int base = c == u'x' ? 16 : 10;
    if (base == 16)
        c = m_in.get();
    m_name.resize(0);
    for (; isDigit(c); c = m_in.get())
        m_name += QChar(c);
    bool isNumber = false;
    const auto character = static_cast<char16_t>(m_name.toUInt(&isNumber, base));
    if (c != u';' || !isNumber)
        return false;
    addToValue(value, QStringView(&character, 1));
    return true;
}

// Appends `run` to `value`, and counts the characters of `run` as entity text. Does not count characters from
// a splice, because `splice` has already counted them.
void Prescanner::addToValue(QString& value, QStringView run)
{
    value += run;
    if (!m_in.isInSplice())
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
    return inValue ? splice(*entity, text.mid(1, text.size() - 2), true) : splice(*entity, text, false);
}

} // namespace kelxml::parsing
