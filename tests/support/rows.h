// Tables that tests read from text files, row by row.

#pragma once

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace keltest
{

/// A row of a table; `>>` reads its words.
struct Row : std::istringstream
{
    Row(const std::string& text, const std::string& place)
        : std::istringstream(text), where(place + ": " + text)
    {}

    std::string where; ///< for failure messages: file, line number and text
};

/// Calls `use` with each row of a file. Empty lines and lines that begin with `#` are not rows.
template <class Use>
void forEachRow(const std::string& path, Use use)
{
    std::ifstream file(path);
    int number = 0, rows = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        if (line.empty() || line[0] == '#')
            continue;
        use(Row(line, path.substr(path.rfind('/') + 1) + ':' + std::to_string(number)));
        ++rows;
    }
    if (rows == 0)
        throw std::logic_error("a table must have rows: " + path);
}

} // namespace keltest
