// Checks whether the calling thread has enough free stack for Qt's recursion. A stack overflow would end the
// process.

#pragma once

namespace kelxml::limits
{

/// Whether the free stack of the calling thread is large enough for Qt's parser to recurse `nesting` levels.
/// If the calling thread is not the main thread, the first call caches where the thread's stack ends.
/// \throw std::bad_alloc if there is too little memory to look up the stack
bool hasRoomToParse(int nesting);

/// The depth of the deepest tree that Qt can save without exhausting the free stack of the calling thread.
/// Never more than `kMaxNodeDepth`.
/// \throw std::bad_alloc if there is too little memory to look up the stack
int depthThatCanBeSaved();

} // namespace kelxml::limits
