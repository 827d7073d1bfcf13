#pragma once

#include "reminders/DueParser.h"

#include <QStringList>

#include <optional>

namespace norva::due {

// The instant, calendar and locale that the due-parse tools read phrases against, taken from
// "--now 2026-11-18T10:00:00 --tz Europe/London --locale en_GB"; missing flags mean this machine's.
struct DueParseSetting {
    QDateTime now;
    Calendar calendar;
    QLocale locale;
    QStringList rest; // arguments that are not one of the three flags

    // Nothing, with a sentence on standard error, when a flag's value cannot be used.
    static std::optional<DueParseSetting> fromArguments(const QStringList& arguments);

    // One JSON line: "text", "date" (ISO 8601 with offset, or null), "hasTime", "label", "title".
    static QByteArray jsonLine(const QString& text, const std::optional<Reading>& reading);

    // "2026-11-19T17:00:00+00:00"
    static QString isoWithOffset(const QDateTime& date);
};

// Reads a file of phrases, one a line, skipping blank lines and lines that begin with "#".
QStringList readPhrases(const QString& path);

} // namespace norva::due
