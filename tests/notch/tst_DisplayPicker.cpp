#include "TestMain.h"

#include "notch/DisplayPicker.h"

#include <QtTest>

using namespace norva;

class DisplayPickerTest : public QObject {
    Q_OBJECT
private slots:
    void picksDisplaysForTheChoice_data()
    {
        const DisplayInfo laptop{QStringLiteral("eDP-1"), QStringLiteral("Built-in"), true, false};
        const DisplayInfo dell{QStringLiteral("HDMI-1"), QStringLiteral("Dell"), false, true};
        const DisplayInfo lg{QStringLiteral("DP-2"), QStringLiteral("LG"), false, false};
        QTest::addColumn<QString>("choice");
        QTest::addColumn<QList<DisplayInfo>>("connected");
        QTest::addColumn<QStringList>("picked");
        QTest::newRow("all") << "all" << QList<DisplayInfo>{laptop, dell, lg}
                             << QStringList{"eDP-1", "HDMI-1", "DP-2"};
        QTest::newRow("built-in") << "builtIn" << QList<DisplayInfo>{dell, laptop} << QStringList{"eDP-1"};
        QTest::newRow("built-in absent uses primary")
            << "builtIn" << QList<DisplayInfo>{lg, dell} << QStringList{"HDMI-1"};
        QTest::newRow("no primary uses the first")
            << "builtIn" << QList<DisplayInfo>{lg} << QStringList{"DP-2"};
        QTest::newRow("chosen display")
            << "display:DP-2|LG" << QList<DisplayInfo>{laptop, lg} << QStringList{"DP-2"};
        QTest::newRow("chosen display unplugged")
            << "display:DP-9|Old" << QList<DisplayInfo>{dell, laptop} << QStringList{"eDP-1"};
        QTest::newRow("nothing connected") << "all" << QList<DisplayInfo>{} << QStringList{};
    }

    void picksDisplaysForTheChoice()
    {
        QFETCH(QString, choice);
        QFETCH(QList<DisplayInfo>, connected);
        QFETCH(QStringList, picked);
        QStringList ids;
        for (const DisplayInfo& display : pickDisplays(*DisplayChoice::parse(choice), connected))
            ids << display.id;
        QCOMPARE(ids, picked);
    }

    void builtInConnectors()
    {
        QVERIFY(isBuiltInConnector(QStringLiteral("eDP-1")));
        QVERIFY(isBuiltInConnector(QStringLiteral("LVDS1")));
        QVERIFY(!isBuiltInConnector(QStringLiteral("HDMI-A-1")));
        QVERIFY(!isBuiltInConnector(QStringLiteral("DP-1")));
    }
};

NORVA_TEST(DisplayPickerTest)
#include "tst_DisplayPicker.moc"
