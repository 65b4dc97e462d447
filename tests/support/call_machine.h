// Random calls over the six classes and three documents, each held against the model. The choices come from a
// seeded generator or from a fuzzer's bytes.

#pragma once

#include <cstddef>
#include <functional>

/// Answers a number below its argument.
using Choose = std::function<unsigned(std::size_t)>;

/// Makes calls until it finds a difference or is told to stop, and releases everything.
/// \param documents how many there are, in every state. One alone is loaded at once, and no node of another
///        ever comes into it
/// \throw std::logic_error that says where in the source a difference from the promise was found
void makeCalls(Choose choose, const std::function<bool()>& goesOn, std::size_t documents = 3);
