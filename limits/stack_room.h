// Whether the calling thread's stack has room for Qt's recursion. Overrunning it would end the process.

#pragma once

namespace kelxml::limits
{

/// Whether Qt's parser can go `nesting` levels deep. On a usual thread, and for a document that is not deep,
/// this is one comparison once the system was asked where the stack ends. \throw std::bad_alloc when there
/// was no memory to ask
bool hasRoomToParse(int nesting);

/// How many nodes below one another Qt can save, `kMaxNodeDepth` at the most. \throw as above
int depthThatCanBeSaved();

} // namespace kelxml::limits
