// Takes memory and gives it back.

#include "guards/memory_room.h"

#include <QtCore/QByteArray>

namespace kelxml::guards
{

void makeSureOfMemoryForFile()
{
    constexpr int kRoom = 64 * 1024;
    QByteArray(kRoom, Qt::Uninitialized);
}

} // namespace kelxml::guards
