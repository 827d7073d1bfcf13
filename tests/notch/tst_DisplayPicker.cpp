#include "TestMain.h"

#include "notch/DisplayPicker.h"

#include <QtTest>

using namespace norva;

namespace {

ScreenFacts screen(const char* connector, QRect geometry, bool primary = false, const char* model = "",
                   const char* serial = "")
{
    return {QString::fromUtf8(connector), QString::fromUtf8(model), QString::fromUtf8(serial), geometry,
            primary};
}

const QRect left(0, 0, 1920, 1080);
const QRect right(1920, 0, 2560, 1440);

} // namespace

class DisplayPickerTest : public QObject {
    Q_OBJECT
private slots:
    void namesEachDisplayApart_data()
    {
        QTest::addColumn<QList<ScreenFacts>>("screens");
        QTest::addColumn<QStringList>("ids");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("laptop and a monitor")
            << QList<ScreenFacts>{screen("eDP-1", left), screen("HDMI-1", right, true, "DELL U2720Q")}
            << QStringList{"eDP-1", "HDMI-1"} << QStringList{"Built-in display", "DELL U2720Q"};
        QTest::newRow("a monitor without a model is its connector")
            << QList<ScreenFacts>{screen("DP-2", left)} << QStringList{"DP-2"} << QStringList{"DP-2"};
        QTest::newRow("two of one model on two connectors")
            << QList<ScreenFacts>{screen("DP-1", left, false, "LG 27UK850"),
                                  screen("DP-2", right, false, "LG 27UK850")}
            << QStringList{"DP-1", "DP-2"} << QStringList{"LG 27UK850 (DP-1)", "LG 27UK850 (DP-2)"};
        QTest::newRow("one name, told apart by serial")
            << QList<ScreenFacts>{screen("DP-1", left, false, "DELL", "CN0A1"),
                                  screen("DP-1", right, false, "DELL", "CN0B2")}
            << QStringList{"DP-1/CN0A1", "DP-1/CN0B2"} << QStringList{"DELL (at 0, 0)", "DELL (at 1920, 0)"};
        QTest::newRow("one name, told apart by position")
            << QList<ScreenFacts>{screen("screen", left), screen("screen", right)}
            << QStringList{"screen@0,0", "screen@1920,0"}
            << QStringList{"screen (at 0, 0)", "screen (at 1920, 0)"};
        // Two X screens of one server: each has its own origin, and both are called "screen".
        QTest::newRow("two X screens") << QList<ScreenFacts>{screen("screen", QRect(0, 0, 1600, 900), true),
                                                             screen("screen", QRect(0, 0, 1280, 800))}
                                       << QStringList{"screen@1600x900+0,0", "screen@1280x800+0,0"}
                                       << QStringList{"screen (1600 × 900)", "screen (1280 × 800)"};
        QTest::newRow("nothing tells them apart but their order")
            << QList<ScreenFacts>{screen("screen", left), screen("screen", left)}
            << QStringList{"screen#1", "screen#2"} << QStringList{"screen (1)", "screen (2)"};
        QTest::newRow("an identifier never holds the choice's separator")
            << QList<ScreenFacts>{screen("DP-1", left, false, "", "A|1"),
                                  screen("DP-1", right, false, "", "B|2")}
            << QStringList{"DP-1/A/1", "DP-1/B/2"} << QStringList{"DP-1 (at 0, 0)", "DP-1 (at 1920, 0)"};
    }

    void namesEachDisplayApart()
    {
        QFETCH(QList<ScreenFacts>, screens);
        QStringList describedIds;
        QStringList describedNames;
        for (const DisplayInfo& display : describeDisplays(screens)) {
            describedIds << display.id;
            describedNames << display.name;
        }
        QTEST(describedIds, "ids");
        QTEST(describedNames, "names");
    }

    void picksDisplaysForTheChoice_data()
    {
        const ScreenFacts laptop = screen("eDP-1", left);
        const ScreenFacts dell = screen("HDMI-1", right, true, "Dell");
        const ScreenFacts lg = screen("DP-2", QRect(4480, 0, 1920, 1080), false, "LG");
        QTest::addColumn<QString>("choice");
        QTest::addColumn<QList<ScreenFacts>>("connected");
        QTest::addColumn<QStringList>("picked");
        QTest::newRow("all") << "all" << QList<ScreenFacts>{laptop, dell, lg}
                             << QStringList{"eDP-1", "HDMI-1", "DP-2"};
        QTest::newRow("built-in over the primary")
            << "builtIn" << QList<ScreenFacts>{dell, laptop} << QStringList{"eDP-1"};
        QTest::newRow("built-in absent uses primary")
            << "builtIn" << QList<ScreenFacts>{lg, dell} << QStringList{"HDMI-1"};
        QTest::newRow("no primary uses the first")
            << "builtIn" << QList<ScreenFacts>{lg} << QStringList{"DP-2"};
        QTest::newRow("chosen display")
            << "display:DP-2|LG" << QList<ScreenFacts>{laptop, lg} << QStringList{"DP-2"};
        QTest::newRow("chosen display unplugged")
            << "display:DP-9|Old" << QList<ScreenFacts>{dell, laptop} << QStringList{"eDP-1"};
        QTest::newRow("nothing connected") << "all" << QList<ScreenFacts>{} << QStringList{};
        // Two X screens that share a name: the primary is the one its identifier names, not the
        // last screen of that name, and "all" gives each screen its own notch.
        const ScreenFacts first = screen("screen", QRect(0, 0, 1600, 900), true);
        const ScreenFacts second = screen("screen", QRect(0, 0, 1280, 800));
        QTest::newRow("same names, the primary")
            << "builtIn" << QList<ScreenFacts>{first, second} << QStringList{"screen@1600x900+0,0"};
        QTest::newRow("same names, the primary listed last")
            << "builtIn" << QList<ScreenFacts>{second, first} << QStringList{"screen@1600x900+0,0"};
        QTest::newRow("same names, all") << "all" << QList<ScreenFacts>{first, second}
                                         << QStringList{"screen@1600x900+0,0", "screen@1280x800+0,0"};
        QTest::newRow("same names, the one chosen")
            << "display:screen@1280x800+0,0|screen (1280 × 800)" << QList<ScreenFacts>{first, second}
            << QStringList{"screen@1280x800+0,0"};
    }

    void picksDisplaysForTheChoice()
    {
        QFETCH(QString, choice);
        QFETCH(QList<ScreenFacts>, connected);
        QStringList ids;
        for (const DisplayInfo& display :
             pickDisplays(*DisplayChoice::parse(choice), describeDisplays(connected)))
            ids << display.id;
        QTEST(ids, "picked");
    }

    void builtInConnectors_data()
    {
        QTest::addColumn<QString>("connector");
        QTest::addColumn<bool>("builtIn");
        QTest::newRow("eDP") << "eDP-1" << true;
        QTest::newRow("LVDS") << "LVDS1" << true;
        QTest::newRow("DSI") << "DSI-1" << true;
        QTest::newRow("HDMI") << "HDMI-A-1" << false;
        QTest::newRow("DisplayPort") << "DP-1" << false;
        QTest::newRow("an X screen") << "screen" << false;
    }

    void builtInConnectors()
    {
        QFETCH(QString, connector);
        QTEST(isBuiltInConnector(connector), "builtIn");
    }
};

NORVA_TEST(DisplayPickerTest)
#include "tst_DisplayPicker.moc"
