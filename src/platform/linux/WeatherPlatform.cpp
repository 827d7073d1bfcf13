#include "weather/WeatherPlatform.h"

#include <QLocale>
#include <QtGlobal>

#include <langinfo.h>
#include <locale.h>

namespace norva::Platform {
namespace {

// glibc's LC_MEASUREMENT says 1 for metric and 2 for the US customary units.
constexpr char kUsMeasurement = 2;

// The locale name that decides measurements, as the C library picks it.
QByteArray measurementLocaleName()
{
    for (const char* variable : {"LC_ALL", "LC_MEASUREMENT", "LANG"}) {
        const QByteArray value = qgetenv(variable);
        if (!value.isEmpty())
            return value;
    }
    return QByteArrayLiteral("C");
}

} // namespace

TemperatureUnit systemTemperatureUnit()
{
    const QByteArray name = measurementLocaleName();
    if (locale_t locale = newlocale(LC_MEASUREMENT_MASK, name.constData(), locale_t(nullptr))) {
        const char* measurement = nl_langinfo_l(_NL_MEASUREMENT_MEASUREMENT, locale);
        const bool imperial = measurement && measurement[0] == kUsMeasurement;
        freelocale(locale);
        return imperial ? TemperatureUnit::fahrenheit : TemperatureUnit::celsius;
    }
    // A locale the system has not generated: Qt knows the country's measurement system by name.
    const bool imperial = QLocale(QString::fromLatin1(name)).measurementSystem() == QLocale::ImperialUSSystem;
    return imperial ? TemperatureUnit::fahrenheit : TemperatureUnit::celsius;
}

} // namespace norva::Platform
