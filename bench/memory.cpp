// Memory: what a piece of work takes at its peak, through the library and with Qt directly, and the bytes of
// a live object beside those of Qt's handle. Prints a line for each.

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

/// A figure of this process as the kernel gives it, in kilobytes.
double kilobytes(const std::string& figure)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind(figure + ":", 0) == 0)
            return std::stod(line.substr(figure.size() + 1));
    require(false, "a figure of the kernel");
    return 0;
}

/// How much memory the work takes at its peak, beyond what the process holds before it. \return megabytes
double peakOf(const Side& side)
{
    side.prepare();
    malloc_trim(0); // else the work would begin with what was freed before it
    require(static_cast<bool>(std::ofstream("/proc/self/clear_refs") << "5" << std::flush),
            "resetting a peak");
    const double before = kilobytes("VmRSS");
    side.work();
    return (kilobytes("VmHWM") - before) / 1024;
}

using SideOfPair = Side Pair::*;

/// Of one side, in a fresh process that ends with it.
void printPeak(const Row& row, const Size& size, SideOfPair side)
{
    std::fflush(stdout);
    const pid_t child = fork();
    require(child >= 0, "a process");
    if (child == 0) {
        std::printf(",%.1f", peakOf(row.make(size).*side));
        std::fflush(stdout);
        _exit(0); // the files are the parent's
    }
    int status = 0;
    require(waitpid(child, &status, 0) == child && status == 0, "a measured peak");
}

void printPeaks(const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        for (const Size& size : row.sizes) {
            // Other rows on trees make those before they are measured.
            if (size.name != "10 MB" && row.name + size.name != "building from nothing100000")
                continue;
            inputFile(size.value); // so that all processes read the same
            std::printf("%s,%s", row.name.c_str(), size.name.c_str());
            printPeak(row, size, &Pair::library);
            printPeak(row, size, &Pair::direct);
            std::printf("\n");
        }
    }
}

/// \param make makes one more object
/// \return the bytes of one, itself and what it allocates
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
