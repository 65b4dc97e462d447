// The rows of all tables, in the order in which they are shown.

#include "rows.h"

namespace bench
{

std::vector<Size> twoSizes(std::int64_t small, int turns)
{
    constexpr int kTimes = 10;
    return {{std::to_string(small), small, turns},
            {std::to_string(kTimes * small), kTimes * small, (turns + 3) / 4}};
}

std::vector<Row> allRows()
{
    std::vector<Row> all;
    for (const auto& group : {documentRows(), walkRows(), changeRows(), filerRows(), lateBoundRows()})
        all.insert(all.end(), group.begin(), group.end());
    return all;
}

} // namespace bench
