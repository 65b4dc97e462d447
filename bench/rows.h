// A row of the tables: one piece of work, done through the library and with Qt directly.
//
// Both sides read and return text in a host's form, with 32-bit characters: where the library makes a BSTR,
// the other side makes a std::wstring. Names are constants in a program, so both sides have them ready.

#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace bench
{

struct Side
{
    /// The work to measure. Returns an amount (nodes visited, characters read, bytes written), which must be
    /// the same on both sides.
    std::function<std::uint64_t()> work;
    /// Runs before each turn and is not measured.
    std::function<void()> prepare = [] {};
};

struct Pair
{
    Side library;
    Side direct;        ///< with Qt; for a call by name, through the vtable
    std::int64_t items; ///< how many calls, nodes or documents the work has
};

struct Size
{
    std::string name;
    std::int64_t value;         ///< nodes or bytes; 0 for the MIME database
    int turns;                  ///< how many turns both sides take in one run
    bool isLibraryOnly = false; ///< Qt would take too long, or another row measures it
};

struct Row
{
    std::string name;
    std::vector<Size> sizes;
    std::function<Pair(const Size&)> make;
    double maxRatio = 0; ///< the most time the library may take, relative to the other side; 0 for no bound
    double maxNanoseconds = 0; ///< the most time an item may take; 0 for no bound
};

std::vector<Row> documentRows();
std::vector<Row> serializeRows();
std::vector<Row> layerRows();
std::vector<Row> treeRows();
std::vector<Row> loopRows();
std::vector<Row> growthRows();
std::vector<Row> lateBoundRows();

} // namespace bench
