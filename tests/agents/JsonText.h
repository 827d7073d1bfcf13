#pragma once

#include "TempHome.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>

// JSON written with single quotes, so the agents' tests read without escapes.
inline QByteArray j(const char* text)
{
    return QByteArray(text).replace('\'', '"');
}

// The JSON object a file holds; empty when it holds none.
inline QJsonObject readJson(const QString& path)
{
    return QJsonDocument::fromJson(norva::test::TempHome::read(path)).object();
}
