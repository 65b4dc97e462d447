// Whether the calling thread's free stack is enough for Qt's recursion. Overrunning it would end the process.

#pragma once

namespace kelxml::limits
{

/// Whether Qt's parser can recurse `nesting` levels. The limits of a thread's stack are cached after the
/// first call. \throw std::bad_alloc if there is no memory to find the stack
bool hasRoomToParse(int nesting);

/// How many levels of nodes Qt can save, at most `kMaxNodeDepth`. \throw as above
int depthThatCanBeSaved();

} // namespace kelxml::limits
