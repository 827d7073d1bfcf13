#include "JsonText.h"
#include "LogCapture.h"
#include "MemoryPreferences.h"
#include "TempHome.h"
#include "TestMain.h"

#include "agents/AgentSettings.h"
#include "agents/hooks/AgentAlertsSetup.h"
#include "agents/hooks/AgentPromptSwitch.h"
#include "agents/hooks/ApprovalHook.h"
#include "agents/hooks/CodexHook.h"
#include "agents/hooks/CopilotCLIHook.h"
#include "agents/hooks/HookPresence.h"
#include "agents/hooks/HookScripts.h"
#include "app/Paths.h"
#include "app/SettingsStore.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

using namespace norva;

namespace {

QJsonArray eventEntries(const QString& path, const QString& event)
{
    return readJson(path).value(QStringLiteral("hooks")).toObject().value(event).toArray();
}

int markedCount(const QJsonArray& entries, const QString& marker)
{
    int count = 0;
    for (const QJsonValue& entry : entries)
        count += ApprovalHook::entryHasMarker(entry, marker) ? 1 : 0;
    return count;
}

QJsonObject userEntry(const QString& matcher, const QString& command)
{
    return QJsonObject{{"matcher", matcher},
                       {"hooks", QJsonArray{QJsonObject{{"type", "command"}, {"command", command}}}}};
}

// Runs a shell line with the payload on stdin; returns its standard output.
QByteArray runShell(const QString& line, const QByteArray& input)
{
    QProcess sh;
    sh.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), line});
    sh.waitForStarted();
    sh.write(input);
    sh.closeWriteChannel();
    sh.waitForFinished(20000);
    return sh.readAllStandardOutput();
}

// A stand-in executable on PATH, so agent detection finds "codex" or "copilot".
struct FakePath {
    explicit FakePath(const test::TempHome& home, const QStringList& programs)
    {
        saved = qgetenv("PATH");
        const QString bin = home.file(QStringLiteral("bin"));
        QDir().mkpath(bin);
        for (const QString& program : programs) {
            const QString path = home.write(QStringLiteral("bin/") + program, "#!/bin/sh\nexit 0\n");
            QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        }
        qputenv("PATH", QFile::encodeName(bin) + ":/usr/bin:/bin");
    }
    ~FakePath() { qputenv("PATH", saved); }
    QByteArray saved;
};

} // namespace

