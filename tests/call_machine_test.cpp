// Sequences of random calls: no death, no leak, no difference from what is promised.

#include "support/call_machine.h"
#include "support/dom_fixture.h"

#include <cstdlib>
#include <random>

namespace
{

using CallSequences = DomTest;

/// How many sequences; the environment asks for more, or for fewer under valgrind.
unsigned sequences()
{
    const char* const asked = std::getenv("KEL_SEQUENCES");
    return asked ? static_cast<unsigned>(std::atoi(asked)) : 3000;
}

void run(unsigned seed, std::size_t documents)
{
    std::mt19937 random(seed);
    int calls = 0;
    const std::string difference =
        makeCalls([&](unsigned limit) { return static_cast<unsigned>(random() % limit); },
                  [&calls] { return calls++ < 100; }, documents);
    ASSERT_EQ("", difference) << "seed " << seed << ", call " << calls;
}

TEST_F(CallSequences, NeverKillLeakOrDifferFromTheModel)
{
    for (unsigned seed = 0; seed < sequences(); ++seed) {
        // With one document first: once two have met, guards are awake that may hide a fault of others.
        const std::size_t documents = seed < sequences() / 3 ? 1 : 2;
        if (seed % 100 == 0)
            expectNothingLeft([=] { run(seed, documents); });
        else
            run(seed, documents);
        if (HasFatalFailure())
            return;
    }
}

} // namespace
