// Measures memory. Compares the peak memory of the same work through the library and with Qt alone, and the
// size of a node object of the library with the size of a Qt handle. Prints a line for each comparison.

#include "host.h"
#include "rows.h"

#include <cstdio>
#include <fstream>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench
{

namespace
{

/// Returns the figure with the name `figure` from /proc/self/status, in kilobytes.
double kilobytes(const std::string& figure)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind(figure + ":", 0) == 0)
            return std::stod(line.substr(figure.size() + 1));
    require(false, "finding a figure in /proc/self/status");
    return 0;
}

/// Returns the peak memory of the work in megabytes, without the memory that the process used before.
double peakOf(const Side& side)
{
    side.prepare();
    malloc_trim(0); // otherwise the work could reuse freed memory, which would not count
    require(static_cast<bool>(std::ofstream("/proc/self/clear_refs") << "5" << std::flush),
            "resetting the peak memory");
    const double before = kilobytes("VmRSS");
    side.work();
    return (kilobytes("VmHWM") - before) / 1024;
}

using SideOfPair = Side Pair::*;

/// Measures one side in a new process, which then exits.
void printPeak(const Row& row, const Size& size, SideOfPair side)
{
    std::fflush(stdout);
    const pid_t child = fork();
    require(child >= 0, "creating a process");
    if (child == 0) {
        std::printf(",%.1f", peakOf(row.make(size).*side));
        std::fflush(stdout);
        _exit(0); // `exit` would delete the input files, which the parent still needs
    }
    int status = 0;
    require(waitpid(child, &status, 0) == child && status == 0, "measuring a peak in a new process");
}

void printPeaks(const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        for (const Size& size : row.sizes) {
            // Measures only inputs of 10 MB, and one size of the row that builds a tree. Most rows without a
            // 10 MB input create their trees before the measurement, so their peaks are small.
            if (size.name != "10 MB" && row.name + size.name != "building from nothing100000")
                continue;
            inputFile(size.value); // creates the file now, so that all processes read the same file
            std::printf("%s,%s", row.name.c_str(), size.name.c_str());
            printPeak(row, size, &Pair::library);
            printPeak(row, size, &Pair::direct);
            std::printf("\n");
        }
    }
}

/// Returns the size of an object in bytes, including the memory that the object allocates.
/// \param make creates an object
template <class Make>
std::size_t bytesOf(Make make)
{
    constexpr std::size_t kObjects = 10'000;
    std::vector<decltype(make())> kept;
    kept.reserve(kObjects);
    const std::size_t before = mallinfo2().uordblks;
    for (std::size_t object = 0; object < kObjects; ++object)
        kept.push_back(make());
    return sizeof(kept.front()) + (mallinfo2().uordblks - before) / kObjects;
}

void printObjects()
{
    const LibraryTree tree(1);
    const QtTree qtTree(1);
    std::printf("a live node,bytes,%zu,%zu\n", bytesOf([&] { return itemOf(*childrenOf(*tree.root), 0); }),
                bytesOf([&] { return qtTree.root.firstChild(); }));
}

} // namespace

} // namespace bench

int main()
{
    for (const auto& rows : {bench::documentRows(), bench::treeRows()})
        bench::printPeaks(rows);
    bench::printObjects();
    return 0;
}