// Installing and removing Norva's hooks in the agents' own configuration files, beside the person's
// entries, with the backup, the quoting rule and the switch that follows the preference.
class HookInstallTest : public QObject {
    Q_OBJECT
private slots:
    void installTwiceKeepsOneEntryAndThePersonsOrder()
    {
        test::TempHome home;
        const QJsonObject before{
            {"model", "opus"},
            {"hooks", QJsonObject{{"PreToolUse", QJsonArray{userEntry("Bash", "echo first"),
                                                            userEntry("Edit", "echo second")}},
                                  {"PostToolUse", QJsonArray{userEntry("Bash", "echo after")}},
                                  {"Stop", QJsonArray{userEntry("", "echo stop")}}}}};
        const QString path = home.write(".claude/settings.json", QJsonDocument(before).toJson());
        QVERIFY(ApprovalHook::install().ok);
        QVERIFY(ApprovalHook::install().ok);

        const QJsonArray pre = eventEntries(path, "PreToolUse");
        QCOMPARE(pre.size(), 4);
        QCOMPARE(pre.at(0).toObject(), userEntry("Bash", "echo first"));
        QCOMPARE(pre.at(1).toObject(), userEntry("Edit", "echo second"));
        QCOMPARE(markedCount(pre, "Norva/approvals/pretooluse.sh"), 2);
        const QJsonObject mine = pre.at(2).toObject();
        QCOMPARE(mine.value("matcher").toString(),
                 QStringLiteral("Bash|Edit|Write|MultiEdit|NotebookEdit|WebFetch|WebSearch"));
        const QJsonObject hook = mine.value("hooks").toArray().at(0).toObject();
        QCOMPARE(hook.value("type").toString(), QStringLiteral("command"));
        QCOMPARE(hook.value("timeout").toInt(), 86400);
        QCOMPARE(hook.value("command").toString(),
                 QStringLiteral("sh '") + home.path() +
                     QStringLiteral("/.local/share/Norva/approvals/pretooluse.sh'"));
        QVERIFY(!hook.contains("statusMessage")); // the never-allow check never waits for the person
        const QJsonObject question = pre.at(3).toObject();
        QCOMPARE(question.value("matcher").toString(), QStringLiteral("AskUserQuestion"));
        const QJsonObject questionHook = question.value("hooks").toArray().at(0).toObject();
        QCOMPARE(questionHook.value("command").toString(), hook.value("command").toString() + " question");
        QCOMPARE(questionHook.value("statusMessage").toString(), QStringLiteral("Answer on the Norva notch"));

        const QJsonArray permission = eventEntries(path, "PermissionRequest");
        QCOMPARE(permission.size(), 1);
        QCOMPARE(permission.at(0).toObject().value("matcher").toString(), QStringLiteral("*"));
        const QJsonObject asks = permission.at(0).toObject().value("hooks").toArray().at(0).toObject();
        QCOMPARE(asks.value("command").toString(),
                 QStringLiteral("sh '") + home.path() +
                     QStringLiteral("/.local/share/Norva/approvals/permissionrequest.sh'"));
        QCOMPARE(asks.value("timeout").toInt(), 86400);
        QCOMPARE(asks.value("statusMessage").toString(), QStringLiteral("Answer on the Norva notch"));

        const QJsonArray post = eventEntries(path, "PostToolUse");
        QCOMPARE(post.size(), 2);
        QCOMPARE(post.at(1).toObject().value("matcher").toString(), QStringLiteral("AskUserQuestion"));
        QCOMPARE(post.at(1).toObject().value("hooks").toArray().at(0).toObject().value("timeout").toInt(),
                 10);
        QVERIFY(!post.at(1).toObject().value("hooks").toArray().at(0).toObject().contains("statusMessage"));
        QCOMPARE(readJson(path).value("model").toString(), QStringLiteral("opus"));
        QCOMPARE(eventEntries(path, "Stop").size(), 1);
        QVERIFY(ApprovalHook::isInstalled());
        QCOMPARE(ApprovalHook::installedTimeout(), std::optional<int>(86400));

        const QFileInfo script(Paths::approvalsFolder() + "/pretooluse.sh");
        QVERIFY(script.isFile());
        QCOMPARE(int(script.permissions() & (QFile::ExeOwner | QFile::ExeOther | QFile::WriteOther)),
                 int(QFile::ExeOwner | QFile::ExeOther));
    }

    void uninstallLeavesThePersonsEntriesAsTheyWere()
    {
        test::TempHome home;
        const QJsonObject before{
            {"hooks", QJsonObject{{"PreToolUse", QJsonArray{userEntry("Write", "echo mine")}}}}};
        const QString path = home.write(".claude/settings.json", QJsonDocument(before).toJson());
        QVERIFY(ApprovalHook::install().ok);
        QVERIFY(ApprovalHook::uninstall().ok);
        QCOMPARE(readJson(path), before);
        QVERIFY(!ApprovalHook::isInstalled());
        QCOMPARE(ApprovalHook::installedTimeout(), std::nullopt);
    }

