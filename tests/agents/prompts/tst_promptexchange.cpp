#include "ExchangeCore.h"
#include "LogCapture.h"
#include "ManualClock.h"
#include "TempHome.h"
#include "TestMain.h"

#include "agents/AgentConstants.h"
#include "agents/prompts/AgentPromptsManager.h"
#include "agents/prompts/AgentsPageModel.h"
#include "agents/prompts/ApprovalExchange.h"
#include "agents/prompts/Heartbeat.h"
#include "agents/prompts/PendingScan.h"
#include "agents/prompts/PromptAlerts.h"
#include "app/Paths.h"
#include "app/SettingsStore.h"
#include "platform/linux/PreferencesFile.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QtTest>

#include <utime.h>

using namespace norva;

namespace {

void setAge(const ApprovalsFolder& folder, const QString& name, const QDateTime& now, double seconds)
{
    const time_t when = static_cast<time_t>(now.toSecsSinceEpoch() - static_cast<qint64>(seconds));
    utimbuf times{when, when};
    ::utime(QFile::encodeName(folder.filePath(name)).constData(), &times);
}

const QByteArray bashPayload =
    R"({"session_id":"s1","cwd":"/work/app","tool_name":"Bash","tool_input":{"command":"git push origin main"},"tool_use_id":"toolu_1"})";

using Core = test::ManualExchangeCore;

} // namespace

// Norva's side of the exchange, with the manual clock: heartbeat, scans and sweeps, answers and
// release, the Agents page model and the alerts.
class PromptExchangeTest : public QObject {
    Q_OBJECT
private slots:
    void heartbeatBeatsAtOnceThenEveryTenSeconds()
    {
        test::TempHome home;
        test::ManualClock clock;
        ApprovalsFolder folder(Paths::approvalsFolder());
        QVERIFY(folder.ensure().ok);
        Heartbeat heartbeat(folder, clock);
        const QDateTime started = clock.now();
        heartbeat.start();
        QVERIFY(heartbeat.isBeating());
        QCOMPARE(*folder.modified("heartbeat"), started);
        clock.advance(Seconds(9.5));
        QCOMPARE(*folder.modified("heartbeat"), started);
        clock.advance(Seconds(0.5));
        QCOMPARE(*folder.modified("heartbeat"), started.addSecs(10));
        clock.advance(Seconds(20));
        QCOMPARE(*folder.modified("heartbeat"), started.addSecs(30));
        heartbeat.stop();
        clock.advance(Seconds(30));
        QCOMPARE(*folder.modified("heartbeat"), started.addSecs(30));
    }

    void heartbeatFailureIsLoggedOncePerStreak()
    {
        test::TempHome home;
        test::ManualClock clock;
        test::LogCapture log;
        ApprovalsFolder folder(Paths::approvalsFolder());
        QVERIFY(folder.ensure().ok);
        QVERIFY(QDir().mkpath(folder.filePath("heartbeat/blocked")));
        Heartbeat heartbeat(folder, clock);
        heartbeat.start();
        clock.advance(Seconds(30));
        const QString line = "Norva agents: the heartbeat at " + folder.filePath("heartbeat") +
                             " could not be written (Is a directory); hooks will ask in the terminal";
        QCOMPARE(log.lines(), QStringList{line});
        QDir(folder.filePath("heartbeat")).removeRecursively();
        clock.advance(Seconds(10));
        QVERIFY(folder.exists("heartbeat"));
        QFile::remove(folder.filePath("heartbeat"));
        QVERIFY(QDir().mkpath(folder.filePath("heartbeat/blocked")));
        clock.advance(Seconds(10));
        QCOMPARE(log.count(line), 2);
    }

