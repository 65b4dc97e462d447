// Sequences of random calls: no death, no leak, no difference from what is promised.

#include "support/call_machine.h"
#include "support/dom_fixture.h"

namespace
{

using CallSequences = DomTest;

void run(unsigned seed, std::size_t documents)
{
    model::CallMachine machine(randomChoice(seed), documents);
    for (int call = 0; call < 100; ++call)
        ASSERT_NO_THROW(machine.step()) << "seed " << seed << ", call " << call;
}

TEST_F(CallSequences, NeverKillLeakOrDifferFromTheModel)
{
    // The environment may share the sequences among processes, or look for long.
    const unsigned first = qEnvironmentVariable("KEL_FIRST_SEED").toUInt();
    const unsigned end = first + qEnvironmentVariable("KEL_SEQUENCES", QStringLiteral("3000")).toUInt();
    // With one document first: once two have met, guards are awake that may hide a fault of others.
    for (const std::size_t documents : {1U, 3U})
        for (unsigned seed = first; seed < end && !HasFatalFailure(); ++seed)
            if ((seed % 3 == 0) == (documents == 1))
                seed % 100 < 2 ? expectNothingLeft([=] { run(seed, documents); }) : run(seed, documents);
}

} // namespace
