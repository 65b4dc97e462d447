// The prescan of a string and of the bytes of a file.

#include "guards/prescan.h"

#include "guards/prescanner.h"

namespace kelxml::guards
{

Prescan prescan(const QString& text)
{
    DocumentChunks chunks{QStringView(text)};
    return Prescanner(chunks).document();
}

Prescan prescan(const QByteArray& bytes)
{
    DocumentChunks chunks(bytes);
    return Prescanner(chunks).document();
}

} // namespace kelxml::guards
