#include "JsonText.h"
#include "LogCapture.h"
#include "TableRows.h"
#include "TempHome.h"
#include "TestMain.h"

#include "agents/jump/TerminalJumper.h"
#include "agents/jump/WindowActivator.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QtTest>

using namespace norva;

namespace {

// Records what the jump asked of the desktop; processes in `running` count as alive.
class FakeActivator final : public WindowActivator {
public:
    QList<qint64> running;
    QList<qint64> activated;
    QList<qint64> unminimised;
    bool isRunning(qint64 pid) const override { return running.contains(pid); }
    bool activate(qint64 pid) override
    {
        if (!isRunning(pid))
            return false;
        activated.append(pid);
        return true;
    }
    void unminimize(qint64 pid) override { unminimised.append(pid); }
};

// A stand-in for osascript: keeps the script it was given and answers as the file "mode" says.
const QByteArray kOsascript =
    "#!/bin/sh\n"
    "dir=$(dirname \"$0\")\n"
    "cat > \"$dir/last-script\"\n"
    "case \"$(cat \"$dir/mode\" 2>/dev/null)\" in\n"
    "found) echo found ;;\n"
    "missing) echo missing ;;\n"
    "fail) echo 'execution error: Not authorised to send Apple events to iTerm2. (-1743)' >&2; exit 1 ;;\n"
    "hang) sleep 1; : > \"$dir/hang-done\"; echo found ;;\n"
    "esac\n";

struct Stand {
    test::TempHome home;
    FakeActivator activator;
    TerminalJumper jumper{activator};
    QString osascript;

    Stand()
    {
        osascript = home.write("bin/osascript", kOsascript);
        QFile::setPermissions(osascript, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        jumper.setOsascript(osascript);
        activator.running = {4242};
    }
    void mode(const QByteArray& how) const { home.write("bin/mode", how); }
    QString lastScript() const
    {
        return QString::fromUtf8(test::TempHome::read(home.file("bin/last-script")));
    }
};

TerminalJumper::Target target(const QString& program, const QString& tty, qint64 pid,
                              const QString& session = QString())
{
    TerminalJumper::Target t;
    t.termProgram = program;
    t.tty = TerminalJumper::normalizeTTY(tty);
    t.pid = pid;
    t.itermSession = session;
    return t;
}

// A tmux server of the test's own, on a private socket.
class TmuxServer {
public:
    explicit TmuxServer(const QString& socket) : m_socket(socket) {}
    ~TmuxServer() { tmux({"kill-server"}); }
    QString tmux(const QStringList& arguments) const
    {
        QProcess process;
        process.start("tmux", QStringList{"-S", m_socket, "-f", "/dev/null"} + arguments);
        process.waitForFinished(5000);
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }
    QString socket() const { return m_socket; }

private:
    QString m_socket;
};

} // namespace

class TerminalJumperTest : public QObject {
    Q_OBJECT
private slots:
    void recordsBecomeTargets_data()
    {
        QTest::addColumn<QByteArray>("record");
        QTest::addColumn<bool>("parses");
        QTest::addColumn<QString>("tty");
        QTest::addColumn<bool>("inTmux");
        QTest::addColumn<QString>("socket");
        QTest::addColumn<qint64>("pid");
        QTest::newRow("bare tty") << j("{'tty':'ttys003','term_program':'Apple_Terminal','term_pid':'812'}")
                                  << true << "/dev/ttys003" << false << "" << qint64(812);
        QTest::newRow("full tty")
            << j("{'tty':'/dev/pts/4','tmux':'/tmp/tmux-1000/default,77,0','term_pid':''}") << true
            << "/dev/pts/4" << true << "/tmp/tmux-1000/default" << qint64(0);
        QTest::newRow("pid not a number")
            << j("{'tty':'pts/1','term_pid':'12a'}") << true << "/dev/pts/1" << false << "" << qint64(0);
        QTest::newRow("empty tmux") << j("{'tmux':'','tmux_pane':'%3'}") << true << "" << false << ""
                                    << qint64(0);
        QTest::newRow("unescaped quote in a value")
            << QByteArray("{\"cwd\":\"/a\"b\",\"tty\":\"pts/1\"}") << false << "" << false << "" << qint64(0);
        QTest::newRow("empty file") << QByteArray() << false << "" << false << "" << qint64(0);
    }
    void recordsBecomeTargets()
    {
        QFETCH(QByteArray, record);
        const auto parsed = TerminalJumper::parse(record);
        QTEST(parsed.has_value(), "parses");
        if (!parsed)
            return;
        QTEST(parsed->tty, "tty");
        QTEST(parsed->inTmux, "inTmux");
        QTEST(parsed->tmuxSocket, "socket");
        QTEST(parsed->pid, "pid");
    }

