// Sequences of random calls (see call_machine.h) never crash, leak or differ from the model.

#include "support/call_machine.h"
#include "support/dom_fixture.h"
#include "support/seeds.h"

namespace
{

using CallSequences = DomTest;

void run(unsigned seed, std::size_t documents)
{
    model::CallMachine machine(randomChoice(seed), documents);
    for (int call = 0; call < 100; ++call)
        ASSERT_NO_THROW(machine.step()) << "call " << call << ", documents " << documents;
}

TEST_F(CallSequences, NeverCrashLeakOrDifferFromTheModel)
{
    // The environment can divide the seeds among processes, or ask for more seeds.
    const unsigned first = qEnvironmentVariable("KEL_FIRST_SEED").toUInt();
    const unsigned end = first + qEnvironmentVariable("KEL_SEQUENCES", QStringLiteral("3000")).toUInt();
    // The first sequences use one document. Using several documents enables guards for the rest of the
    // process, and these guards could hide a fault in another guard.
    for (const unsigned documents : {1U, 3U})
        forEachSeed(first, end, [=](unsigned seed) {
            const auto sequence = [=] { run(seed, documents); };
            if ((seed % 3 == 0) == (documents == 1))
                seed % 100 < 2 ? expectNoLeaks(sequence) : sequence();
        });
}

} // namespace
