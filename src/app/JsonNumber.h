#pragma once

#include <QJsonValue>
#include <QString>

#include <cmath>
#include <optional>

// A number from JSON written by another program: some write 0.42, some "0.42". Anything else,
// including NaN and infinities spelled as text, is no number at all.
inline std::optional<double> jsonNumber(const QJsonValue& value)
{
    if (value.isDouble())
        return value.toDouble();
    if (value.isString()) {
        bool ok = false;
        const double number = value.toString().trimmed().toDouble(&ok);
        if (ok && std::isfinite(number))
            return number;
    }
    return std::nullopt;
}
