#pragma once

#include "app/Platform.h"

#include <QString>

// What the clipboard page says, character for character, in one place.
namespace norva::ClipboardTexts {

inline const QString privateFooter = QStringLiteral("Passwords and private copies are never kept");
inline const QString historyOff = QStringLiteral("The clipboard history is off.");
inline const QString empty = QStringLiteral("Anything you copy shows up here. Click one to copy it again.");
inline const QString nothingMatchesOpening = QStringLiteral("Nothing matches \u201C");
inline const QString nothingMatchesClosing = QStringLiteral("\u201D");
inline const QString cleared = QStringLiteral("Cleared. Pinned ones stay.");
inline const QString pictureGone = QStringLiteral("That picture is gone from ") + Platform::thisComputer() +
                                   QStringLiteral(", so it left the history.");
inline const QString filesGone = QStringLiteral("Those files are gone from ") + Platform::thisComputer() +
                                 QStringLiteral(", so the clip left the history.");
inline const QString nothingLeft =
    QStringLiteral("That clip had nothing left to copy, so it left the history.");
inline const QString refused = QStringLiteral("The clipboard didn't take it. Try again.");

} // namespace norva::ClipboardTexts
