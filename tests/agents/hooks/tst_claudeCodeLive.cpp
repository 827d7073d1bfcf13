#include "ExchangeCore.h"
#include "TempHome.h"
#include "TestMain.h"

#include "agents/hooks/AgentConfigFile.h"
#include "agents/hooks/ApprovalHook.h"

#include <QDir>
#include <QJsonArray>
#include <QProcess>
#include <QSignalSpy>
#include <QTcpServer>
#include <QtTest>

using namespace norva;

// The real Claude Code, run in -p mode against a loopback stand-in of its API with Norva's hooks
// installed and Norva's core running. Its allow rule covers `ls`, so `ls` runs without a card; the
// `touch` it is not allowed comes to the notch through the PermissionRequest hook, and Allow on the
// card lets it run. Set NORVA_CLAUDE_CODE to the claude binary (npm i @anthropic-ai/claude-code).
class ClaudeCodeLiveTest : public QObject {
    Q_OBJECT
private slots:
    void allowRulesMakeNoCardAndTheNotchAnswersTheRest()
    {
        const QString claude = qEnvironmentVariable("NORVA_CLAUDE_CODE");
        if (claude.isEmpty())
            QSKIP("NORVA_CLAUDE_CODE is not set");
        test::TempHome home;
        test::ExchangeCore core(systemClock());
        QVERIFY(ApprovalHook::install().ok);
        const AgentConfigFile settingsFile(ApprovalHook::settingsPath());
        QJsonObject settings = settingsFile.read();
        settings.insert("permissions", QJsonObject{{"allow", QJsonArray{"Bash(ls:*)"}}});
        QVERIFY(settingsFile.write(settings).ok);
        core.manager->start();
        QSignalSpy arrived(core.manager.get(), &AgentPromptsManager::promptArrived);

        QTcpServer probe; // a free loopback port for the stand-in
        QVERIFY(probe.listen(QHostAddress::LocalHost));
        const QString port = QString::number(probe.serverPort());
        probe.close();
        QProcess api;
        QProcessEnvironment apiEnv = QProcessEnvironment::systemEnvironment();
        apiEnv.insert("FAKE_COMMANDS", "ls||touch made-by-claude");
        api.setProcessEnvironment(apiEnv);
        api.start("python3", {NORVA_SOURCE_DIR "/tests/agents/hooks/claude_api_standin.py", port});
        QVERIFY(api.waitForStarted());
        QTest::qWait(500); // a real server starting, not one of Norva's timings

        const QString project = home.file("project");
        QDir().mkpath(project);
        QProcess agent;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("ANTHROPIC_BASE_URL", "http://127.0.0.1:" + port);
        env.insert("ANTHROPIC_API_KEY", "sk-loopback");
        env.insert("CLAUDE_CODE_DISABLE_NONESSENTIAL_TRAFFIC", "1");
        env.insert("DISABLE_AUTOUPDATER", "1");
        agent.setProcessEnvironment(env);
        agent.setWorkingDirectory(project);
        agent.start(claude, {"-p", "list the files, then make one"});
        QVERIFY(agent.waitForStarted());
        agent.closeWriteChannel();

        QTRY_COMPARE_WITH_TIMEOUT(arrived.size(), 1, 90000);
        QCOMPARE(core.manager->prompts().size(), 1);
        const PromptCard card = core.manager->prompts().first();
        QCOMPARE(card.subject, QStringLiteral("touch made-by-claude")); // `ls` made no card
        QVERIFY(card.id.startsWith("claude-"));
        QVERIFY(core.model->allow(card.id));
        QVERIFY(agent.waitForFinished(90000));
        QVERIFY(QFile::exists(project + "/made-by-claude"));
        QCOMPARE(arrived.size(), 1);
        api.kill();
        api.waitForFinished();
    }
};

NORVA_TEST(ClaudeCodeLiveTest)
#include "tst_claudeCodeLive.moc"
