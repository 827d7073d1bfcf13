#include "JsonText.h"
#include "TempHome.h"
#include "TestMain.h"

#include "agents/team/TeamEnforcement.h"
#include "agents/team/TeamRules.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

using namespace norva;

namespace {

TeamRule rule(const QString& id, TeamAction action, TeamSubjectKind kind, const QString& pattern)
{
    return TeamRule{id, action, kind, pattern};
}

TeamSubject run(const QString& command)
{
    return {TeamSubjectKind::run, {command}};
}

QJsonObject object(const QByteArray& json)
{
    return QJsonDocument::fromJson(json).object();
}

} // namespace

class TeamRulesTest : public QObject {
    Q_OBJECT
private slots:
    void globMatchesTheWholeTextCaseSensitively_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("matches");
        const auto row = [](const char* name, const char* pattern, const char* text, bool matches) {
            QTest::newRow(name) << QString::fromLatin1(pattern) << QString::fromLatin1(text) << matches;
        };
        row("exact", "git push", "git push", true);
        row("case differs", "Git push", "git push", false);
        row("no star is whole text", "git push", "git push origin", false);
        row("trailing star", "git push*", "git push origin main", true);
        row("star matches empty", "git push*", "git push", true);
        row("leading star", "*.env", "config/.env", true);
        row("star needs backtracking", "*a*b", "xaybzab", true);
        row("backtrack fails at end", "*a*b", "xaybza", false);
        row("middle star", "rm *-rf*", "rm x -rf y", true);
        row("only star", "*", "", true);
        row("empty pattern", "", "x", false);
        row("question mark is literal", "ls ?", "ls a", false);
        row("prefix of pattern", "git push", "git pus", false);
    }
    void globMatchesTheWholeTextCaseSensitively()
    {
        QFETCH(QString, pattern);
        QFETCH(QString, text);
        QTEST(TeamRules::glob(pattern, text), "matches");
    }

    void segmentsSplitAtEveryChainCharacter_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QStringList>("segments");
        QTest::newRow("and and semicolon")
            << "git status && git push; ls" << QStringList{"git status", "git push", "ls"};
        QTest::newRow("dollar paren") << "echo $(git push)" << QStringList{"echo", "git push"};
        QTest::newRow("backquotes") << "echo `rm -rf x`" << QStringList{"echo", "rm -rf x"};
        QTest::newRow("pipes and redirects")
            << "cat a|grep b >out <in" << QStringList{"cat a", "grep b", "out", "in"};
        QTest::newRow("line breaks") << "ls\r\ngit push\n" << QStringList{"ls", "git push"};
        QTest::newRow("empty pieces dropped") << ";;  ; ls" << QStringList{"ls"};
        QTest::newRow("blank command") << "   " << QStringList{};
    }
    void segmentsSplitAtEveryChainCharacter()
    {
        QFETCH(QString, command);
        QTEST(TeamRules::segments(command), "segments");
    }

    void commandUnwrapsOnlyAWrappingShellWithItsFlag_data()
    {
        QTest::addColumn<QStringList>("argv");
        QTest::addColumn<QString>("command");
        QTest::newRow("bash -lc") << QStringList{"bash", "-lc", "git push"} << "git push";
        QTest::newRow("plain argv") << QStringList{"git", "push"} << "git push";
        QTest::newRow("sh -c several") << QStringList{"/bin/sh", "-c", "git", "push"} << "git push";
        QTest::newRow("homebrew bash") << QStringList{"/opt/homebrew/bin/bash", "-c", "ls"} << "ls";
        QTest::newRow("other flag kept") << QStringList{"bash", "-x", "s.sh"} << "bash -x s.sh";
        QTest::newRow("two elements") << QStringList{"bash", "-c"} << "bash -c";
        QTest::newRow("fish is no wrapper") << QStringList{"fish", "-c", "ls"} << "fish -c ls";
    }
    void commandUnwrapsOnlyAWrappingShellWithItsFlag()
    {
        QFETCH(QStringList, argv);
        QTEST(TeamRules::command(argv), "command");
    }

    void patchPathsReadsEveryFileHeader()
    {
        const QString patch = "*** Begin Patch\n*** Update File:  src/a.cpp  \n@@\n-x\n+y\n"
                              "*** Delete File: old.txt\r\n*** Add File: new/b.h\n+int b;\n"
                              "   *** Move to: moved.h\n*** End Patch\n";
        QCOMPARE(TeamRules::patchPaths(patch), (QStringList{"src/a.cpp", "old.txt", "new/b.h", "moved.h"}));
        QCOMPARE(TeamRules::patchPaths("no headers here"), QStringList{});
    }

    void subjectTakesTheCandidatesOfEachFamily_data()
    {
        QTest::addColumn<QString>("tool");
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<int>("kind"); // -1 for none
        QTest::addColumn<QStringList>("candidates");
        QTest::newRow("Bash string") << "Bash" << j("{'command':'git push'}") << 0 << QStringList{"git push"};
        QTest::newRow("Codex argv") << "local_shell" << j("{'command':['bash','-lc','git push']}") << 0
                                    << QStringList{"git push"};
        QTest::newRow("exec_command cmd")
            << "exec_command" << j("{'cmd':'make'}") << 0 << QStringList{"make"};
        QTest::newRow("Edit") << "Edit" << j("{'file_path':'/r/.env','old_string':'a'}") << 1
                              << QStringList{"/r/.env"};
        QTest::newRow("NotebookEdit")
            << "NotebookEdit" << j("{'notebook_path':'n.ipynb'}") << 1 << QStringList{"n.ipynb"};
        QTest::newRow("str_replace_editor")
            << "str_replace_editor" << j("{'path':'a.c'}") << 1 << QStringList{"a.c"};
        QTest::newRow("apply_patch")
            << "apply_patch" << j("{'input':'*** Begin Patch\n*** Update File: a.c\n*** Add File: b.c\n'}")
            << 1 << QStringList{"a.c", "b.c"};
        QTest::newRow("WebFetch") << "WebFetch" << j("{'url':'https://x.example/a','prompt':'p'}") << 2
                                  << QStringList{"https://x.example/a"};
        QTest::newRow("unknown tool") << "Read" << j("{'file_path':'a'}") << -1 << QStringList{};
        QTest::newRow("case matters") << "BASH" << j("{'command':'ls'}") << -1 << QStringList{};
        QTest::newRow("no command") << "Bash" << j("{}") << 0 << QStringList{};
    }
    void subjectTakesTheCandidatesOfEachFamily()
    {
        QFETCH(QString, tool);
        QFETCH(QByteArray, input);
        QFETCH(int, kind);
        const auto subject = TeamRules::subject(tool, object(input));
        QCOMPARE(subject.has_value(), kind >= 0);
        if (!subject)
            return;
        QCOMPARE(int(subject->kind), kind);
        QTEST(subject->candidates, "candidates");
    }

    // Commands that try to hide a forbidden command are denied; harmless ones are left alone.
    void neverRuleSeesThroughHiddenCommands_data()
    {
        QTest::addColumn<QString>("tool");
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<bool>("denied");
        auto row = [](const char* name, const char* tool, const QByteArray& input, bool denied) {
            QTest::newRow(name) << QString::fromUtf8(tool) << input << denied;
        };
        auto cmd = [](const QString& command) {
            return QJsonDocument(QJsonObject{{"command", command}}).toJson(QJsonDocument::Compact);
        };
        auto argv = [](const QStringList& words) {
            return QJsonDocument(QJsonObject{{"command", QJsonArray::fromStringList(words)}})
                .toJson(QJsonDocument::Compact);
        };
        row("plain", "Bash", cmd("git push origin main"), true);
        row("after and", "Bash", cmd("git status && git push origin main"), true);
        row("after or", "Bash", cmd("false || git push"), true);
        row("after semicolon", "Bash", cmd("ls;git push"), true);
        row("background", "Bash", cmd("sleep 1 & git push"), true);
        row("piped into", "Bash", cmd("yes | git push"), true);
        row("subshell", "Bash", cmd("(cd repo; git push)"), true);
        row("command substitution", "Bash", cmd("echo $(git push)"), true);
        row("backquotes", "Bash", cmd("echo `git push`"), true);
        row("new line", "Bash", cmd("ls\ngit push"), true);
        row("carriage return", "Bash", cmd("ls\rgit push"), true);
        row("line continuation", "Bash", cmd("git \\\npush"), true);
        row("extra blanks", "Bash", cmd("git    push"), true);
        row("tab", "Bash", cmd("git\tpush"), true);
        row("quoted words", "Bash", cmd("'git' \"push\""), true);
        row("bash -c", "Bash", cmd("bash -c 'git push'"), true);
        row("sh -c chained inside", "Bash", cmd("sh -c \"ls; git push\""), true);
        row("zsh -lc", "Bash", cmd("/bin/zsh -lc 'git push --force'"), true);
        row("nested shells", "Bash", cmd("bash -c \"sh -c 'git push'\""), true);
        row("env assignment", "Bash", cmd("GIT_TRACE=1 git push"), true);
        row("env launcher", "Bash", cmd("env -i git push"), true);
        row("exec launcher", "Bash", cmd("exec git push"), true);
        row("full path", "Bash", cmd("/usr/bin/git push"), true);
        row("argv wrapped", "local_shell", argv({"bash", "-lc", "git push"}), true);
        row("argv plain", "local_shell", argv({"git", "push"}), true);
        row("argv chain inside", "shell", argv({"/bin/sh", "-c", "make && git push"}), true);
        row("argv nested shell", "shell", argv({"bash", "-c", "bash -c 'git push'"}), true);
        row("exec_command cmd", "exec_command", j("{'cmd':'true; git push'}"), true);
        row("harmless status", "Bash", cmd("git status"), false);
        row("harmless echo words", "Bash", cmd("echo git push"), false);
        row("harmless grep", "Bash", cmd("grep -r 'push' src | wc -l"), false);
        row("harmless log", "Bash", cmd("git log --oneline"), false);
        row("harmless pull", "Bash", cmd("git pull && make"), false);
        row("harmless argv", "local_shell", argv({"bash", "-lc", "git status"}), false);
        row("wrong case", "Bash", cmd("GIT PUSH"), false);
        row("edit tool not a run", "Edit", j("{'file_path':'git push'}"), false);
        row("question tool", "AskUserQuestion", cmd("git push"), false);
    }
    void neverRuleSeesThroughHiddenCommands()
    {
        QFETCH(QString, tool);
        QFETCH(QByteArray, input);
        QFETCH(bool, denied);
        const QList<TeamRule> rules = {rule("n1", TeamAction::never, TeamSubjectKind::run, "git push*")};
        const auto subject = TeamRules::subject(tool, object(input));
        const TeamDecision decision =
            subject ? TeamRules::decide(*subject, false, rules, {}, false) : TeamDecision::none();
        QCOMPARE(decision.outcome == TeamDecision::Outcome::deny, denied);
        if (denied)
            QCOMPARE(decision.rule->identifier, QStringLiteral("n1"));
    }

    void decideAppliesPrecedenceAndOverrides_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<bool>("isQuestion");
        QTest::addColumn<QStringList>("switchedOff");
        QTest::addColumn<bool>("trusted");
        QTest::addColumn<int>("outcome");
        QTest::addColumn<QString>("ruleId");
        const int none = int(TeamDecision::Outcome::none);
        const int deny = int(TeamDecision::Outcome::deny);
        const int allow = int(TeamDecision::Outcome::allow);
        QTest::newRow("always allows") << "git status -s" << false << QStringList{} << true << allow << "a1";
        QTest::newRow("chain disqualifies always")
            << "git status; ls x" << false << QStringList{} << true << none << "";
        QTest::newRow("subshell disqualifies always")
            << "git status $(rm x)" << false << QStringList{} << true << none << "";
        QTest::newRow("switched off asks")
            << "git status" << false << QStringList{"a1"} << true << none << "";
        QTest::newRow("any collected switched off")
            << "git status" << false << QStringList{"a2"} << true << none << "";
        QTest::newRow("untrusted caller ignores always")
            << "git status" << false << QStringList{} << false << none << "";
        QTest::newRow("never beats always") << "git push" << false << QStringList{} << true << deny << "n1";
        QTest::newRow("first never wins")
            << "rm -rf / && git push" << false << QStringList{} << true << deny << "n1";
        QTest::newRow("second never") << "rm -rf /tmp/x" << false << QStringList{} << true << deny << "n2";
        QTest::newRow("question never decided") << "git push" << true << QStringList{} << true << none << "";
        QTest::newRow("no rule") << "make" << false << QStringList{} << true << none << "";
    }
    void decideAppliesPrecedenceAndOverrides()
    {
        QFETCH(QString, command);
        QFETCH(bool, isQuestion);
        QFETCH(QStringList, switchedOff);
        QFETCH(bool, trusted);
        const QList<TeamRule> rules = {
            rule("a1", TeamAction::always, TeamSubjectKind::run, "git status*"),
            rule("n1", TeamAction::never, TeamSubjectKind::run, "git push*"),
            rule("n2", TeamAction::never, TeamSubjectKind::run, "rm -rf *"),
            rule("a2", TeamAction::always, TeamSubjectKind::run, "git *"),
            rule("a3", TeamAction::always, TeamSubjectKind::edit, "*"),
        };
        const QSet<QString> off(switchedOff.cbegin(), switchedOff.cend());
        const TeamDecision decision = TeamRules::decide(run(command), isQuestion, rules, off, trusted);
        QTEST(int(decision.outcome), "outcome");
        QTEST(decision.rule ? decision.rule->identifier : QString(), "ruleId");
    }

    void alwaysRuleMustMatchEveryCandidate()
    {
        const QList<TeamRule> rules = {rule("e", TeamAction::always, TeamSubjectKind::edit, "src/*")};
        const TeamSubject both{TeamSubjectKind::edit, {"src/a.c", "secrets/key"}};
        QCOMPARE(TeamRules::decide(both, false, rules, {}, true).outcome, TeamDecision::Outcome::none);
        const TeamSubject inside{TeamSubjectKind::edit, {"src/a.c", "src/b.c"}};
        QCOMPARE(TeamRules::decide(inside, false, rules, {}, true).outcome, TeamDecision::Outcome::allow);
        const TeamSubject empty{TeamSubjectKind::edit, {}};
        QCOMPARE(TeamRules::decide(empty, false, rules, {}, true).outcome, TeamDecision::Outcome::none);
    }

    void neverEditRuleDoesNotLookIntoSegments()
    {
        // Only shell commands are split; a path with a semicolon is one path.
        const QList<TeamRule> rules = {rule("e", TeamAction::never, TeamSubjectKind::edit, ".env")};
        const TeamSubject path{TeamSubjectKind::edit, {"a;.env"}};
        QCOMPARE(TeamRules::decide(path, false, rules, {}, false).outcome, TeamDecision::Outcome::none);
        const TeamSubject exact{TeamSubjectKind::edit, {"x", ".env"}};
        QCOMPARE(TeamRules::decide(exact, false, rules, {}, false).outcome, TeamDecision::Outcome::deny);
    }

    void phraseAndReasonReadAsTheTeamWroteThem()
    {
        const TeamRule never = rule("n", TeamAction::never, TeamSubjectKind::run, "git push*");
        const TeamRule always =
            rule("a", TeamAction::always, TeamSubjectKind::fetch, "https://docs.example/*");
        QCOMPARE(TeamRules::phrase(never), QStringLiteral("never run git push*"));
        QCOMPARE(TeamRules::phrase(rule("e", TeamAction::always, TeamSubjectKind::edit, "src/*")),
                 QStringLiteral("always edit src/*"));
        QCOMPARE(TeamRules::reason(TeamDecision::deny(never)),
                 QStringLiteral("Denied by your team's rule: never run git push*"));
        QCOMPARE(TeamRules::reason(TeamDecision::allow(always)),
                 QStringLiteral("Allowed by your team's rule: always fetch https://docs.example/*"));
        QCOMPARE(TeamRules::reason(TeamDecision::none()), QString());
    }

    void markerFollowsTheNeverRules()
    {
        test::TempHome home;
        const QString folder = home.file("approvals");
        const QString marker = folder + "/team-deny-active";
        const TeamRule never = rule("n", TeamAction::never, TeamSubjectKind::run, "x");
        const TeamRule always = rule("a", TeamAction::always, TeamSubjectKind::run, "y");
        QVERIFY(TeamEnforcement::writeFlags(folder, {always}));
        QVERIFY(!QFile::exists(marker));
        QVERIFY(TeamEnforcement::writeFlags(folder, {always, never}));
        QVERIFY(QFile::exists(marker));
        QVERIFY(TeamEnforcement::writeFlags(folder, {never}));
        QVERIFY(QFile::exists(marker));
        QVERIFY(TeamEnforcement::writeFlags(folder, {}));
        QVERIFY(!QFile::exists(marker));
    }
};
NORVA_TEST(TeamRulesTest)
#include "tst_teamRules.moc"
