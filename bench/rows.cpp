// The rows of all tables, in the order in which they are shown.

#include "rows.h"

namespace bench
{

std::vector<Size> sizesFrom(std::int64_t small, int turns, int count)
{
    constexpr int kTimes = 10;
    std::vector<Size> sizes;
    for (; count > 0; --count, small *= kTimes, turns = (turns + 3) / 4)
        sizes.push_back({std::to_string(small), small, turns});
    return sizes;
}

std::vector<Row> allRows()
{
    std::vector<Row> all;
    for (const auto& group : {documentRows(), walkRows(), changeRows(), filerRows(), lateBoundRows()})
        all.insert(all.end(), group.begin(), group.end());
    return all;
}

} // namespace bench
