// Whether the calling thread's stack has room for Qt's recursion. Overrunning it would end the process.

#pragma once

namespace kelxml
{

/// Whether Qt's parser can go `nesting` levels deep. On a usual thread this is one comparison.
bool hasRoomToParse(int nesting) noexcept;

/// Whether Qt can save a tree of `depth` nodes in a row.
bool hasRoomToSave(int depth) noexcept;

} // namespace kelxml
