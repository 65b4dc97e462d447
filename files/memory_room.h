// Whether there is memory for what Qt does not survive without.

#pragma once

#include <QtCore/QByteArray>

namespace kelxml::files
{

/// To be called before a `QFile` is made. When Qt makes the first of its objects on a thread, and when a text
/// stream connects to its device, Qt does not survive a lack of memory. Allocating and freeing this much
/// first makes a failure there unlikely. \throw std::bad_alloc
inline void makeSureOfMemoryForFile()
{
    constexpr int kRoom = 64 * 1024;
    QByteArray(kRoom, Qt::Uninitialized);
}

} // namespace kelxml::files
