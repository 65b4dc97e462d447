// Shared by tests, call machines and fuzzers: checks that end the run, choices, and file contents.

#pragma once

#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <random>
#include <stdexcept>
#include <string>

[[noreturn]] inline void fail(const std::string& rule, const std::string& file, int line)
{
    throw std::logic_error(file.substr(file.rfind('/') + 1) + ':' + std::to_string(line) + ": " + rule);
}

/// \throw std::logic_error with the rule and the place of the call, unless the rule holds
inline void require(bool holds, const char* rule = "this holds", const char* file = __builtin_FILE(),
                    int line = __builtin_LINE())
{
    if (!holds)
        fail(rule, file, line);
}

/// Formats a value for a failure message; unprintable characters as numbers.
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

/// \throw std::logic_error with the rule, the place of the call and both values, unless they are equal
template <class Value>
void requireEqual(const Value& given, const Value& expected, const char* rule,
                  const char* file = __builtin_FILE(), int line = __builtin_LINE())
{
    if (!(given == expected))
        fail(std::string(rule) + ": " + shown(given) + " instead of " + shown(expected), file, line);
}

/// For texts, the failure message shows where they begin to differ.
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
             ", different from character " + std::to_string(at) + " on",
         file, line);
}

/// Returns a number below its argument.
using Choose = std::function<unsigned(std::size_t)>;

/// Prints the seed, so that a crash can be reproduced.
inline Choose randomChoice(unsigned seed)
{
    std::fprintf(stderr, "\rseed %u ", seed);
    return [random = std::mt19937(seed)](std::size_t limit) mutable {
        return static_cast<unsigned>(random() % limit);
    };
}

inline QByteArray contentOf(const QString& path)
{
    QFile file(path);
    require(file.open(QIODevice::ReadOnly), "the test's file can be read");
    return file.readAll();
}

inline void write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(),
            "the test's file can be written");
}
