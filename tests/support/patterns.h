// Patterns for long, repetitive texts.

#pragma once

#include "support/rows.h"

#include <QtCore/QStringList>
#include <string>

namespace keltest
{

/// Repeats each piece in braces: `{piece}` n times, `{piece|7}` 7 times, `{piece|-7}` n - 7 times. In a
/// piece, `@` becomes the number of the repetition, counted from 0.
inline QString expand(const std::string& pattern, int n)
{
    QStringList parts = QString::fromStdString(pattern).split(u'{');
    QString all = parts.takeFirst();
    for (const QString& part : parts) {
        const QString group = part.section(u'}', 0, 0);
        const int given = group.section(u'|', 1).toInt();
        for (int i = 0; i < (given > 0 ? given : n + given); ++i)
            all += group.section(u'|', 0, 0).replace(u'@', QString::number(i));
        all += part.section(u'}', 1);
    }
    return all;
}

} // namespace keltest