    // A machine with the older installation (a PreToolUse entry that held every call, no
    // PermissionRequest entry) gets the new entries at the next install; the person's own hooks,
    // PermissionRequest ones included, stay as they were, and removal takes all of Norva's away.
    void olderInstallationIsUpgradedAndRemovedWhole()
    {
        test::TempHome home;
        const QString oldCommand = "sh '" + home.path() + "/.local/share/Norva/approvals/pretooluse.sh'";
        const QJsonObject oldEntry{
            {"matcher", "Bash|Edit|Write|MultiEdit|NotebookEdit|WebFetch|WebSearch|AskUserQuestion"},
            {"hooks",
             QJsonArray{QJsonObject{{"type", "command"}, {"command", oldCommand}, {"timeout", 86400}}}}};
        const QJsonObject before{
            {"hooks", QJsonObject{{"PreToolUse", QJsonArray{userEntry("Bash", "echo mine"), oldEntry}},
                                  {"PermissionRequest", QJsonArray{userEntry("Read", "echo my dialog")}}}}};
        const QString path = home.write(".claude/settings.json", QJsonDocument(before).toJson());
        QVERIFY(ApprovalHook::install().ok);
        const QJsonArray pre = eventEntries(path, "PreToolUse");
        QCOMPARE(pre.size(), 3);
        QCOMPARE(pre.at(0).toObject(), userEntry("Bash", "echo mine"));
        QCOMPARE(markedCount(pre, "Norva/approvals/pretooluse.sh"), 2);
        QCOMPARE(
            pre.at(2).toObject().value("hooks").toArray().at(0).toObject().value("statusMessage").toString(),
            QStringLiteral("Answer on the Norva notch"));
        const QJsonArray permission = eventEntries(path, "PermissionRequest");
        QCOMPARE(permission.size(), 2);
        QCOMPARE(permission.at(0).toObject(), userEntry("Read", "echo my dialog"));
        QCOMPARE(markedCount(permission, "Norva/approvals/permissionrequest.sh"), 1);

        QVERIFY(ApprovalHook::uninstall().ok);
        const QJsonObject hooks = readJson(path).value("hooks").toObject();
        QCOMPARE(hooks.value("PreToolUse").toArray(), QJsonArray{userEntry("Bash", "echo mine")});
        QCOMPARE(hooks.value("PermissionRequest").toArray(), QJsonArray{userEntry("Read", "echo my dialog")});
        QVERIFY(!hooks.contains("PostToolUse"));
    }

    void noSettingsFileMakesOneWithOnlyHooksAndNoBackup()
    {
        test::TempHome home;
        QVERIFY(ApprovalHook::install().ok);
        const QJsonObject settings = readJson(ApprovalHook::settingsPath());
        QCOMPARE(settings.keys(), QStringList{"hooks"});
        QVERIFY(!QFileInfo::exists(home.file(".claude/settings.json.norva-backup")));
    }

    void backupIsMadeOnceAndNeverReplaced()
    {
        test::TempHome home;
        const QByteArray original = "{\"theme\": \"dark\"}\n";
        home.write(".claude/settings.json", original);
        QVERIFY(ApprovalHook::install().ok);
        const QString backup = home.file(".claude/settings.json.norva-backup");
        QCOMPARE(test::TempHome::read(backup), original);
        QJsonObject edited = readJson(ApprovalHook::settingsPath());
        edited.insert("theme", "light");
        home.write(".claude/settings.json", QJsonDocument(edited).toJson());
        QVERIFY(ApprovalHook::install().ok);
        QCOMPARE(test::TempHome::read(backup), original);
        QCOMPARE(readJson(ApprovalHook::settingsPath()).value("theme").toString(), QStringLiteral("light"));
    }

    void writesPrettyPrintedWithSortedKeys()
    {
        test::TempHome home;
        home.write(".claude/settings.json", "{\"zeta\":1,\"alpha\":2}");
        QVERIFY(ApprovalHook::install().ok);
        const QByteArray text = test::TempHome::read(ApprovalHook::settingsPath());
        QVERIFY(text.startsWith("{\n    \"alpha\": 2,\n    \"hooks\": {\n        \"PermissionRequest\""));
        QVERIFY(text.indexOf("\"PreToolUse\"") > text.indexOf("\"PostToolUse\""));
        QVERIFY(text.indexOf("\"zeta\"") > text.indexOf("\"hooks\""));
    }

    void unreadableSettingsAreSetAsideNotLost()
    {
        test::TempHome home;
        home.write(".claude/settings.json", "{\"theme\": \"dark\"}");
        QVERIFY(ApprovalHook::install().ok);
        home.write(".claude/settings.json", "{ not json");
        QVERIFY(ApprovalHook::install().ok);
        QCOMPARE(test::TempHome::read(home.file(".claude/settings.json.norva-unreadable")),
                 QByteArray("{ not json"));
        QVERIFY(ApprovalHook::isInstalled());
    }

