// Whether there is memory for what Qt does not survive without.

#pragma once

namespace kelxml::guards
{

/// To be called before a `QFile` is made. Where Qt makes the first of its objects on a thread, and where a
/// text stream connects itself to its device, it does not survive that memory runs out. What can be had for a
/// moment beforehand is as a rule still there for them. \throw std::bad_alloc
void makeSureOfMemoryForFile();

} // namespace kelxml::guards
