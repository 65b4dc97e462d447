// Checks whether the calling thread has enough free stack for Qt's recursion. A stack overflow would end the
// process.

#pragma once

namespace kelxml::limits
{

/// Whether Qt's parser can recurse `nesting` levels. Caches where the thread's stack ends, except on the
/// first thread.
/// \throw std::bad_alloc if there is too little memory to look up the stack
bool hasRoomToParse(int nesting);

/// How many levels of nodes Qt can save, at most `kMaxNodeDepth`.
/// \throw std::bad_alloc if there is too little memory to look up the stack
int depthThatCanBeSaved();

} // namespace kelxml::limits