    void quotedHomePathStillRunsTheScript_data()
    {
        QTest::addColumn<QString>("folderName");
        QTest::newRow("single quote") << QStringLiteral("it's home");
        QTest::newRow("blank and dollar") << QStringLiteral("my $HOME dir");
        QTest::newRow("two quotes") << QStringLiteral("a'b'c");
    }
    void quotedHomePathStillRunsTheScript()
    {
        QFETCH(QString, folderName);
        test::TempHome outer;
        const QString home = outer.file(folderName);
        QVERIFY(QDir().mkpath(home));
        qputenv("HOME", QFile::encodeName(home));
        QVERIFY(ApprovalHook::install().ok);
        const QJsonObject hook = eventEntries(ApprovalHook::settingsPath(), "PreToolUse")
                                     .last()
                                     .toObject()
                                     .value("hooks")
                                     .toArray()
                                     .at(0)
                                     .toObject();
        // With a fresh heartbeat the script takes a question to the folder under that home.
        QVERIFY(ApprovalsFolder(Paths::approvalsFolder()).write("heartbeat", QByteArray()).ok);
        const QByteArray out = runShell(hook.value("command").toString(),
                                        R"({"tool_name":"AskUserQuestion","tool_use_id":"t1"})");
        QCOMPARE(out, QByteArray());
        QVERIFY(QFile::exists(Paths::approvalsFolder() + "/pending-t1.json"));
        QCOMPARE(HookScripts::shellQuoted("it's"), QStringLiteral("'it'\\''s'"));
    }

    void installedScriptsStandAlone()
    {
        test::TempHome home;
        QVERIFY(ApprovalHook::install().ok);
        QVERIFY(CodexHook::install().ok);
        QVERIFY(CopilotCLIHook::install().ok);
        for (const char* name : {"pretooluse.sh", "posttooluse.sh", "permissionrequest.sh", "codex-hook.sh",
                                 "copilot-hook.sh"}) {
            const QString path = Paths::approvalsFolder() + "/" + name;
            const QByteArray text = test::TempHome::read(path);
            QVERIFY2(!text.contains("@NORVA_"), name);
            QVERIFY2(text.contains("D='" + Paths::approvalsFolder().toUtf8() + "'\n"), name);
            QCOMPARE(QProcess::execute("/bin/sh", {"-n", path}), 0);
        }
        QVERIFY(HookScripts::text("common.sh", Paths::approvalsFolder()).isEmpty());
    }

    void eventLogAppendsTimeAndPayload()
    {
        test::TempHome home;
        QVERIFY(AgentAlertsSetup::install().ok);
        QVERIFY(AgentAlertsSetup::isInstalled());
        QVERIFY(AgentAlertsSetup::install().ok);
        QCOMPARE(eventEntries(ApprovalHook::settingsPath(), "Notification").size(), 1);
        QDir().mkpath(Paths::dataFolder());
        const qint64 before = QDateTime::currentSecsSinceEpoch();
        runShell(AgentAlertsSetup::command(), R"({"message":"Claude needs your permission"})");
        const QByteArray line = test::TempHome::read(AgentAlertsSetup::eventsFile());
        QVERIFY(line.endsWith(" {\"message\":\"Claude needs your permission\"}\n"));
        const qint64 stamp = line.left(line.indexOf(' ')).toLongLong();
        QVERIFY(stamp >= before && stamp <= before + 5);
    }

    void eventLogFollowsADataFolderOutsideHome()
    {
        test::TempHome home;
        QDir().mkpath(home.file("person"));
        qputenv("HOME", QFile::encodeName(home.file("person")));
        qputenv("XDG_DATA_HOME", QFile::encodeName(home.file("data $x")));
        QCOMPARE(AgentAlertsSetup::command(),
                 QStringLiteral("{ printf '%s ' \"$(date +%s)\"; cat; echo; } >> \"") + home.path() +
                     QStringLiteral("/data \\$x/Norva/claude-events.jsonl\""));
        QDir().mkpath(Paths::dataFolder());
        runShell(AgentAlertsSetup::command(), "{}");
        QVERIFY(test::TempHome::read(AgentAlertsSetup::eventsFile()).endsWith(" {}\n"));
    }

