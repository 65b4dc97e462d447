// For tests and fuzzers: checks that throw, random choices, and file contents.

#pragma once

#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <algorithm>
#include <functional>
#include <random>
#include <stdexcept>
#include <string>

[[noreturn]] inline void fail(const std::string& rule, const std::string& file, int line)
{
    throw std::logic_error(file.substr(file.rfind('/') + 1) + ':' + std::to_string(line) + ": " + rule);
}

/// \throw std::logic_error with the rule and the line of the call, unless the rule holds
inline void require(bool holds, const char* rule, const char* file = __builtin_FILE(),
                    int line = __builtin_LINE())
{
    if (!holds)
        fail(rule, file, line);
}

/// Formats a value for a failure message. Unprintable characters become numbers.
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

/// \throw std::logic_error with the rule, the line of the call and both values, unless they are equal
template <class Value>
void requireEqual(const Value& given, const Value& expected, const char* rule,
                  const char* file = __builtin_FILE(), int line = __builtin_LINE())
{
    if (!(given == expected))
        fail(std::string(rule) + ": " + shown(given) + " instead of " + shown(expected), file, line);
}

/// For texts, the failure message shows where the difference begins.
template <class Character>
void requireEqual(const std::basic_string<Character>& given, const std::basic_string<Character>& expected,
                  const char* rule, const char* file = __builtin_FILE(), int line = __builtin_LINE())
{
    if (given == expected)
        return;
    const auto ends = std::mismatch(given.begin(), given.end(), expected.begin(), expected.end());
    const auto at = static_cast<std::size_t>(ends.first - given.begin());
    const auto excerpt = [from = at - std::min<std::size_t>(at, 20)](const auto& text) {
        return shown(text.substr(from, 60));
    };
    fail(std::string(rule) + ": " + excerpt(given) + " instead of " + excerpt(expected) +
             ", different from character " + std::to_string(at),
         file, line);
}

/// Returns a number below its argument.
using Choose = std::function<unsigned(std::size_t)>;

inline Choose randomChoice(unsigned seed)
{
    return [random = std::mt19937(seed)](std::size_t limit) mutable {
        return static_cast<unsigned>(random() % limit);
    };
}

inline QByteArray contentOf(const QString& path)
{
    QFile file(path);
    require(file.open(QIODevice::ReadOnly), "a test can read its file");
    return file.readAll();
}

inline void write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(),
            "a test can write its file");
}
