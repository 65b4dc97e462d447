// Sequences of random calls: no death, no leak, no difference from what is promised.

#include "support/call_machine.h"
#include "support/dom_fixture.h"

#include <random>

namespace
{

using CallSequences = DomTest;

/// A number that the environment may set: to share the sequences among processes, or to look for long.
unsigned asked(const char* variable, int otherwise)
{
    bool isSet = false;
    const int value = qEnvironmentVariableIntValue(variable, &isSet);
    return static_cast<unsigned>(isSet ? value : otherwise);
}

void run(unsigned seed, std::size_t documents)
{
    std::mt19937 random(seed);
    int calls = 0;
    ASSERT_NO_THROW(makeCalls([&](std::size_t limit) { return static_cast<unsigned>(random() % limit); },
                              [&calls] { return calls++ < 100; }, documents))
        << "seed " << seed << ", call " << calls;
}

TEST_F(CallSequences, NeverKillLeakOrDifferFromTheModel)
{
    const unsigned first = asked("KEL_FIRST_SEED", 0);
    const unsigned end = first + asked("KEL_SEQUENCES", 3000);
    // With one document first: once two have met, guards are awake that may hide a fault of others.
    for (const std::size_t documents : {1, 3})
        for (unsigned seed = first; seed < end && !HasFatalFailure(); ++seed)
            if ((seed % 3 == 0) == (documents == 1)) {
                if (seed % 100 < 2)
                    expectNothingLeft([=] { run(seed, documents); });
                else
                    run(seed, documents);
            }
}

} // namespace
