// The life of Qt's text codecs.

#pragma once

#include <QtCore/QTextCodec>

namespace kelxml::qt
{

/// Whether Qt's text codecs still exist. The codecs are destroyed when the process exits. A destructor that
/// runs after that, such as the destructor of a global object, must not open a file.
inline bool hasCodecs()
{
    return QTextCodec::codecForLocale() != nullptr;
}

} // namespace kelxml::qt