    void paneIsFoundByItsTty_data()
    {
        QTest::addColumn<QString>("tty");
        QTest::addColumn<QString>("location");
        test::textRow("bare name", {"pts/7", "work:1.1"});
        test::textRow("full name", {"/dev/pts/3", "work:0.0"});
        test::textRow("session with blanks", {"/dev/pts/9", "my notes:2.0"});
        test::textRow("not listed", {"/dev/pts/70", ""});
        test::textRow("prefix is not enough", {"/dev/pts/", ""});
        test::textRow("empty", {"", ""});
    }
    void paneIsFoundByItsTty()
    {
        QFETCH(QString, tty);
        const QStringList lines = {"work:0.0 /dev/pts/3", "work:1.1 /dev/pts/7", "my notes:2.0 /dev/pts/9",
                                   "junk"};
        QTEST(TerminalJumper::tmuxPaneLocation(lines, tty).value_or(QString()), "location");
    }

    void tmuxJumpSelectsThePaneOnARealServer()
    {
        if (QStandardPaths::findExecutable("tmux").isEmpty())
            QSKIP("tmux is not installed");
        Stand s;
        TmuxServer server(s.home.file("tmux.sock"));
        server.tmux({"new-session", "-d", "-s", "work", "-x", "100", "-y", "30"});
        server.tmux({"new-window", "-t", "work"});
        server.tmux({"split-window", "-t", "work:1"});
        server.tmux({"new-session", "-d", "-s", "other"});
        const QString paneTty = server.tmux({"display-message", "-p", "-t", "work:1.1", "#{pane_tty}"});
        QVERIFY(paneTty.startsWith("/dev/"));
        server.tmux({"select-window", "-t", "work:0"});
        server.tmux({"select-pane", "-t", "work:1.0"});
        QCOMPARE(server.tmux({"display-message", "-p", "-t", "work", "#{window_index}.#{pane_index}"}),
                 QStringLiteral("0.0"));

        // A client attached to the other session, as a person at a terminal would be.
        QProcess client;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TERM", "xterm");
        client.setProcessEnvironment(environment);
        client.start("script", {"-qfc", "tmux -S '" + server.socket() + "' attach -t other", "/dev/null"});
        QTRY_VERIFY_WITH_TIMEOUT(!server.tmux({"list-clients", "-F", "#{client_tty}"}).isEmpty(), 5000);

        const QByteArray record = "{\"tty\":\"" + paneTty.mid(5).toUtf8() + "\",\"tmux\":\"" +
                                  server.socket().toUtf8() +
                                  ",1,0\",\"tmux_pane\":\"%2\",\"term_pid\":\"4242\"}";
        const auto parsed = TerminalJumper::parse(record);
        QVERIFY(parsed);
        QVERIFY(s.jumper.jumpNow(*parsed));
        QCOMPARE(server.tmux({"display-message", "-p", "-t", "work", "#{window_index}.#{pane_index}"}),
                 QStringLiteral("1.1"));
        QCOMPARE(server.tmux({"list-clients", "-F", "#{client_session}"}), QStringLiteral("work"));
        QCOMPARE(s.activator.unminimised, QList<qint64>{4242});
        QCOMPARE(s.activator.activated, QList<qint64>{4242});
        client.kill();
        client.waitForFinished(2000);
    }

    void tmuxPaneNotListedFallsThroughToTheTerminal()
    {
        if (QStandardPaths::findExecutable("tmux").isEmpty())
            QSKIP("tmux is not installed");
        Stand s;
        TmuxServer server(s.home.file("tmux.sock"));
        server.tmux({"new-session", "-d", "-s", "work"});
        TerminalJumper::Target t = target("kitty", "pts/999", 4242);
        t.inTmux = true;
        t.tmuxSocket = server.socket();
        QVERIFY(!s.jumper.jumpTmux(t));
        QVERIFY(s.jumper.jumpNow(t));
        QCOMPARE(s.activator.activated, QList<qint64>{4242});
        // A server that is not there fails the tmux path too.
        t.tmuxSocket = s.home.file("no-such.sock");
        QVERIFY(!s.jumper.jumpTmux(t));
    }

    // iTerm2 and Terminal are asked by script to select the session's tab; only when the script
    // finds none does the app come forward by its process.
    void scriptedTerminalsSelectTheSessionOrComeForward_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QString>("session");
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("app");
        QTest::addColumn<bool>("broughtForward");
        QTest::newRow("iTerm2 by session")
            << "iTerm.app" << QStringLiteral("w0t1p0:6F3A-11") << QByteArray("found") << "iTerm2" << false;
        QTest::newRow("iTerm2 by tty alone")
            << "iTerm.app" << QString() << QByteArray("found") << "iTerm2" << false;
        QTest::newRow("Terminal") << "Apple_Terminal" << QString() << QByteArray("found") << "Terminal"
                                  << false;
        QTest::newRow("Terminal finds nothing")
            << "Apple_Terminal" << QString() << QByteArray("missing") << "Terminal" << true;
    }
    void scriptedTerminalsSelectTheSessionOrComeForward()
    {
        QFETCH(QString, program);
        QFETCH(QString, session);
        QFETCH(QByteArray, answer);
        QFETCH(QString, app);
        QFETCH(bool, broughtForward);
        Stand s;
        test::LogCapture log;
        s.mode(answer);
        QVERIFY(s.jumper.jumpNow(target(program, "ttys004", 4242, session)));
        QVERIFY(s.lastScript().contains("tell application \"" + app + "\""));
        QCOMPARE(s.activator.activated, broughtForward ? QList<qint64>{4242} : QList<qint64>{});
        QCOMPARE(log.lines(), QStringList{});
    }

