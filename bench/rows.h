// A row of the tables: the same work, done through the library and with Qt alone.
//
// Both sides read and return text as a host needs it, with 32-bit characters: for each BSTR of the library,
// the other side makes a std::wstring. Names are constants in most programs, so neither side converts them.

#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace bench
{

struct Side
{
    /// The measured work. Returns an amount, such as nodes visited or bytes written, which must be the same
    /// on both sides.
    std::function<std::uint64_t()> work;
    /// Runs before each turn, without being measured.
    std::function<void()> prepare = [] {};
};

struct Pair
{
    Side library;
    Side direct;        ///< with Qt alone; in rows of calls by name, through the vtable
    std::int64_t items; ///< the number of calls, nodes or documents in the work
};

struct Size
{
    std::string name;
    std::int64_t value;         ///< nodes or bytes; 0 for the MIME database
    int turns;                  ///< the number of times that each side does its work
    bool isLibraryOnly = false; ///< not measured with Qt: too slow, or already in another row
};

struct Row
{
    std::string name;
    std::vector<Size> sizes;
    std::function<Pair(const Size&)> make;
    double maxRatio = 0;       ///< the longest allowed time, relative to the other side; 0 for no limit
    double maxNanoseconds = 0; ///< the longest allowed time of an item; 0 for no limit
};

std::vector<Row> documentRows();
std::vector<Row> serializeRows();
std::vector<Row> layerRows();
std::vector<Row> treeRows();
std::vector<Row> loopRows();
std::vector<Row> growthRows();
std::vector<Row> lateBoundRows();

} // namespace bench
