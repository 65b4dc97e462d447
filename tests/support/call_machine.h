// Random calls over the six classes and three documents, each held against the model. The choices come from a
// seeded generator or from a fuzzer's bytes.

#pragma once

#include <functional>
#include <string>

/// Makes calls until it finds a difference or is told to stop, and releases everything.
/// \param choose answers a number below its argument
/// \param documents how many there are, in every state. One alone is loaded at once, and no node of another
/// ever
///        comes into it
/// \return an empty string, or what differs from the promise
std::string makeCalls(std::function<unsigned(unsigned)> choose, const std::function<bool()>& goesOn,
                      std::size_t documents = 3);
