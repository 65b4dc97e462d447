// Sequences of random calls never crash, leak or differ from the model.

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
    // The environment may divide the sequences among processes, or ask for more.
    const unsigned first = qEnvironmentVariable("KEL_FIRST_SEED").toUInt();
    const unsigned end = first + qEnvironmentVariable("KEL_SEQUENCES", QStringLiteral("3000")).toUInt();
    const auto runAll = [=](std::size_t documents, auto isWanted) {
        for (unsigned seed = first; seed < end && !HasFatalFailure(); ++seed) {
            if (!isWanted(seed))
                continue;
            const auto sequence = [=] { run(seed, documents); };
            if (seed % 100 < 2)
                expectNothingLeft(sequence);
            else
                sequence();
        }
    };
    // One document first: the guards that nodes of two documents enable may hide a fault in others.
    runAll(1, [](unsigned seed) { return seed % 3 == 0; });
    runAll(3, [](unsigned seed) { return seed % 3 != 0; });
}

} // namespace
