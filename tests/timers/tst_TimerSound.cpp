#include "LogCapture.h"
#include "TestMain.h"

#include "platform/linux/FreedesktopTimerSound.h"

#include <QtTest>

using namespace norva;

// Which of the desktop's players sounds the end of a timer.
class TimerSoundTest : public QObject {
    Q_OBJECT
private slots:
    void thePlayerIsTheDesktopsOwn_data()
    {
        QTest::addColumn<QStringList>("programs");
        QTest::addColumn<bool>("themeInstalled");
        QTest::addColumn<QStringList>("command");
        const QString file = QStringLiteral("/usr/share/sounds/freedesktop/stereo/complete.oga");
        QTest::newRow("canberra plays the theme's event")
            << QStringList{"canberra-gtk-play", "paplay"} << false
            << QStringList{"/bin/canberra-gtk-play", "-i", "complete", "-d", "Norva"};
        QTest::newRow("paplay plays the theme's file")
            << QStringList{"paplay", "pw-play"} << true << QStringList{"/bin/paplay", file};
        QTest::newRow("pw-play where PipeWire alone is there")
            << QStringList{"pw-play"} << true << QStringList{"/bin/pw-play", file};
        QTest::newRow("a player without the theme is quiet")
            << QStringList{"paplay"} << false << QStringList{};
        QTest::newRow("no player at all") << QStringList{} << true << QStringList{};
    }
    void thePlayerIsTheDesktopsOwn()
    {
        QFETCH(QStringList, programs);
        QFETCH(bool, themeInstalled);
        QFETCH(QStringList, command);
        const FreedesktopTimerSound sound(
            [programs](const QString& name) {
                return programs.contains(name) ? QStringLiteral("/bin/") + name : QString();
            },
            [themeInstalled](const QString& relative) {
                return themeInstalled ? QStringLiteral("/usr/share/") + relative : QString();
            });
        const auto found = sound.command();
        QCOMPARE(found ? QStringList{found->program} + found->arguments : QStringList{}, command);
    }

    void aMachineWithoutSoundSaysSoOnce()
    {
        test::LogCapture log;
        FreedesktopTimerSound sound([](const QString&) { return QString(); },
                                    [](const QString&) { return QString(); });
        sound.playCompletion();
        sound.playCompletion();
        QCOMPARE(
            log.count(QStringLiteral("Norva timers: the timer finished quietly (no sound player was found")),
            1);
    }
};

NORVA_TEST(TimerSoundTest)
#include "tst_TimerSound.moc"
