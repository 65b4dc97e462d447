// Both sides of every row take turns; which goes first changes from turn to turn.

#include "clock.h"
#include "context.h"
#include "host.h"
#include "rows.h"

#include <benchmark/benchmark.h>
#include <limits>
#include <malloc.h>

namespace bench
{

namespace
{

double turn(const Side& side)
{
    side.prepare();
    tidyHeap();
    return secondsOf(side.work);
}

/// One untimed turn of each. \return whether they did the same
bool warmUp(const Pair& pair)
{
    pair.library.prepare();
    const std::uint64_t amount = pair.library.work();
    pair.direct.prepare();
    return pair.direct.work() == amount && amount > 0;
}

void measure(benchmark::State& state, const Row& row, const Size& size)
{
    const Pair pair = row.make(size);
    if (!warmUp(pair))
        return state.SkipWithError("the two sides did not do the same");
    std::vector<double> library;
    std::vector<double> direct;
    std::vector<double> ratios;
    while (state.KeepRunning()) {
        if (library.size() % 2 == 0) {
            library.push_back(turn(pair.library));
            direct.push_back(turn(pair.direct));
        } else {
            direct.push_back(turn(pair.direct));
            library.push_back(turn(pair.library));
        }
        ratios.push_back(library.back() / direct.back());
        state.SetIterationTime(library.back());
    }
    state.counters["library_s"] = median(library);
    state.counters["direct_s"] = median(direct);
    state.counters["ratio"] = median(ratios);
    state.counters["items"] = static_cast<double>(pair.items);
    state.counters["max_ratio"] = row.maxRatio;
    state.counters["max_ns"] = row.maxNanoseconds;
    state.counters["by_name"] = row.isByName ? 1 : 0;
}

void registerRow(const Row& row)
{
    for (const Size& size : row.sizes) {
        const std::string name = row.name + "/" + size.name;
        benchmark::RegisterBenchmark(name.c_str(),
                                     [row, size](benchmark::State& state) { measure(state, row, size); })
            ->Iterations(size.turns)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
}

/// Freed memory stays with the process. Else a side that gives pages back pays for getting them again, and
/// which side that is hangs on the order.
void keepFreedMemory()
{
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    mallopt(M_TOP_PAD, 64 * 1024 * 1024);
    mallopt(M_MMAP_MAX, 0);
}

} // namespace

} // namespace bench

int main(int argc, char** argv)
{
    bench::keepFreedMemory();
    bench::startLibrary();
    for (const bench::Row& row : bench::allRows())
        bench::registerRow(row);
    bench::registerContext();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
