// What tests, machines and fuzzers share: a condition that ends the run, choices, and what a file holds.

#pragma once

#include <QtCore/QFile>
#include <functional>
#include <random>
#include <stdexcept>
#include <string>

/// \throw std::logic_error that says where in the source the condition is not met
inline void require(bool holds, const char* file = __builtin_FILE(), int line = __builtin_LINE())
{
    if (!holds)
        throw std::logic_error("a difference at " + std::string(file) + ':' + std::to_string(line));
}

/// Answers a number below its argument.
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
    require(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

inline void write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
}
