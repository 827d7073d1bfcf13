#include "JsonText.h"
#include "LogCapture.h"
#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "TempHome.h"
#include "TestMain.h"

#include "agents/team/TeamPolicy.h"
#include "app/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QtTest>

using namespace norva;

namespace {

const QByteArray kTeamRules = j("{'rules':["
                                "{'id':'push','action':'never','kind':'run','pattern':'git push*'},"
                                "{'id':'status','action':'always','kind':'run','pattern':'git status*'},"
                                "{'id':'docs','action':'always','kind':'fetch','pattern':'https:/"
                                "/docs.example/*'}]}");

// Everything a policy needs, in a temporary home.
struct Fixture {
    test::TempHome home;
    test::ManualClock clock;
    test::MemoryPreferences preferences;
    SettingsStore settings{preferences};
    QString approvals = home.file("data/Norva/approvals");
    QString userFile = home.file("data/Norva/team-rules.json");
    QString managedFile = home.file("etc/norva/team-rules.json");
    TeamPolicy policy{settings, clock, approvals, userFile, managedFile};
};

void writeAtomically(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile out(path + ".tmp");
    QVERIFY(out.open(QIODevice::WriteOnly));
    out.write(bytes);
    out.close();
    QFile::remove(path);
    QVERIFY(QFile::rename(path + ".tmp", path));
}

QStringList identifiers(const QList<TeamRule>& rules)
{
    QStringList out;
    for (const TeamRule& rule : rules)
        out << rule.identifier;
    return out;
}

} // namespace

