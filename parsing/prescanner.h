// Reads a text in the same way as `QXmlSimpleReader` of Qt 5.15, and counts everything that has a limit.
//
// The scanner must interpret each character as the parser does, up to the error at which the parser stops.
// The scanner checks only a part of the syntax: it continues after errors that it does not check for. It must
// never report an error in a text that the parser accepts.

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
    /// Scans the text as the value of an entity. The caller does this for every declared value, even if no
    /// reference uses it.
    Prescan value();

private:
    enum class Kind { General, Parameter, External };
    struct Entity
    {
        QString text; // the value; the parser adds a space at both ends of a parameter entity's value
        Kind kind = Kind::General;
        qint64 literalLength = 0; // length in a quoted value, with its quotes as references
    };

    // Each function reads the rest of one construct. Its caller has read the first characters. The result
    // says whether to continue. It is false if the text has an error or exceeds a limit.
    bool prolog();
    void content(bool untilEnd);
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

    char16_t skipSpaces() { return m_in.skipUntil(std::not_fn(isSpace)); }
    bool referenceName(QString& name);
    bool declare(const QString& name, const QString& text, Kind kind);
    const Entity* find(const QString& name, Kind kind) const;
    bool addEntitySearch(const QString& name, const QString& value);
    bool splice(const Entity& entity, QStringView text, bool literal);
    bool addEntityText(qint64 length);
    void beginText() { m_splicedLength = m_in.pending(); }
    bool enterLevel(int& depth);
    bool exceed(limits::Limit limit);

    CharacterStream m_in;
    QMap<QString, Entity> m_entities; // not a hash: an attacker could choose names that collide
    QString m_name;                   // name or number of a reference; a member, so that its memory is reused
    qsizetype m_longestName = 0;      // of all declared entities
    int m_generalEntities = 0;        // declarations with a value; external entities are not counted
    int m_parameterEntities = 0;
    int m_declarations = 0;
    qint64 m_referencesInValues = 0;
    qint64 m_searchedCharacters = 0; // total length of the names and values of entities
    qint64 m_entityText = 0;         // characters of entity text, declared and spliced
    qint64 m_maxEntityText = limits::kEntityActivationThreshold;
    qint64 m_splicedLength = 0; // characters spliced into the current text, attribute or entity value
    std::function<qint64()> m_length;
    qint64 m_documentLength = 0; // set when `m_length` is called
    int m_depth = 0;
    int m_nesting = 0;
    limits::Limit m_exceeded = limits::Limit::None;
};

/// Whether the parser reports an error if a reference contains this character.
inline bool breaksReference(char16_t c)
{
    return isSpace(c) || isQuote(c) || c == u'<' || c == u'>' || c == u'&' || c == CharacterStream::kEnd;
}

/// Reads characters until it finds one of `Stops` outside quotes. Returns this character, or `kEnd`. Calls
/// `quoted` for each quoted value. If `quoted` returns false, stops and returns `kEnd`.
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
