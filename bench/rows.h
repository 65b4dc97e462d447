// The rows of the benchmarks. A row compares two sides that do the same work. In most rows, one side uses the
// library, and the other side uses only Qt.
//
// Except in layer.cpp, serialize.cpp and the row "filer", both sides read and return text with 32-bit
// characters, because hosts need such text: for each BSTR that the library returns, the other side makes a
// std::wstring. The names that a side passes to a call are constants in most programs, so neither side
// converts them during the measurement.

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
    /// Uses only Qt, except in two rows: "property get by name", where this side calls through the vtable,
    /// and "two threads", where this side uses the library in one thread.
    Side direct;
    std::int64_t items; ///< the number of calls, nodes or documents in the work
};

struct Size
{
    std::string name;
    std::int64_t value; ///< nodes or bytes; 0 for the MIME database
    int turns;          ///< the number of times that each side does its work
    /// Whether only the library's side runs. The other side would be too slow, is measured in another row, or
    /// does not exist.
    bool isLibraryOnly = false;
};

struct Row
{
    std::string name;
    std::vector<Size> sizes;
    std::function<Pair(const Size&)> make;
    /// Target: the library's time divided by the other side's time is at most this. 0 for no target.
    double maxRatio = 0;
    /// Target: the library's time for an item is at most this. 0 for no target.
    double maxNanoseconds = 0;
};

std::vector<Row> documentRows();
std::vector<Row> serializeRows();
std::vector<Row> layerRows();
std::vector<Row> treeRows();
std::vector<Row> loopRows();
std::vector<Row> growthRows();
std::vector<Row> lateBoundRows();

} // namespace bench