    void codexEntriesMergeBesideThePersons()
    {
        test::TempHome home;
        const QJsonObject before{
            {"hooks", QJsonObject{{"Stop", QJsonArray{userEntry("", "notify-send done")}}}}};
        const QString path = home.write(".codex/hooks.json", QJsonDocument(before).toJson());
        QVERIFY(CodexHook::install().ok);
        QVERIFY(CodexHook::install().ok);
        QVERIFY(CodexHook::isInstalled());
        const QString command =
            QStringLiteral("sh '") + Paths::approvalsFolder() + QStringLiteral("/codex-hook.sh'");
        const QList<std::pair<QString, int>> expected = {
            {"SessionStart", 20}, {"PreToolUse", 30}, {"PermissionRequest", 86400}, {"Stop", 20}};
        for (const auto& [event, timeout] : expected) {
            const QJsonArray entries = eventEntries(path, event);
            QCOMPARE(markedCount(entries, "Norva/approvals/codex-hook.sh"), 1);
            const QJsonObject group = entries.last().toObject();
            QVERIFY(!group.contains("matcher"));
            const QJsonObject handler = group.value("hooks").toArray().at(0).toObject();
            QCOMPARE(handler.value("command").toString(), command);
            QCOMPARE(handler.value("timeout").toInt(), timeout);
            QCOMPARE(handler.contains("statusMessage"), event == "PermissionRequest");
        }
        QCOMPARE(eventEntries(path, "PermissionRequest")
                     .at(0)
                     .toObject()
                     .value("hooks")
                     .toArray()
                     .at(0)
                     .toObject()
                     .value("statusMessage"),
                 QJsonValue("Answer on the Norva notch"));
        QCOMPARE(eventEntries(path, "Stop").size(), 2);
        QVERIFY(QFileInfo::exists(path + ".norva-backup"));
        QVERIFY(CodexHook::uninstall().ok);
        QCOMPARE(readJson(path), before);
    }

    void copilotDocumentFollowsCopilotHome_data()
    {
        QTest::addColumn<QString>("copilotHome");
        QTest::newRow("unset") << QString();
        QTest::newRow("set") << QStringLiteral("custom-copilot");
    }
    void copilotDocumentFollowsCopilotHome()
    {
        QFETCH(QString, copilotHome);
        test::TempHome home;
        if (!copilotHome.isEmpty())
            qputenv("COPILOT_HOME", QFile::encodeName(home.file(copilotHome)));
        const QString root = copilotHome.isEmpty() ? home.file(".copilot") : home.file(copilotHome);
        QCOMPARE(CopilotCLIHook::defaultHome(), root);
        const QString theirs =
            home.write(QFileInfo(root).fileName() + "/hooks/theirs.json", "{\"version\":1}");
        QVERIFY(CopilotCLIHook::install().ok);
        QVERIFY(CopilotCLIHook::isInstalled());
        const QJsonObject document = readJson(root + "/hooks/norva.json");
        QCOMPARE(document.value("version").toInt(), 1);
        const QString command =
            QStringLiteral("sh '") + Paths::approvalsFolder() + QStringLiteral("/copilot-hook.sh'");
        const QList<std::pair<QString, int>> expected = {
            {"sessionStart", 20}, {"permissionRequest", 86400}, {"sessionEnd", 20}};
        const QJsonObject hooks = document.value("hooks").toObject();
        QCOMPARE(hooks.size(), 3);
        for (const auto& [event, timeout] : expected) {
            const QJsonArray handlers = hooks.value(event).toArray();
            QCOMPARE(handlers.size(), 1);
            QCOMPARE(
                handlers.at(0).toObject(),
                (QJsonObject{{"type", "command"}, {"bash", command + " " + event}, {"timeoutSec", timeout}}));
        }
        QVERIFY(CopilotCLIHook::uninstall().ok);
        QVERIFY(!QFileInfo::exists(root + "/hooks/norva.json"));
        QVERIFY(QFileInfo::exists(theirs));
        QVERIFY(!CopilotCLIHook::isInstalled());
    }

