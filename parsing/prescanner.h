// Reads a text in the way `QXmlSimpleReader` of Qt 5.15 does, and counts what the limits restrict.
//
// The scanner accepts more than the parser. It may stop only where the parser is sure to report an error;
// elsewhere it continues as if there were none. So at every character that the parser reaches, up to the end
// of the document element, both are at the same place in the grammar.

#pragma once

#include "limits/limits.h"
#include "parsing/character_stream.h"
#include "parsing/prescan.h"

#include <QtCore/QMap>
#include <QtCore/QString>
#include <functional>
#include <utility>

namespace kelxml::parsing
{

inline bool isSpace(char16_t c)
{
    return c == u' ' || c == u'\n' || c == u'\t' || c == u'\r';
}

inline bool isQuote(char16_t c)
{
    return c == u'"' || c == u'\'';
}

class Prescanner
{
public:
    /// \param length returns the length of the whole document; called at most once
    Prescanner(CharacterStream::NextPiece nextPiece, std::function<qint64()> length)
        : m_in(std::move(nextPiece)), m_length(std::move(length))
    {}
    explicit Prescanner(const QString& text)
        : Prescanner([rest = text]() mutable { return std::exchange(rest, {}); },
                     [text] { return text.size(); })
    {}

    Prescan document();
    /// Scans the value of an entity, whether it is used or not.
    Prescan value();

private:
    enum class Kind { General, Parameter, External };
    struct Entity
    {
        QString text; // of a parameter entity: with a blank at each end, as the parser adds them
        Kind kind = Kind::General;
        qint64 literalLength = 0; // in a quoted value, where the parser replaces quotes by references
    };

    // Each reads the rest of one construct, after its first characters were read. Most return whether to
    // continue: false where the parser stops or a limit is exceeded.
    bool prolog();
    void content(bool toTheEnd);
    bool markup();
    bool startTag();
    bool endTag();
    bool comment();
    bool cdata();
    bool processingInstruction();
    bool attributeValue(char16_t quote);
    bool reference(bool literal);

    bool documentType();
    bool internalSubset();
    bool declaration();
    bool elementDeclaration();
    bool entityDeclaration();
    bool entityValue(char16_t quote, QString& value);
    bool referenceInValue(QString& value);
    bool characterReference(QString& value);
    void addToValue(QString& value, QStringView run);
    bool parameterReference(bool inValue);
    bool systemLiteral(char16_t quote);
    template <char16_t... Stops>
    char16_t seekUnquoted(bool (Prescanner::*quoted)(char16_t quote));

    char16_t firstNoSpace() { return m_in.takeUntil(std::not_fn(isSpace)); }
    bool referenceName(QString& name);
    bool declare(const QString& name, const QString& text, Kind kind);
    const Entity* find(const QString& name, Kind kind) const;
    bool addEntitySearch(const QString& name, const QString& value);
    bool splice(const Entity& entity, QStringView text, bool literal);
    bool addEntityText(qint64 length);
    void beginText() { m_unfolded = m_in.pending(); }
    bool deepen(int& depth);
    bool beyond(limits::Limit limit);

    CharacterStream m_in;
    QMap<QString, Entity> m_entities; // not a hash: an attacker could choose names that collide
    QString m_name;                   // name or number of a reference; a member to be allocated only once
    qsizetype m_longestName = 0;      // longer names in references are not declared
    int m_generalEntities = 0;        // those with a value; not the external ones
    int m_parameterEntities = 0;
    int m_declarations = 0;
    qint64 m_referencesInValues = 0;
    qint64 m_searchedCharacters = 0; // of the names and values of entities
    qint64 m_entityText = 0;
    qint64 m_maxEntityText = limits::kEntityActivationThreshold;
    qint64 m_unfolded = 0; // in the current text, attribute or value of an entity
    std::function<qint64()> m_length;
    qint64 m_documentLength = 0; // once `m_length` was called
    int m_depth = 0;
    int m_nesting = 0;
    limits::Limit m_exceeded = limits::Limit::None;
};

/// Whether a character is not allowed in a reference; the parser reports an error.
inline bool breaksReference(char16_t c)
{
    return isSpace(c) || isQuote(c) || c == u'<' || c == u'>' || c == u'&' || c == CharacterStream::kEnd;
}

/// Skips characters up to and including the first of `Stops` outside quotes, and returns that one. Calls
/// `quoted` for each quoted value, and returns the end mark if that returns false.
template <char16_t... Stops>
char16_t Prescanner::seekUnquoted(bool (Prescanner::*quoted)(char16_t))
{
    for (;;) {
        const char16_t c = m_in.seek<Stops..., u'"', u'\''>();
        if (!isQuote(c))
            return c;
        if (!(this->*quoted)(c))
            return CharacterStream::kEnd;
    }
}

} // namespace kelxml::parsing
