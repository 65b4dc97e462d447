// What tests, machines and fuzzers share: a condition that ends the run, and the content of a file.

#pragma once

#include <QtCore/QFile>
#include <stdexcept>
#include <string>

/// \throw std::logic_error that says where in the source the condition is not met
inline void require(bool holds, const char* file = __builtin_FILE(), int line = __builtin_LINE())
{
    if (!holds)
        throw std::logic_error("a difference at " + std::string(file) + ':' + std::to_string(line));
}

inline QByteArray contentOf(const QString& path)
{
    QFile file(path);
    require(file.open(QIODevice::ReadOnly));
    return file.readAll();
}
