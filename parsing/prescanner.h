// Reads a text in the same way as the parser (`QXmlSimpleReader` of Qt 5.15), and counts everything that has
// a limit.
//
// The scanner must interpret each character as the parser does, up to the first error that stops the parser.
// The scanner checks only a part of the syntax, and continues after an error that it does not check for. If
// the parser accepts a text, the scanner must scan the whole text. If the scanner mistook something valid for
// an error and stopped, the parser would read the rest of the text unscanned.

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
    /// \param length a function that returns the length of the whole document; called at most once
    Prescanner(CharacterStream::NextPiece nextPiece, std::function<qint64()> length)
        : m_in(std::move(nextPiece)), m_length(std::move(length))
    {}
    explicit Prescanner(const QString& text)
        : Prescanner([rest = text]() mutable { return std::exchange(rest, {}); },
                     [text] { return text.size(); })
    {}

    Prescan document();
    /// Scans the text as the value of an entity. The limit on nesting applies to each value on its own, even
    /// if no reference uses the entity. So for each declared general entity whose value contains `<`, the
    /// scanner of the document creates another scanner and calls this function.
    Prescan value();

private:
    enum class Kind { General, Parameter, External };
    struct Entity
    {
        QString text; // the value; for a parameter entity, with the spaces that the parser adds around it
        Kind kind = Kind::General;
        qint64 literalLength = 0; // length of `text` if each quote is written as `&quot;` or `&apos;`
    };

    // Each of the following functions scans the rest of a construct. The caller has already read the first
    // characters of the construct. False means that the text has an error or exceeds a limit, and that the
    // scan must stop.
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
    QString m_name;                   // name or number in a reference; a member so that its memory is reused
    qsizetype m_longestName = 0;      // length of the longest name of a declared entity
    int m_generalEntities = 0;        // number of general entities with a value (not external)
    int m_parameterEntities = 0;
    int m_declarations = 0;
    qint64 m_referencesInValues = 0;
    qint64 m_searchedCharacters = 0; // characters in the names and values of all entities
    qint64 m_entityText = 0;         // characters in declared values, plus characters inserted by references
    qint64 m_maxEntityText = limits::kEntityActivationThreshold;
    qint64 m_splicedLength = 0; // characters spliced into the current text, attribute value or entity value
    std::function<qint64()> m_length;
    qint64 m_documentLength = 0; // 0 until `m_length` is called
    int m_depth = 0;
    int m_nesting = 0;
    limits::Limit m_exceeded = limits::Limit::None;
};

/// Whether the parser reports an error if a reference contains the character `c`.
inline bool breaksReference(char16_t c)
{
    return isSpace(c) || isQuote(c) || c == u'<' || c == u'>' || c == u'&' || c == CharacterStream::kEnd;
}

/// Reads characters until it finds one of `Stops` outside quotes. Returns this character, or `kEnd`. After
/// each opening quote on the way, calls `quoted`, which scans the quoted value. If `quoted` returns false,
/// stops and returns `kEnd`.
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
