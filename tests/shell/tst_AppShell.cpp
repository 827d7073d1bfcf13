#include "NorvaProcess.h"
#include "TempHome.h"
#include "TestMain.h"

#include <QProcess>
#include <QtTest>

using norva::test::stop;
using norva::test::TempHome;
using norva::test::waitForOutput;

namespace {

// Norva on the offscreen platform with a throw-away HOME.
std::unique_ptr<QProcess> startNorva(const TempHome& home, const QStringList& arguments = {})
{
    QProcessEnvironment environment = norva::test::norvaEnvironment(home);
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return norva::test::startNorva(QStringLiteral(NORVA_EXECUTABLE), environment, arguments);
}

} // namespace

class AppShellTest : public QObject {
    Q_OBJECT
private slots:
    void firstLaunchIsToldApartFromLaterOnes()
    {
        TempHome home;
        QByteArray seen;
        auto first = startNorva(home);
        QVERIFY2(waitForOutput(*first, "Norva: launched (version ", seen), seen.constData());
        QVERIFY(seen.contains(", first launch)"));
        stop(*first);
        QVERIFY(TempHome::read(home.file(QStringLiteral(".config/Norva/preferences.toml")))
                    .contains("hasLaunchedBefore = true"));

        seen.clear();
        auto again = startNorva(home);
        QVERIFY2(waitForOutput(*again, "Norva: launched (version ", seen), seen.constData());
        QVERIFY(!seen.contains("first launch"));
        stop(*again);
    }

    // The demo shows invented prompts from a folder of its own: even a team's never rule, which
    // otherwise keeps the hooks installed, must not make it touch the agents' configuration.
    void demoLeavesTheAgentsAndTheirFolderAlone()
    {
        TempHome home;
        home.write(
            QStringLiteral(".local/share/Norva/team-rules.json"),
            R"({ "rules": [ { "id": "no-push", "action": "never", "kind": "run", "pattern": "git push*" } ] })");
        QByteArray seen;
        auto demo = startNorva(home, {QStringLiteral("--demo")});
        QVERIFY2(waitForOutput(*demo, "Norva team: 1 rule in force", seen), seen.constData());
        QVERIFY2(waitForOutput(*demo, "Norva agents: Claude usage", seen), seen.constData());
        stop(*demo);
        for (const char* untouched : {".claude", ".codex", ".copilot", ".local/share/Norva/approvals",
                                      ".config/Norva/preferences.toml"})
            QVERIFY2(!QFileInfo::exists(home.file(QString::fromLatin1(untouched))), untouched);
    }

    // A logout or a `kill` ends Norva in order: waiting saves are written, the hooks let go.
    void aTerminateQuitsInOrder()
    {
        TempHome home;
        QByteArray seen;
        auto norva = startNorva(home);
        QVERIFY2(waitForOutput(*norva, "Norva: launched", seen), seen.constData());
        norva->terminate();
        QVERIFY(norva->waitForFinished(20000));
        seen += norva->readAllStandardError();
        QCOMPARE(norva->exitStatus(), QProcess::NormalExit);
        QCOMPARE(norva->exitCode(), 0);
        QVERIFY2(seen.contains("Norva: quitting on SIGTERM"), seen.constData());
    }

    void secondStartSaysSoAndExits()
    {
        TempHome home;
        QByteArray seen;
        auto first = startNorva(home);
        QVERIFY2(waitForOutput(*first, "Norva: launched", seen), seen.constData());
        auto second = startNorva(home);
        QVERIFY(second->waitForFinished(20000));
        QCOMPARE(second->exitCode(), 0);
        const QByteArray said = second->readAllStandardError();
        QVERIFY2(said.contains("Norva is already running."), said.constData());
        QVERIFY(said.contains("Norva: another Norva is already running ("));
        QVERIFY(!said.contains("Norva: launched"));
        QCOMPARE(first->state(), QProcess::Running);
        stop(*first);
    }

    // Help and the version come out on a machine without a display (over ssh, in a build).
    void helpAndVersionNeedNoDisplay_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("help") << QStringLiteral("--help") << QByteArray("--demo-scene <scene>");
        QTest::newRow("short help") << QStringLiteral("-h") << QByteArray("--open-page <page>");
        QTest::newRow("version") << QStringLiteral("--version")
                                 << QByteArray("Norva " NORVA_VERSION_TEXT "\n");
    }

    void helpAndVersionNeedNoDisplay()
    {
        QFETCH(QString, option);
        QFETCH(QByteArray, expected);
        TempHome home;
        QProcess norva;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), home.path());
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        environment.remove(QStringLiteral("DISPLAY"));
        environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
        environment.remove(QStringLiteral("XDG_STATE_HOME"));
        norva.setProcessEnvironment(environment);
        norva.start(QStringLiteral(NORVA_EXECUTABLE), {option});
        QVERIFY(norva.waitForFinished(20000));
        const QByteArray said = norva.readAllStandardOutput();
        QCOMPARE(norva.exitStatus(), QProcess::NormalExit);
        QCOMPARE(norva.exitCode(), 0);
        QVERIFY2(said.contains(expected), said.constData());
        QVERIFY(!QFileInfo::exists(home.file(QStringLiteral(".local/state/Norva"))));
    }

    void aCrashedNorvaDoesNotBlockTheNextStart()
    {
        TempHome home;
        QByteArray seen;
        auto first = startNorva(home);
        QVERIFY2(waitForOutput(*first, "Norva: launched", seen), seen.constData());
        first->kill(); // no chance to release its lock
        first->waitForFinished(5000);
        seen.clear();
        auto next = startNorva(home);
        QVERIFY2(waitForOutput(*next, "Norva: launched", seen), seen.constData());
        stop(*next);
    }
};

NORVA_TEST(AppShellTest)
#include "tst_AppShell.moc"
