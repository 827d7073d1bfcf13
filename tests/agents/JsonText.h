#pragma once

#include <QByteArray>

// JSON written with single quotes, so the agents' tests read without escapes.
inline QByteArray j(const char* text)
{
    return QByteArray(text).replace('\'', '"');
}
