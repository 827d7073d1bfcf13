#include "TempHome.h"
#include "TestMain.h"

#include <QProcess>
#include <QtTest>

using norva::test::TempHome;

namespace {

// Norva started for real on the offscreen platform with a throw-away HOME.
std::unique_ptr<QProcess> startNorva(const TempHome& home, const QStringList& arguments = {})
{
    auto process = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home.path());
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.remove(QStringLiteral("NORVA_LOG_QUIET"));
    environment.remove(QStringLiteral("XDG_CONFIG_HOME"));
    environment.remove(QStringLiteral("XDG_DATA_HOME"));
    environment.remove(QStringLiteral("XDG_STATE_HOME"));
    process->setProcessEnvironment(environment);
    process->start(QStringLiteral(NORVA_EXECUTABLE), arguments);
    return process;
}

bool waitForOutput(QProcess& process, const QByteArray& text, QByteArray& seen, int ms = 20000)
{
    QElapsedTimer timer;
    timer.start();
    while (!seen.contains(text) && timer.elapsed() < ms) {
        process.waitForReadyRead(200);
        seen += process.readAllStandardError();
        if (process.state() == QProcess::NotRunning) {
            seen += process.readAllStandardError();
            break;
        }
    }
    return seen.contains(text);
}

void stop(QProcess& process)
{
    process.terminate();
    if (!process.waitForFinished(5000))
        process.kill();
    process.waitForFinished(5000);
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
        QVERIFY(TempHome::read(home.file(QStringLiteral(".config/Norva/preferences.toml"))).contains("hasLaunchedBefore = true"));

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
        home.write(QStringLiteral(".local/share/Norva/team-rules.json"),
                   R"({ "rules": [ { "id": "no-push", "action": "never", "kind": "run", "pattern": "git push*" } ] })");
        QByteArray seen;
        auto demo = startNorva(home, {QStringLiteral("--demo")});
        QVERIFY2(waitForOutput(*demo, "Norva team: 1 rule in force", seen), seen.constData());
        QVERIFY2(waitForOutput(*demo, "Norva agents: Claude usage", seen), seen.constData());
        stop(*demo);
        for (const char* untouched :
             {".claude", ".codex", ".copilot", ".local/share/Norva/approvals", ".config/Norva/preferences.toml"})
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
