// For tests and fuzzers: checks a rule and throws if the rule is broken, makes random choices, and reads and
// writes files.

#pragma once

#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <algorithm>

#include <functional>
#include <random>
#include <stdexcept>
#include <string>

/// The source file and the line of a call, for failure messages.
struct Place
{
    static Place here(const char* name = __builtin_FILE(), int at = __builtin_LINE()) { return {name, at}; }
    const char* file;
    int line;
};

[[noreturn]] inline void fail(const std::string& rule, Place at = Place::here())
{
    throw std::logic_error(at.file + (':' + std::to_string(at.line)) + ": broken rule: " + rule);
}

/// \param rule a statement that must be true
/// \throw std::logic_error with the rule and the line of the call, if `holds` is false
inline void require(bool holds, const char* rule, Place at = Place::here())
{
    if (!holds)
        fail(rule, at);
}

/// Formats a value for a failure message. Unprintable characters become escape sequences.
template <class Value>
std::string shown(const Value& value)
{
    QString text;
    if constexpr (std::is_same_v<Value, std::wstring>)
        QDebug(&text) << QString::fromStdWString(value);
    else if constexpr (std::is_same_v<Value, std::string>)
        QDebug(&text) << QByteArray::fromStdString(value);
    else
        QDebug(&text) << value;
    return text.trimmed().toStdString();
}

/// \throw std::logic_error with the rule, the line of the call and both values, if the values differ
template <class Value>
void requireEqual(const Value& given, const Value& expected, const char* rule, Place at = Place::here())
{
    if (!(given == expected))
        fail(std::string(rule) + ": found " + shown(given) + ", expected " + shown(expected), at);
}

/// Compares texts. The failure message shows the position of the first difference, counted from 0, and an
/// excerpt of each text.
template <class Character>
void requireEqual(const std::basic_string<Character>& given, const std::basic_string<Character>& expected,
                  const char* rule, Place at = Place::here())
{
    if (given == expected)
        return;
    const auto ends = std::mismatch(given.begin(), given.end(), expected.begin(), expected.end());
    const auto first = static_cast<std::size_t>(ends.first - given.begin());
    const auto from = first - std::min<std::size_t>(first, 20);
    fail(std::string(rule) + ": found " + shown(given.substr(from, 60)) + ", expected " +
             shown(expected.substr(from, 60)) + "; first difference at character " + std::to_string(first) +
             ", excerpts from character " + std::to_string(from),
         at);
}

/// \throw std::logic_error with the rule, the line of the call and both values, if `given` is above the limit
template <class Value>
void requireAtMost(const Value& given, const Value& limit, const char* rule, Place at = Place::here())
{
    if (limit < given)
        fail(std::string(rule) + ": found " + shown(given) + ", but the limit is " + shown(limit), at);
}

/// \param isOk whether the call must return S_OK. If false, the call must return S_FALSE
/// \throw std::logic_error with the name and the result code of the call, if the code is not as required
inline void requireOk(int code, const char* call, bool isOk = true, Place at = Place::here())
{
    if (code != (isOk ? 0 : 1))
        fail(std::string(call) + " returns " + (isOk ? "S_OK" : "S_FALSE") + ": found " + shown(code), at);
}

/// A function that returns a number below its argument.
using Choose = std::function<unsigned(std::size_t)>;

inline Choose randomChoice(unsigned seed)
{
    return [random = std::mt19937(seed)](std::size_t limit) mutable {
        return static_cast<unsigned>(random() % limit);
    };
}

inline QByteArray contentOf(const QString& path, Place at = Place::here())
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail("the test can read " + path.toStdString(), at);
    return file.readAll();
}

inline void write(const QString& path, const QByteArray& content, Place at = Place::here())
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        fail("the test can write " + path.toStdString(), at);
}
