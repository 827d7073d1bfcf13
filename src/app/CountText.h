#pragma once

#include <QString>

namespace norva {

// A count with its noun in the right number, for log lines and texts: "1 clip", "3 clips".
inline QString countText(qint64 count, const QString& one, const QString& many)
{
    return QString::number(count) + QLatin1Char(' ') + (count == 1 ? one : many);
}

} // namespace norva