class TeamPolicyTest : public QObject {
    Q_OBJECT
private slots:
    void ruleFileSkipsRulesThatDoNotRead_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QStringList>("kept");
        QTest::addColumn<int>("skipped");
        QTest::addColumn<bool>("readable");
        QTest::newRow("all good") << kTeamRules << QStringList{"push", "status", "docs"} << 0 << true;
        QTest::newRow("bad action") << j("{'rules':[{'id':'a','action':'maybe','kind':'run','pattern':'x'}]}")
                                    << QStringList{} << 1 << true;
        QTest::newRow("bad kind") << j("{'rules':[{'id':'a','action':'never','kind':'read','pattern':'x'}]}")
                                  << QStringList{} << 1 << true;
        QTest::newRow("no id") << j("{'rules':[{'action':'never','kind':'run','pattern':'x'}]}")
                               << QStringList{} << 1 << true;
        QTest::newRow("no pattern") << j("{'rules':[{'id':'a','action':'never','kind':'run'}]}")
                                    << QStringList{} << 1 << true;
        QTest::newRow("duplicate id") << j("{'rules':[{'id':'a','action':'never','kind':'run','pattern':'x'},"
                                           "{'id':'a','action':'always','kind':'run','pattern':'y'}]}")
                                      << QStringList{"a"} << 1 << true;
        QTest::newRow("empty list") << j("{'rules':[]}") << QStringList{} << 0 << true;
        QTest::newRow("array") << j("[]") << QStringList{} << 0 << false;
        QTest::newRow("rules not array") << j("{'rules':{}}") << QStringList{} << 0 << false;
        QTest::newRow("garbage") << QByteArray("rules: never") << QStringList{} << 0 << false;
    }
    void ruleFileSkipsRulesThatDoNotRead()
    {
        QFETCH(QByteArray, json);
        QFETCH(QStringList, kept);
        QFETCH(int, skipped);
        QFETCH(bool, readable);
        const TeamPolicy::Reading reading = TeamPolicy::parse(json);
        QCOMPARE(identifiers(reading.rules), kept);
        QCOMPARE(reading.skipped.size(), skipped);
        QCOMPARE(reading.failure.isEmpty(), readable);
    }

    void readsTheRulesAndRaisesTheMarker()
    {
        Fixture f;
        test::LogCapture log;
        writeAtomically(f.userFile, kTeamRules);
        QSignalSpy needed(&f.policy, &TeamPolicy::hooksNeededChanged);
        f.policy.start();
        QCOMPARE(identifiers(f.policy.rules()), (QStringList{"push", "status", "docs"}));
        QVERIFY(QFile::exists(f.approvals + "/team-deny-active"));
        QCOMPARE(needed.size(), 1);
        QCOMPARE(needed.at(0).at(0).toBool(), true);
        QCOMPARE(log.lines(),
                 QStringList{"Norva team: 3 rules in force from " + f.userFile + " (1 never, 2 always)"});
        const QVariantList& view = f.policy.ruleRows()->rows();
        QCOMPARE(view.size(), 3);
        QCOMPARE(view.at(0).toMap().value("phrase").toString(), QStringLiteral("never run git push*"));
        QCOMPARE(view.at(2).toMap().value("phrase").toString(),
                 QStringLiteral("always fetch https://docs.example/*"));
    }

    void managedCopyTakesPrecedence()
    {
        Fixture f;
        writeAtomically(f.userFile, kTeamRules);
        writeAtomically(f.managedFile,
                        j("{'rules':[{'id':'m','action':'always','kind':'edit','pattern':'src/*'}]}"));
        f.policy.start();
        QCOMPARE(identifiers(f.policy.rules()), QStringList{"m"});
        QCOMPARE(f.policy.source(), f.managedFile);
        QVERIFY(!f.policy.hasNeverRules());
        QVERIFY(!QFile::exists(f.approvals + "/team-deny-active"));
    }

    void spoiltManagedCopyDoesNotFallBackToTheOwnFile()
    {
        Fixture f;
        test::LogCapture log;
        writeAtomically(f.managedFile,
                        j("{'rules':[{'id':'m','action':'never','kind':'run','pattern':'rm *'}]}"));
        f.policy.start();
        writeAtomically(f.userFile, j("{'rules':[]}"));
        writeAtomically(f.managedFile, "{broken");
        f.policy.reload();
        QCOMPARE(identifiers(f.policy.rules()), QStringList{"m"});
        QCOMPARE(log.count("Norva team: the rules in " + f.managedFile +
                           " were not read (not a JSON object with a \"rules\" array); the rules in force "
                           "stay as they were"),
                 1);
        f.policy.reload(); // the same failure is not logged again
        QCOMPARE(log.count("were not read"), 1);
    }

    void noticesAChangedRulesFileWhileRunning()
    {
        Fixture f;
        writeAtomically(f.userFile, j("{'rules':[]}"));
        f.policy.start();
        QVERIFY(!QFile::exists(f.approvals + "/team-deny-active"));
        QSignalSpy changed(&f.policy, &TeamPolicy::rulesChanged);
        writeAtomically(f.userFile, kTeamRules);
        QTRY_COMPARE_WITH_TIMEOUT(f.policy.rules().size(), 3, 3000);
        QVERIFY(QFile::exists(f.approvals + "/team-deny-active"));
        QFile::remove(f.userFile);
        QTRY_COMPARE_WITH_TIMEOUT(f.policy.rules().size(), 0, 3000);
        QVERIFY(!QFile::exists(f.approvals + "/team-deny-active"));
        QVERIFY(changed.size() >= 2);
    }

    void managedCopyAddedLaterIsFoundByTheRecheck()
    {
        Fixture f;
        writeAtomically(f.userFile, j("{'rules':[]}"));
        f.policy.start();
        // "etc/norva" did not exist at start, so only the slow re-check can see it.
        writeAtomically(f.managedFile, kTeamRules);
        f.clock.advance(Seconds(61));
        QCOMPARE(f.policy.source(), f.managedFile);
        QCOMPARE(f.policy.rules().size(), 3);
    }

    void responderAnswersThroughTheFolderWhileNeverRulesExist()
    {
        Fixture f;
        writeAtomically(f.userFile, kTeamRules);
        f.policy.start();
        const QByteArray payload = j("{'tool_name':'Bash','tool_input':{'command':'ls; git push'}}");
        writeAtomically(f.approvals + "/denycheck-claude-pre-42.json", payload);
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(f.approvals + "/denyresp-claude-pre-42"), 2000);
        QVERIFY(
            test::TempHome::read(f.approvals + "/denyresp-claude-pre-42").contains("never run git push*"));
        // Without never rules the responder stops: nobody answers, and the hook lets the call pass.
        writeAtomically(f.userFile,
                        j("{'rules':[{'id':'status','action':'always','kind':'run','pattern':'x'}]}"));
        f.policy.reload();
        writeAtomically(f.approvals + "/denycheck-claude-pre-43.json", payload);
        QTest::qWait(100);
        QVERIFY(!QFile::exists(f.approvals + "/denyresp-claude-pre-43"));
    }

    void alwaysRuleAnswersPromptsUntilSwitchedOff()
    {
        Fixture f;
        writeAtomically(f.userFile, kTeamRules);
        f.policy.start();
        const QJsonObject status{{"command", "git status --short"}};
        TeamDecision decision = f.policy.decidePrompt("Bash", status, false);
        QCOMPARE(decision.outcome, TeamDecision::Outcome::allow);
        QCOMPARE(TeamRules::reason(decision),
                 QStringLiteral("Allowed by your team's rule: always run git status*"));
        QCOMPARE(f.policy.decidePrompt("Bash", status, true).outcome, TeamDecision::Outcome::none);

        f.policy.setAlwaysRuleOn("status", false);
        QCOMPARE(f.policy.decidePrompt("Bash", status, false).outcome, TeamDecision::Outcome::none);
        QCOMPARE(f.policy.ruleRows()->get(1).value("on").toBool(), false);
        // The switch-off is a preference: a new policy over the same preferences keeps it.
        SettingsStore settings(f.preferences);
        TeamPolicy other(settings, f.clock, f.approvals, f.userFile, f.managedFile);
        other.start();
        QCOMPARE(other.switchedOff(), QSet<QString>{"status"});
        f.policy.setAlwaysRuleOn("status", true);
        QCOMPARE(f.policy.decidePrompt("Bash", status, false).outcome, TeamDecision::Outcome::allow);
        // A never rule still wins on the notch.
        QCOMPARE(f.policy.decidePrompt("Bash", QJsonObject{{"command", "git push"}}, false).outcome,
                 TeamDecision::Outcome::deny);
    }
};
NORVA_TEST(TeamPolicyTest)
#include "tst_teamPolicy.moc"