    void switchFollowsThePreference()
    {
        test::TempHome home;
        FakePath path(home, {"codex", "copilot"});
        test::MemoryPreferences prefs;
        SettingsStore settings(prefs);
        AgentPromptSwitch promptSwitch(settings);
        test::LogCapture log;
        promptSwitch.follow();
        QVERIFY(!ApprovalHook::isInstalled());
        QCOMPARE(log.lines().size(), 0);

        HookPresence presence;
        presence.live();
        AgentSettings(settings).setAnswerPromptsOnNotch(true);
        QVERIFY(ApprovalHook::isInstalled());
        QVERIFY(AgentAlertsSetup::isInstalled());
        QVERIFY(CodexHook::isInstalled());
        QVERIFY(CopilotCLIHook::isInstalled());
        QCOMPARE(log.count("Norva: answering agent prompts on the notch is on (hooks installed)"), 1);
        QVERIFY(presence.isOn(CodingAgent::copilot));
        QCOMPARE(presence.statusText(CodingAgent::claude),
                 QStringLiteral("Installed in ~/.claude/settings.json"));
        QCOMPARE(presence.statusText(CodingAgent::codex), QStringLiteral("Installed in ~/.codex/hooks.json"));

        // An outside change to the preference (another process, an editor) is followed too.
        prefs.outsideChange(QStringLiteral("answerPromptsOnNotch"), false);
        QVERIFY(!ApprovalHook::isInstalled());
        QVERIFY(!CodexHook::isInstalled());
        QVERIFY(!CopilotCLIHook::isInstalled());
        QVERIFY(!QFileInfo::exists(Paths::approvalsFolder() + "/notch-off"));
        QCOMPARE(log.count("Norva: answering agent prompts on the notch is off"), 1);
        QVERIFY(!presence.isOn(CodingAgent::claude));
    }

    void unwatchedOrMissingAgentsGetNoHooks()
    {
        test::TempHome home;
        FakePath path(home, {"copilot"});
        test::MemoryPreferences prefs;
        SettingsStore settings(prefs);
        AgentSettings(settings).setWatches(CodingAgent::copilot, false);
        AgentPromptSwitch promptSwitch(settings);
        QCOMPARE(promptSwitch.set(true), AgentPromptSwitch::Outcome::on);
        QVERIFY(ApprovalHook::isInstalled());
        QVERIFY(!CodexHook::isInstalled());
        QVERIFY(!CopilotCLIHook::isInstalled());
    }

    void teamRulesKeepTheHooksWithTheNotchOffMarker()
    {
        test::TempHome home;
        test::MemoryPreferences prefs;
        SettingsStore settings(prefs);
        AgentPromptSwitch promptSwitch(settings);
        promptSwitch.setTeamNeedsHooks(true);
        QVERIFY(ApprovalHook::isInstalled());
        QVERIFY(QFileInfo::exists(Paths::approvalsFolder() + "/notch-off"));
        QCOMPARE(promptSwitch.set(true), AgentPromptSwitch::Outcome::on);
        QVERIFY(!QFileInfo::exists(Paths::approvalsFolder() + "/notch-off"));
        promptSwitch.setTeamNeedsHooks(false);
        QCOMPARE(promptSwitch.set(false), AgentPromptSwitch::Outcome::off);
        QVERIFY(!ApprovalHook::isInstalled());
    }

    void unwritableClaudeSettingsFailTheSwitch()
    {
        test::TempHome home;
        QDir().mkpath(home.file(".claude/settings.json")); // a folder where the file should be
        test::MemoryPreferences prefs;
        SettingsStore settings(prefs);
        AgentPromptSwitch promptSwitch(settings);
        test::LogCapture log;
        QCOMPARE(promptSwitch.set(true), AgentPromptSwitch::Outcome::failed);
        QCOMPARE(log.lines(),
                 QStringList{"Norva: answering agent prompts on the notch could not be turned on: "
                             "~/.claude/settings.json was not writable"});
        QVERIFY(QFileInfo(home.file(".claude/settings.json")).isDir());
    }
};
NORVA_TEST(HookInstallTest)
#include "tst_hookinstall.moc"
