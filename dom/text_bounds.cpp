// The look at a string and at a device.

#include "dom/text_bounds.h"

#include "dom/text_scanner.h"

#include <QtCore/QIODevice>

namespace kelxml::bounds
{

Look lookAt(const QString& text)
{
    DocumentChunks chunks{QStringView(text)};
    return TextScanner(chunks).document();
}

Look lookAt(QIODevice& device)
{
    const qint64 start = device.pos();
    DocumentChunks chunks(device);
    const Look look = TextScanner(chunks).document();
    device.seek(start);
    return look;
}

} // namespace kelxml::bounds
