#include "TestMain.h"

#include "weather/WeatherPlatform.h"

#include <QtTest>

using namespace norva;

// The desktop's temperature unit on Linux follows the locale's measurement system.
class TemperatureUnitTest : public QObject {
    Q_OBJECT
private slots:
    void measurementLocaleDecides_data()
    {
        QTest::addColumn<QByteArray>("lcAll");
        QTest::addColumn<QByteArray>("lcMeasurement");
        QTest::addColumn<QByteArray>("lang");
        QTest::addColumn<bool>("fahrenheit");
        QTest::newRow("nothing set") << QByteArray() << QByteArray() << QByteArray() << false;
        QTest::newRow("C") << QByteArray() << QByteArray("C.UTF-8") << QByteArray() << false;
        QTest::newRow("US measurement")
            << QByteArray() << QByteArray("en_US.UTF-8") << QByteArray("de_DE.UTF-8") << true;
        QTest::newRow("British measurement is metric")
            << QByteArray() << QByteArray("en_GB.UTF-8") << QByteArray() << false;
        QTest::newRow("LANG when LC_MEASUREMENT is unset")
            << QByteArray() << QByteArray() << QByteArray("en_US.UTF-8") << true;
        QTest::newRow("LC_ALL wins") << QByteArray("de_DE.UTF-8") << QByteArray("en_US.UTF-8") << QByteArray()
                                     << false;
    }
    void measurementLocaleDecides()
    {
        QFETCH(QByteArray, lcAll);
        QFETCH(QByteArray, lcMeasurement);
        QFETCH(QByteArray, lang);
        const QByteArray saved[] = {qgetenv("LC_ALL"), qgetenv("LC_MEASUREMENT"), qgetenv("LANG")};
        const char* names[] = {"LC_ALL", "LC_MEASUREMENT", "LANG"};
        const QByteArray wanted[] = {lcAll, lcMeasurement, lang};
        for (int i = 0; i < 3; ++i)
            wanted[i].isEmpty() ? qunsetenv(names[i]) : qputenv(names[i], wanted[i]);
        const TemperatureUnit unit = Platform::systemTemperatureUnit();
        for (int i = 0; i < 3; ++i)
            saved[i].isEmpty() ? qunsetenv(names[i]) : qputenv(names[i], saved[i]);
        QTEST(unit == TemperatureUnit::fahrenheit, "fahrenheit");
    }
};

NORVA_TEST(TemperatureUnitTest)
#include "tst_TemperatureUnit.moc"