    void scriptErrorIsLoggedAndTheAppComesForward()
    {
        Stand s;
        test::LogCapture log;
        s.mode("fail");
        QVERIFY(s.jumper.jumpNow(target("iTerm.app", "ttys004", 4242)));
        QCOMPARE(log.lines(),
                 QStringList{"Norva agents: the terminal's AppleScript failed: execution error: Not "
                             "authorised to send Apple events to iTerm2. (-1743)"});
        QCOMPARE(s.activator.activated, QList<qint64>{4242});
    }

    void hungScriptIsNotWaitedForAndBlocksNoLaterJump()
    {
        Stand s;
        test::LogCapture log;
        s.mode("hang"); // answers after 1 s
        s.jumper.setScriptWait(Seconds(0.2));
        QVERIFY(s.jumper.jumpNow(target("iTerm.app", "ttys004", 4242)));
        QCOMPARE(log.lines(),
                 QStringList{"Norva agents: the terminal's AppleScript gave no answer in 0.2 s (is macOS "
                             "asking whether Norva may control it?); bringing the app forward instead"});
        QCOMPARE(s.activator.activated, QList<qint64>{4242});

        // The first script still runs: the next jump does not queue behind it.
        QVERIFY(s.jumper.jumpNow(target("Apple_Terminal", "ttys005", 4242)));
        QCOMPARE(log.lines().last(),
                 QStringLiteral("Norva agents: an earlier terminal script is still waiting on its "
                                "app; this jump brings the terminal forward instead"));
        QCOMPARE(s.activator.activated, (QList<qint64>{4242, 4242}));
        QVERIFY(!s.lastScript().contains("ttys005"));

        // Once it has ended, scripts run again.
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(s.home.file("bin/hang-done")), 10000);
        s.mode("found");
        QTRY_VERIFY_WITH_TIMEOUT(s.jumper.jumpNow(target("Apple_Terminal", "ttys006", 4242)) &&
                                     s.lastScript().contains("ttys006"),
                                 5000);
    }

    void jumpFailsOnlyWhenTheTerminalIsGone_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<qint64>("pid");
        QTest::addColumn<QString>("line");
        QTest::newRow("no program, pid 0") << "" << qint64(0)
                                           << "Norva agents: jumping to a session's terminal failed (unknown "
                                              "terminal, process 0 is not running)";
        QTest::newRow("pid 1 never activates") << "" << qint64(1)
                                               << "Norva agents: jumping to a session's terminal failed "
                                                  "(unknown terminal, process 1 is not running)";
        QTest::newRow("dead kitty")
            << "kitty" << qint64(99999)
            << "Norva agents: jumping to a session's terminal failed (kitty, process 99999 is "
               "not running)";
        QTest::newRow("iTerm without tty or session")
            << "iTerm.app" << qint64(0)
            << "Norva agents: jumping to a session's terminal failed (iTerm.app, process 0 is not running)";
    }
    void jumpFailsOnlyWhenTheTerminalIsGone()
    {
        QFETCH(QString, program);
        QFETCH(qint64, pid);
        QFETCH(QString, line);
        Stand s;
        s.activator.running << 0 << 1; // even a "running" 0 or 1 must never be activated
        test::LogCapture log;
        QVERIFY(!s.jumper.jumpNow(target(program, "", pid)));
        QCOMPARE(log.lines(), QStringList{line});
        QCOMPARE(s.activator.activated, QList<qint64>{});
        QCOMPARE(s.activator.unminimised, pid >= 2 ? QList<qint64>{pid} : QList<qint64>{});
    }

    void sessionButtonFindsItsTargetByTranscript()
    {
        Stand s;
        const QString folder = s.home.file("approvals");
        s.home.write(
            "approvals/term-S1.json",
            j("{'transcript_path':'/t/one.jsonl','tty':'pts/1','term_program':'kitty','term_pid':'4242'}"));
        s.home.write("approvals/term-S2.json", "{\"transcript_path\":\"/t/two.jsonl\",\"cwd\":\"a\"b\"}");
        s.jumper.setApprovalsFolder(folder);
        QCOMPARE(TerminalJumper::loadTargets(folder).size(), 1);
        QSignalSpy finished(&s.jumper, &TerminalJumper::jumpFinished);
        s.jumper.jumpToSession("/t/one.jsonl");
        QTRY_COMPARE(finished.size(), 1);
        QCOMPARE(finished.at(0).at(0).toBool(), true);
        QCOMPARE(s.activator.activated, QList<qint64>{4242});
        s.jumper.jumpToSession("/t/two.jsonl"); // its record does not parse
        QCOMPARE(finished.size(), 2);
        QCOMPARE(finished.at(1).at(0).toBool(), false);
    }
};
NORVA_TEST(TerminalJumperTest)
#include "tst_terminalJumper.moc"
