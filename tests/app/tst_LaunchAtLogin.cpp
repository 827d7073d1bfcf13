#include "MemoryPreferences.h"
#include "TempHome.h"
#include "TestMain.h"

#include "app/Log.h"

#include "app/SettingsStore.h"

#include <QtTest>

using namespace norva;
using norva::test::TempHome;

class LaunchAtLoginTest : public QObject {
    Q_OBJECT
private slots:
    void writesAndRemovesTheAutostartEntry()
    {
        TempHome home;
        norva::test::MemoryPreferences prefs;
        SettingsStore store(prefs);
        const QString entry = home.file(QStringLiteral(".config/autostart/norva.desktop"));
        QVERIFY(!store.launchAtLogin());
        store.setLaunchAtLogin(true);
        QVERIFY(store.launchAtLogin());
        const QByteArray text = TempHome::read(entry);
        QVERIFY(text.startsWith("[Desktop Entry]\n"));
        QVERIFY(text.contains("\nExec=\""));
        store.setLaunchAtLogin(false);
        QVERIFY(!QFile::exists(entry));
        QVERIFY(!store.launchAtLogin());
    }

    void failureIsLoggedWithTheReason()
    {
        TempHome home;
        // A file where the autostart folder should be: the folder cannot be made.
        home.write(QStringLiteral(".config/autostart"), "not a folder");
        norva::test::MemoryPreferences prefs;
        SettingsStore store(prefs);
        QStringList lines;
        const int token = addLogListener([&](const QString& line) { lines << line; });
        store.setLaunchAtLogin(true);
        removeLogListener(token);
        QCOMPARE(lines.size(), 1);
        QVERIFY(lines.first().startsWith(QStringLiteral("Norva: launch-at-login change failed: ")));
        QVERIFY(!store.launchAtLogin());
    }
};

NORVA_TEST(LaunchAtLoginTest)
#include "tst_LaunchAtLogin.moc"
