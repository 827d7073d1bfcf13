#pragma once

#include "app/Platform.h"

#include <QString>

// What the weather says to the person and writes to the log, character for character, in one place.
namespace norva::WeatherTexts {

inline const QString logPrefix = QStringLiteral("Norva Weather: ");

// What was not done, as the log says it; the reason follows in parentheses.
inline const QString forecastAddressFailed = QStringLiteral("the forecast address did not build");
inline const QString forecastFailed = QStringLiteral("reading the forecast failed");
inline const QString noCurrentConditions = QStringLiteral("Open-Meteo sent no current conditions");
inline const QString locatingFailed =
    QStringLiteral("placing ") + Platform::thisComputer() + QStringLiteral(" from the network failed");
inline const QString searchFailed = QStringLiteral("searching places failed");
inline const QString geocoderUnreadable = QStringLiteral("the geocoder sent nothing readable");
inline const QString searchingOpening = QStringLiteral("searching places for \"");

// The person's side.
inline const QString forecastMissing = QStringLiteral("The forecast didn't come back.");
inline const QString cannotPlace = QStringLiteral("Norva couldn't place you. Pin your city.");
inline const QString searchMissing = QStringLiteral("The place search didn't come back.");
inline const QString searching = QStringLiteral("Searching\u2026");
inline const QString noPlacesOpening = QStringLiteral("No place matches \u201C");
inline const QString noPlacesClosing = QStringLiteral("\u201D.");
inline const QString locating = QStringLiteral("Finding your place\u2026");
inline const QString loading = QStringLiteral("Asking for the forecast\u2026");
inline const QString nearbyPlace = QStringLiteral("Near you");

} // namespace norva::WeatherTexts
