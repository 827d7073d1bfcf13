#include "MemoryPreferences.h"
#include "TempHome.h"
#include "TestMain.h"

#include "app/Log.h"

#include "app/SettingsStore.h"
#include "platform/linux/AutostartEntry.h"

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
        QVERIFY(text.contains("\nIcon=norva\n"));
        store.setLaunchAtLogin(false);
        QVERIFY(!QFile::exists(entry));
        QVERIFY(!store.launchAtLogin());
    }

    void theEntryStartsTheInstalledNorvaOverABuild_data()
    {
        QTest::addColumn<QString>("running");
        QTest::addColumn<bool>("fromBuildTree");
        QTest::addColumn<bool>("installedExists");
        QTest::addColumn<QString>("program");
        QTest::addColumn<QString>("noteStart"); // empty: nothing to say
        const QString build = QStringLiteral("/home/a/norva/build/norva");
        const QString installed = QStringLiteral("/usr/local/bin/norva");
        QTest::newRow("installed") << installed << false << true << installed << QString();
        QTest::newRow("elsewhere, as a package put it")
            << QStringLiteral("/opt/norva/bin/norva") << false << true
            << QStringLiteral("/opt/norva/bin/norva") << QString();
        QTest::newRow("a build, with Norva installed")
            << build << true << true << installed << QStringLiteral("it starts the installed");
        QTest::newRow("a build, nothing installed")
            << build << true << false << build << QStringLiteral("it starts this build at");
        QTest::newRow("unknown") << QString() << false << false << installed
                                 << QStringLiteral("the running program's path is unknown");
    }
    void theEntryStartsTheInstalledNorvaOverABuild()
    {
        QFETCH(QString, running);
        QFETCH(bool, fromBuildTree);
        QFETCH(bool, installedExists);
        QFETCH(QString, noteStart);
        const auto choice = AutostartEntry::choose(running, QStringLiteral("/usr/local/bin/norva"),
                                                   fromBuildTree, installedExists);
        QTEST(choice.program, "program");
        QCOMPARE(choice.note.isEmpty(), noteStart.isEmpty());
        QVERIFY2(choice.note.startsWith(noteStart), qPrintable(choice.note));
    }

    void theEntryQuotesThePathForExec()
    {
        const QByteArray text = AutostartEntry::text(QStringLiteral("/home/a \"b\"/$x/norva"));
        QVERIFY(text.contains("\nExec=\"/home/a \\\"b\\\"/\\$x/norva\"\n"));
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
