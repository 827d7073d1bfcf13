#include "MemoryPreferences.h"
#include "TempHome.h"
#include "TestMain.h"

#include "app/SettingsStore.h"
#include "settings/SettingsChecks.h"

#include <QtTest>

using namespace norva;

// What the window says under a setting that needs something outside Norva.
class SettingsChecksTest : public QObject {
    Q_OBJECT
private slots:
    void saysWhetherTheOutsideThingWorks_data()
    {
        QTest::addColumn<int>("need");
        QTest::addColumn<QStringList>("programs"); // on PATH
        QTest::addColumn<int>("calendars");        // -1: no folder at all
        QTest::addColumn<bool>("works");
        QTest::addColumn<QString>("textStart");
        const int sound = int(SettingNeed::soundPlayer);
        const int pactl = int(SettingNeed::pactl);
        const int folder = int(SettingNeed::calendarsFolder);
        QTest::newRow("canberra first") << sound << QStringList{"paplay", "canberra-gtk-play"} << 0 << true
                                        << "Plays through canberra-gtk-play";
        QTest::newRow("paplay alone")
            << sound << QStringList{"paplay"} << 0 << true << "Plays through paplay";
        QTest::newRow("no player") << sound << QStringList{} << 0 << false << "No sound player";
        QTest::newRow("pactl") << pactl << QStringList{"pactl"} << 0 << true << "Reads and sets the volume";
        QTest::newRow("no pactl") << pactl << QStringList{} << 0 << false << "pactl is missing";
        QTest::newRow("two calendars")
            << folder << QStringList{} << 2 << true << "Reads 2 calendars in ~/cal";
        QTest::newRow("an empty folder")
            << folder << QStringList{} << 0 << false << "~/cal holds no calendar";
        QTest::newRow("no folder") << folder << QStringList{} << -1 << false << "~/cal doesn't exist";
    }
    void saysWhetherTheOutsideThingWorks()
    {
        QFETCH(int, need);
        QFETCH(QStringList, programs);
        QFETCH(int, calendars);
        QFETCH(bool, works);
        QFETCH(QString, textStart);
        test::TempHome home;
        for (int i = 0; i < calendars; ++i)
            home.write(QStringLiteral("cal/list%1/a.ics").arg(i), "x");
        if (calendars == 0)
            QDir().mkpath(home.file(QStringLiteral("cal")));
        test::MemoryPreferences preferences;
        SettingsStore store(preferences);
        const SettingsChecks checks({[&programs](const QString& name) {
                                         return programs.contains(name) ? "/usr/bin/" + name : QString();
                                     },
                                     [] { return true; }, [] { return QString(); },
                                     [&home](const QString&) { return home.file("cal"); }});
        const auto status = checks.status(SettingNeed(need), store);
        QVERIFY(status);
        QCOMPARE(status->works, works);
        QVERIFY2(status->text.startsWith(textStart), qPrintable(status->text));
        QCOMPARE(status->fix.isEmpty(), works); // what to do, whenever it does not work
    }

    void theHooksMatterOnlyWhileAnsweringIsOn()
    {
        test::MemoryPreferences preferences;
        SettingsStore store(preferences);
        bool installed = false;
        const SettingsChecks checks({[](const QString&) { return QString(); },
                                     [&installed] { return installed; },
                                     [] { return QStringLiteral("Installed in ~/.claude/settings.json"); },
                                     [](const QString&) { return QString(); }});
        QVERIFY(!checks.status(SettingNeed::agentHooks, store));
        preferences.setValue(QStringLiteral("answerPromptsOnNotch"), true);
        QCOMPARE(checks.status(SettingNeed::agentHooks, store)->works, false);
        installed = true;
        QCOMPARE(checks.status(SettingNeed::agentHooks, store)->text,
                 QStringLiteral("Installed in ~/.claude/settings.json"));
    }
};

NORVA_TEST(SettingsChecksTest)
#include "tst_SettingsChecks.moc"
