// The lines of the text files that tests read.

#pragma once

#include "support/require.h"

#include <QtCore/QStringList>
#include <fstream>
#include <sstream>
#include <string>

namespace keltest
{

/// Gives the lines of a file to `use`, but for empty ones and comments, each as a stream of its words.
template <class Use>
void forEachLine(const char* name, Use use)
{
    std::ifstream file(name);
    std::size_t used = 0;
    for (std::string line; std::getline(file, line);)
        if (!line.empty() && line[0] != '#')
            use(std::istringstream(line)), ++used;
    require(used > 0);
}

/// `{piece}` stands for n pieces, `{piece|7}` for 7 and `{piece|-7}` for n - 7; `@` for a piece's number.
inline QString expand(const std::string& pattern, int n)
{
    QStringList parts = QString::fromStdString(pattern).split(u'{');
    QString all = parts.takeFirst();
    for (const QString& part : parts) {
        const QString group = part.section(u'}', 0, 0);
        const int given = group.section(u'|', 1).toInt();
        for (int i = 0; i < (given > 0 ? given : n + given); ++i)
            all += group.section(u'|', 0, 0).replace(u'@', QString::number(i));
        all += part.section(u'}', 1);
    }
    return all;
}

} // namespace keltest
