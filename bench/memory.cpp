// Measures memory: the peak of the same work through the library and with Qt alone, and the size of a live
// node object and of a handle of Qt. Prints a line for each comparison.

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

/// A figure about this process in /proc/self/status, in kilobytes.
double kilobytes(const std::string& figure)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind(figure + ":", 0) == 0)
            return std::stod(line.substr(figure.size() + 1));
    require(false, "a figure of the kernel");
    return 0;
}

/// The peak memory of the work, without the memory that the process used before. \return megabytes
double peakOf(const Side& side)
{
    side.prepare();
    malloc_trim(0); // otherwise the work could reuse freed memory, which would not count
    require(static_cast<bool>(std::ofstream("/proc/self/clear_refs") << "5" << std::flush),
            "resetting a peak");
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
    require(child >= 0, "a process");
    if (child == 0) {
        std::printf(",%.1f", peakOf(row.make(size).*side));
        std::fflush(stdout);
        _exit(0); // without deleting the files, which the parent still needs
    }
    int status = 0;
    require(waitpid(child, &status, 0) == child && status == 0, "a measured peak");
}

void printPeaks(const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        for (const Size& size : row.sizes) {
            // Only these rows build their trees during the measurement.
            if (size.name != "10 MB" && row.name + size.name != "building from nothing100000")
                continue;
            inputFile(size.value); // created now, so that all processes read the same file
            std::printf("%s,%s", row.name.c_str(), size.name.c_str());
            printPeak(row, size, &Pair::library);
            printPeak(row, size, &Pair::direct);
            std::printf("\n");
        }
    }
}

/// \param make creates an object
/// \return the size of an object in bytes, including its allocations
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
