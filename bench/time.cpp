// Measures the time of every row. The two sides take turns, and the side that goes first alternates.

#include "host.h"
#include "rows.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <malloc.h>

namespace bench
{

namespace
{

/// The CPU time of this thread, which excludes other work on the machine.
double cpuSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// Makes the allocator sort and join freed memory now. Otherwise, the first large allocation in the work
/// would do this, and loading a document after destroying a tree would take twice as long.
void tidyHeap()
{
    void* const volatile block = std::malloc(1024 * 1024);
    std::free(block);
}

/// Returns the median. Among three or more values, a single slow turn hardly changes the median.
double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return (values[(values.size() - 1) / 2] + values[values.size() / 2]) / 2;
}

/// Runs one side once.
/// \param amount how much work one turn did, as `Side::work` returned it; 0 before the first turn. Every
///        later turn must do the same amount. Receives the amount of this turn
/// \return the time of the work in seconds
double turn(const Side& side, std::uint64_t& amount)
{
    side.prepare();
    tidyHeap();
    const double start = cpuSeconds();
    const std::uint64_t now = side.work();
    const double taken = cpuSeconds() - start;
    require(now > 0 && (amount == 0 || amount == now), "the turns did different amounts of work");
    amount = now;
    return taken;
}

void measure(benchmark::State& state, const Row& row, const Size& size)
{
    const Pair pair = row.make(size);
    std::vector<double> library;
    std::vector<double> direct;
    std::vector<double> ratios;
    std::uint64_t amount = 0;
    turn(pair.library, amount); // warm-up
    if (!size.isLibraryOnly)
        turn(pair.direct, amount);
    while (state.KeepRunning()) {
        const bool isLibraryFirst = library.size() % 2 == 0;
        if (isLibraryFirst)
            library.push_back(turn(pair.library, amount));
        if (!size.isLibraryOnly)
            direct.push_back(turn(pair.direct, amount));
        if (!isLibraryFirst)
            library.push_back(turn(pair.library, amount));
        if (!size.isLibraryOnly)
            ratios.push_back(library.back() / direct.back());
        state.SetIterationTime(library.back());
    }
    state.counters["library_s"] = median(library);
    if (!size.isLibraryOnly) {
        state.counters["direct_s"] = median(direct);
        state.counters["ratio"] = median(ratios);
    }
    state.counters["items"] = static_cast<double>(pair.items);
    state.counters["max_ratio"] = row.maxRatio;
    state.counters["max_ns"] = row.maxNanoseconds;
}

} // namespace

} // namespace bench

int main(int argc, char** argv)
{
    // Keeps freed memory in the process. Otherwise, one side would return pages to the system, and the side
    // that runs next would spend time on getting the pages back.
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    mallopt(M_TOP_PAD, 64 * 1024 * 1024);
    mallopt(M_MMAP_MAX, 0);
    bench::registerTypeLibrary();
    for (const auto& rows :
         {bench::documentRows(), bench::serializeRows(), bench::layerRows(), bench::treeRows(),
          bench::loopRows(), bench::growthRows(), bench::lateBoundRows()})
        for (const bench::Row& row : rows)
            for (const bench::Size& size : row.sizes)
                benchmark::RegisterBenchmark(
                    (row.name + "/" + size.name).c_str(),
                    [=](benchmark::State& state) { bench::measure(state, row, size); })
                    ->Iterations(size.turns)
                    ->UseManualTime();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