    void scanSweepsWhatNoOneTakesUp_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<double>("age");
        QTest::addColumn<QString>("companion"); // an alive file and its age, "name:age"
        QTest::addColumn<bool>("kept");
        QTest::addColumn<bool>("card");
        QTest::newRow("response 10 s old") << "resp-a" << 10.0 << "" << true << false;
        QTest::newRow("response 11 s old") << "resp-a" << 11.0 << "" << false << false;
        QTest::newRow("identity 1799 s old") << "term-s.json" << 1799.0 << "" << true << false;
        QTest::newRow("identity 1801 s old") << "term-s.json" << 1801.0 << "" << false << false;
        QTest::newRow("prompt over a day") << "pending-p.json" << 86401.0 << "alive-p:1" << false << false;
        QTest::newRow("killed hook") << "pending-p.json" << 71.0 << "alive-p:121" << false << false;
        QTest::newRow("waiting hook") << "pending-p.json" << 71.0 << "alive-p:20" << true << true;
        QTest::newRow("young prompt, old alive") << "pending-p.json" << 70.0 << "alive-p:500" << true << true;
        QTest::newRow("hook that never touched alive") << "pending-p.json" << 121.0 << "" << false << false;
        QTest::newRow("question without a hook") << "pending-q.json" << 3600.0 << "" << true << true;
        QTest::newRow("answered, hook not yet taken")
            << "pending-p.json" << 1.0 << "resp-p:0" << true << false;
    }
    void scanSweepsWhatNoOneTakesUp()
    {
        QFETCH(QString, name);
        QFETCH(double, age);
        QFETCH(QString, companion);
        QFETCH(bool, kept);
        QFETCH(bool, card);
        test::TempHome home;
        ApprovalsFolder folder(Paths::approvalsFolder());
        QVERIFY(folder.ensure().ok);
        const QDateTime now = QDateTime::fromSecsSinceEpoch(1900000000, Qt::UTC);
        const QByteArray payload = name.startsWith("pending-q")
                                       ? QByteArray(R"({"tool_name":"AskUserQuestion","tool_input":{}})")
                                       : bashPayload;
        folder.write(name, payload);
        setAge(folder, name, now, age);
        if (!companion.isEmpty()) {
            const QString companionName = companion.section(':', 0, 0);
            folder.write(companionName, QByteArray());
            setAge(folder, companionName, now, companion.section(':', 1).toDouble());
        }
        const QList<PromptCard> cards = PendingScan::run(folder, now);
        QCOMPARE(folder.exists(name), kept);
        QCOMPARE(cards.size(), card ? 1 : 0);
        if (!kept && companion.startsWith("alive-"))
            QVERIFY(!folder.exists(companion.section(':', 0, 0)));
    }

    // A prompt file Norva will not read is answered at once with the hand-back, with one log line:
    // the agent asks in its terminal instead of waiting for a card that never comes.
    void unreadablePromptIsHandedBackAtOnce_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("why");
        QTest::newRow("over 4 MB") << "large" << QStringLiteral("its prompt file is over 4 MB");
        QTest::newRow("not JSON") << "text" << QStringLiteral("its prompt file is not JSON");
        QTest::newRow("a link") << "link" << QStringLiteral("its prompt file is a link");
    }
    void unreadablePromptIsHandedBackAtOnce()
    {
        QFETCH(QString, kind);
        QFETCH(QString, why);
        test::TempHome home;
        test::LogCapture log;
        ApprovalsFolder folder(Paths::approvalsFolder());
        QVERIFY(folder.ensure().ok);
        if (kind == "large")
            folder.write("pending-big.json", R"({"tool_name":"Write","tool_input":{"content":")" +
                                                 QByteArray(5 * 1024 * 1024, 'x') + R"("}})");
        else if (kind == "text")
            folder.write("pending-big.json", "not json at all");
        else
            QVERIFY(QFile::link(home.file("elsewhere.json"), folder.filePath("pending-big.json")));
        const QList<PromptCard> cards = PendingScan::run(folder, QDateTime::currentDateTimeUtc());
        QVERIFY(cards.isEmpty());
        QCOMPARE(folder.read("resp-big"), std::optional<QByteArray>(QByteArray()));
        QVERIFY(!QFileInfo::exists(folder.filePath("pending-big.json")) &&
                !QFileInfo(folder.filePath("pending-big.json")).isSymLink());
        QCOMPARE(log.count("Norva agents: handed big back to the terminal (" + why + ")"), 1);
        PendingScan::run(folder, QDateTime::currentDateTimeUtc());
        QCOMPARE(log.count("Norva agents: handed big"), 1);
    }

    void cardsReadEachAgentsPayload_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QString>("agent");
        QTest::addColumn<QString>("tool");
        QTest::addColumn<QString>("subject");
        QTest::newRow("claude bash") << "toolu_1" << bashPayload << "Claude Code" << QStringLiteral("Bash")
                                     << "git push origin main";
        QTest::newRow("claude edit")
            << "toolu_2"
            << QByteArray(R"({"tool_name":"Edit","tool_input":{"file_path":"/src/a.cpp","old_string":"x"}})")
            << "Claude Code" << QStringLiteral("Edit") << "/src/a.cpp";
        QTest::newRow("codex argv")
            << "codex-s-41"
            << QByteArray(R"({"tool_name":"shell","tool_input":{"command":["bash","-lc","rm -rf build"]}})")
            << "Codex" << QStringLiteral("shell") << "rm -rf build";
        QTest::newRow("copilot")
            << "copilot-s-42"
            << QByteArray(
                   R"({"transcript_path":"/t","sessionId":"s","toolName":"bash","toolInput":{"command":"ls"}})")
            << "Copilot CLI" << QStringLiteral("bash") << "ls";
        QTest::newRow("copilot args as text")
            << "copilot-s-43"
            << QByteArray(R"({"sessionId":"s","toolName":"write","toolInput":"{\"path\":\"/n.md\"}"})")
            << "Copilot CLI"
            << "write"
            << "/n.md";
        QTest::newRow("web fetch")
            << "toolu_3"
            << QByteArray(
                   R"({"tool_name":"WebFetch","tool_input":{"url":"https://example.org","prompt":"p"}})")
            << "Claude Code" << QStringLiteral("WebFetch") << "https://example.org";
    }
    void cardsReadEachAgentsPayload()
    {
        QFETCH(QString, id);
        QFETCH(QByteArray, payload);
        const auto card = PromptCard::fromPayload(id, payload, QDateTime::currentDateTimeUtc());
        QVERIFY(card.has_value());
        QTEST(CodingAgents::displayName(card->agent), "agent");
        QTEST(card->tool, "tool");
        QTEST(card->subject, "subject");
        QVERIFY(!card->isQuestion);
        QVERIFY(!PromptCard::fromPayload(id, "not json", QDateTime()).has_value());
    }

    void questionCardCarriesQuestionsAndOptions()
    {
        const auto card = PromptCard::fromPayload(
            "toolu_q",
            R"({"tool_name":"AskUserQuestion","tool_input":{"questions":[{"question":"Which database?","options":[{"label":"Postgres"},{"label":"SQLite"}]}]}})",
            QDateTime());
        QVERIFY(card->isQuestion);
        QCOMPARE(card->questions, QStringList{"Which database?"});
        QCOMPARE(card->options, (QStringList{"Postgres", "SQLite"}));
    }

    void newFileReachesTheCardWithoutAPeriodicScan()
    {
        test::TempHome home;
        Core core;
        core.manager->start();
        // The manual clock never moves: only the folder watch can bring this card.
        core.folder().write("pending-toolu_1.json", bashPayload);
        QTRY_COMPARE_WITH_TIMEOUT(core.model->count(), 1, 5000);
        const QVariantMap card = core.model->cards()->get(0);
        QCOMPARE(card.value("agent").toString(), QStringLiteral("Claude Code"));
        QCOMPARE(card.value("tool").toString(), QStringLiteral("Bash"));
        QCOMPARE(card.value("subject").toString(), QStringLiteral("git push origin main"));
        QCOMPARE(card.value("folder").toString(), QStringLiteral("app"));
        QCOMPARE(core.alerts.chimes, 1);
        QCOMPARE(core.alerts.notes, QStringList{"Claude Code asks to use Bash | git push origin main"});
    }

    // A change the folder watch missed shows at the next fallback scan: within seconds while a
    // prompt or an unclaimed answer waits in the folder, within a minute while nothing does.
    void periodicScanIsTheFallback_data()
    {
        QTest::addColumn<QString>("waiting"); // a file in the folder before Norva starts
        QTest::addColumn<double>("fallbackAfter");
        QTest::newRow("nothing waits") << QString() << agents::restingScanInterval.count();
        QTest::newRow("a prompt waits") << "pending-toolu_0.json" << agents::fallbackScanInterval.count();
        QTest::newRow("an answer waits") << "resp-toolu_0" << agents::fallbackScanInterval.count();
    }
    void periodicScanIsTheFallback()
    {
        QFETCH(QString, waiting);
        QFETCH(double, fallbackAfter);
        test::TempHome home;
        Core core;
        QVERIFY(core.folder().ensure().ok);
        if (!waiting.isEmpty())
            QVERIFY(core.folder().write(waiting, bashPayload));
        QSignalSpy scans(core.manager.get(), &AgentPromptsManager::scanFinished);
        core.manager->start();
        QTRY_VERIFY(scans.count() > 0);
        const int shown = core.model->count();
        core.manager->folderWatch().stop();
        core.folder().write("pending-toolu_1.json", bashPayload);
        core.clock.advance(Seconds(fallbackAfter - 0.1));
        QTest::qWait(200); // nothing may show while neither the watch nor the clock asks for a scan
        QCOMPARE(core.model->count(), shown);
        core.clock.advance(Seconds(0.1));
        QTRY_COMPARE_WITH_TIMEOUT(core.model->count(), shown + 1, 5000);
    }

    void allowWritesTheBodyAndTheCardStaysAway()
    {
        test::TempHome home;
        Core core;
        core.manager->start();
        core.folder().write("pending-toolu_1.json", bashPayload);
        QTRY_COMPARE_WITH_TIMEOUT(core.model->count(), 1, 5000);
        QSignalSpy left(core.manager.get(), &AgentPromptsManager::promptLeft);
        QVERIFY(core.model->allow("toolu_1"));
        QCOMPARE(core.model->count(), 0);
        QCOMPARE(left.count(), 1);
        QCOMPARE(QJsonDocument::fromJson(*core.folder().read("resp-toolu_1")).object(),
                 ApprovalExchange::decisionBody("toolu_1", ApprovalExchange::Decision::allow));
        // Scans before the hook takes its answer must not bring the card back, nor alert again.
        core.manager->scanPending();
        core.clock.advance(Seconds(5));
        QTest::qWait(100);
        QTRY_COMPARE_WITH_TIMEOUT(core.model->count(), 0, 1000);
        QCOMPARE(core.alerts.chimes, 1);
        QVERIFY(!core.model->allow("toolu_1"));
    }

    // The card's way to the terminal asks the jump-back for the session's terminal by its transcript;
    // a prompt without one (or one already answered) asks for nothing.
    void terminalButtonsAskForTheSessionsTerminal_data()
    {
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QStringList>("requested");
        const QByteArray withTranscript =
            R"({"session_id":"s1","transcript_path":"/home/a/.claude/s1.jsonl","tool_name":"Bash",)"
            R"("tool_input":{"command":"ls"},"tool_use_id":"toolu_1"})";
        QTest::newRow("answer in the terminal")
            << withTranscript << "answer" << QStringList{"/home/a/.claude/s1.jsonl"};
        QTest::newRow("show the terminal")
            << withTranscript << "show" << QStringList{"/home/a/.claude/s1.jsonl"};
        QTest::newRow("no transcript") << bashPayload << "answer" << QStringList();
        QTest::newRow("already answered") << withTranscript << "allow then show" << QStringList();
    }
    void terminalButtonsAskForTheSessionsTerminal()
    {
        QFETCH(QByteArray, payload);
        QFETCH(QString, button);
        test::TempHome home;
        Core core;
        core.manager->start();
        core.folder().write("pending-toolu_1.json", payload);
        QTRY_COMPARE_WITH_TIMEOUT(core.model->count(), 1, 5000);
        QSignalSpy asked(core.model.get(), &AgentsPageModel::terminalRequested);
        if (button == "answer") {
            QVERIFY(core.model->answerInTerminal("toolu_1"));
        } else if (button == "show") {
            core.model->showTerminal("toolu_1");
        } else {
            QVERIFY(core.model->allow("toolu_1"));
            core.model->showTerminal("toolu_1");
        }
        QStringList transcripts;
        for (const QList<QVariant>& call : asked)
            transcripts << call.at(0).toString();
        QTEST(transcripts, "requested");
    }

    void questionCardsAreNotAnsweredThroughTheExchange()
    {
        test::TempHome home;
        Core core;
        core.manager->start();
        core.folder().write(
            "pending-toolu_q.json",
            R"({"tool_name":"AskUserQuestion","tool_input":{"questions":[{"question":"Ship it?"}]}})");
        QTRY_COMPARE_WITH_TIMEOUT(core.model->count(), 1, 5000);
        QVERIFY(core.model->cards()->get(0).value("isQuestion").toBool());
        QCOMPARE(core.alerts.notes, QStringList{"Claude Code has a question | Ship it?"});
        QVERIFY(!core.model->allow("toolu_q"));
        QVERIFY(!core.folder().exists("resp-toolu_q"));
        // "posttooluse.sh" removes the file once the question was answered in the terminal.
        core.folder().remove("pending-toolu_q.json");
        QTRY_COMPARE_WITH_TIMEOUT(core.model->count(), 0, 5000);
    }

    void alertsFollowTheirSwitches_data()
    {
        QTest::addColumn<bool>("chime");
        QTest::addColumn<bool>("notification");
        QTest::newRow("both") << true << true;
        QTest::newRow("chime only") << true << false;
        QTest::newRow("notification only") << false << true;
        QTest::newRow("neither") << false << false;
    }
    void alertsFollowTheirSwitches()
    {
        QFETCH(bool, chime);
        QFETCH(bool, notification);
        test::TempHome home;
        Core core;
        core.settings.write(chime, AgentSettings::kChimeKey);
        core.settings.write(notification, AgentSettings::kNotificationKey);
        core.manager->start();
        core.folder().write("pending-toolu_1.json", bashPayload);
        QTRY_COMPARE_WITH_TIMEOUT(core.model->count(), 1, 5000);
        QCOMPARE(core.alerts.chimes, chime ? 1 : 0);
        QCOMPARE(core.alerts.notes.size(), notification ? 1 : 0);
    }

    void aLinkedPendingFileIsNeverShown()
    {
        test::TempHome home;
        Core core;
        core.manager->start();
        const QString elsewhere = home.write("elsewhere.json", bashPayload);
        QVERIFY(QFile::link(elsewhere, core.folder().filePath("pending-toolu_9.json")));
        core.folder().write("pending-toolu_1.json", bashPayload);
        QTRY_COMPARE_WITH_TIMEOUT(core.model->count(), 1, 5000);
        QCOMPARE(core.manager->prompts().at(0).id, QStringLiteral("toolu_1"));
    }

    void releaseFailuresAreLogged()
    {
        test::TempHome home;
        test::LogCapture log;
        ApprovalsFolder folder(Paths::approvalsFolder());
        QVERIFY(folder.ensure().ok);
        ApprovalExchange exchange(folder);
        QVERIFY(QDir().mkpath(folder.filePath("resp-toolu_5/x")));
        QVERIFY(!exchange.releaseToTerminal("toolu_5"));
        QVERIFY(!exchange.writeDecision("toolu_5", ApprovalExchange::Decision::allow));
        QVERIFY(QDir().mkpath(folder.filePath("pending-toolu_6.json/x")));
        QVERIFY(!exchange.releaseToTerminal("toolu_6"));
        QCOMPARE(
            log.lines(),
            (QStringList{
                "Norva agents: handing toolu_5 back to the terminal failed (the answer file could not be "
                "written: Is a directory); the hook waits out its timeout",
                "Norva agents: answering toolu_5 failed (the answer file could not be written: Is a "
                "directory); the hook waits out its timeout",
                "Norva agents: handing toolu_6 back to the terminal failed (the prompt's file could not be "
                "removed: Is a directory); it may show again on the next scan"}));
    }
};
NORVA_TEST(PromptExchangeTest)
#include "tst_promptexchange.moc"
