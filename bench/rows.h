// What a row of the tables is: one piece of work, done through the library and with Qt directly.
//
// Both sides get and give text as a host of the library holds it, on 32-bit characters: where the library
// makes a BSTR, the other side makes a std::wstring. Names, which are constants in a program, are ready-made
// on both.

#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace bench
{

struct Side
{
    /// The work that is measured. Answers an amount (nodes met, characters read, bytes written) that is the
    /// same on both sides.
    std::function<std::uint64_t()> work;
    /// What has to be done anew before each turn and is not measured.
    std::function<void()> prepare = [] {};
};

struct Pair
{
    Side library;
    Side direct;        ///< with Qt; of a call by name, through the vtable
    std::int64_t items; ///< how many calls, nodes or documents the work comes to
};

struct Size
{
    std::string name;
    std::int64_t value;         ///< nodes or bytes; 0 for the MIME database
    int turns;                  ///< how often both sides take their turn in one run
    bool isLibraryOnly = false; ///< where Qt would take too long, or was measured in another row
};

struct Row
{
    std::string name;
    std::vector<Size> sizes;
    std::function<Pair(const Size&)> make;
    double maxRatio = 0;       ///< what the library may take, in times of the other side; 0 for no bound
    double maxNanoseconds = 0; ///< what an item may take; 0 for no bound
};

std::vector<Row> documentRows();
std::vector<Row> serializeRows();
std::vector<Row> layerRows();
std::vector<Row> treeRows();
std::vector<Row> loopRows();
std::vector<Row> growthRows();
std::vector<Row> lateBoundRows();

} // namespace bench
