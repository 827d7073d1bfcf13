#include "LogCapture.h"
#include "ManualClock.h"
#include "TempHome.h"
#include "TestMain.h"

#include "agents/ApprovalsFolder.h"
#include "agents/hooks/HookScripts.h"
#include "agents/jump/TerminalJumper.h"
#include "agents/prompts/ApprovalExchange.h"
#include "agents/prompts/Heartbeat.h"
#include "agents/team/TeamDenyResponder.h"
#include "agents/team/TeamEnforcement.h"
#include "agents/usage/UsageMonitor.h"
#include "app/Paths.h"

#include <QFile>
#include <QtTest>

#include <sys/stat.h>

using namespace norva;

namespace {

TeamRule neverPush()
{
    TeamRule rule;
    rule.identifier = QStringLiteral("np");
    rule.action = TeamAction::never;
    rule.kind = TeamSubjectKind::run;
    rule.pattern = QStringLiteral("git push*");
    return rule;
}

bool isRegularFile(const QString& path)
{
    struct stat info {};
    return ::lstat(QFile::encodeName(path).constData(), &info) == 0 && S_ISREG(info.st_mode);
}

// Each way Norva writes into the approvals folder, named by the file it writes.
struct Writer {
    const char* file;
    std::function<void(const ApprovalsFolder&, test::ManualClock&)> write;
};

const QList<Writer>& writers()
{
    static const QList<Writer> all = {
        {"resp-toolu_1",
         [](const ApprovalsFolder& folder, test::ManualClock&) {
             ApprovalExchange(folder).writeDecision("toolu_1", ApprovalExchange::Decision::allow);
         }},
        {"resp-toolu_2", [](const ApprovalsFolder& folder,
                            test::ManualClock&) { ApprovalExchange(folder).releaseToTerminal("toolu_2"); }},
        {"denyresp-claude-pre-4242",
         [](const ApprovalsFolder& folder, test::ManualClock&) {
             folder.write("denycheck-claude-pre-4242.json",
                          R"({"tool_name":"Bash","tool_input":{"command":"git push"}})");
             TeamDenyResponder responder;
             responder.setRules({neverPush()});
             responder.start(folder.path());
             responder.stop();
         }},
        {"team-deny-active",
         [](const ApprovalsFolder& folder, test::ManualClock&) {
             TeamEnforcement::writeFlags(folder.path(), {neverPush()});
         }},
        {"heartbeat",
         [](const ApprovalsFolder& folder, test::ManualClock& clock) { Heartbeat(folder, clock).beat(); }},
        {"pretooluse.sh", [](const ApprovalsFolder& folder,
                             test::ManualClock&) { HookScripts::write("pretooluse.sh", folder); }},
        {"permissionrequest.sh",
         [](const ApprovalsFolder& folder, test::ManualClock&) {
             HookScripts::write("permissionrequest.sh", folder);
         }},
    };
    return all;
}

} // namespace

// A local process can plant a link in the approvals folder under a name Norva is about to write
// or read. Norva never writes or reads through it: a write replaces the link by a file of its own,
// a read refuses it.
class PlantedLinksTest : public QObject {
    Q_OBJECT
private slots:
    void writesReplaceTheLink_data()
    {
        QTest::addColumn<int>("writer");
        for (int i = 0; i < writers().size(); ++i)
            QTest::newRow(writers().at(i).file) << i;
    }
    void writesReplaceTheLink()
    {
        QFETCH(int, writer);
        test::TempHome home;
        test::LogCapture log;
        test::ManualClock clock(QDateTime::currentDateTimeUtc());
        const ApprovalsFolder folder(Paths::approvalsFolder());
        QVERIFY(folder.ensure().ok);
        const QString outside = home.path() + "/outside-" + QString::number(writer);
        const QString name = QString::fromLatin1(writers().at(writer).file);
        QVERIFY(QFile::link(outside, folder.filePath(name))); // dangling: the target does not exist yet
        writers().at(writer).write(folder, clock);
        QVERIFY2(!QFile::exists(outside), "written through the link");
        QVERIFY(isRegularFile(folder.filePath(name)));
        QVERIFY(folder.files().filter(QStringLiteral(".norva-")).isEmpty()); // no half-made file left
    }

    void readsRefuseTheLink()
    {
        test::TempHome home;
        test::LogCapture log;
        test::ManualClock clock(QDateTime::currentDateTimeUtc());
        const ApprovalsFolder folder(Paths::approvalsFolder());
        QVERIFY(folder.ensure().ok);
        const QString elsewhere = home.path() + "/elsewhere";
        QFile out(elsewhere);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(
            R"({"tool_name":"Bash","tool_input":{"command":"git push"},"transcript_path":"/t","term_pid":"7",)"
            R"("rate_limits":{}})");
        out.close();

        QVERIFY(QFile::link(elsewhere, folder.filePath("term-s1.json")));
        QVERIFY(TerminalJumper::loadTargets(folder.path()).isEmpty());

        QVERIFY(QFile::link(elsewhere, folder.filePath("rate-limits.json")));
        UsageMonitor usage(clock, folder.path());
        usage.refresh();
        QCOMPARE(log.count("Norva agents: Claude usage is hidden (the file could not be read)"), 1);

        // A check planted as a link is answered empty: its payload is never read through the link.
        QVERIFY(QFile::link(elsewhere, folder.filePath("denycheck-claude-pre-77.json")));
        TeamDenyResponder responder;
        responder.setRules({neverPush()});
        responder.start(folder.path());
        QTRY_VERIFY(folder.exists("denyresp-claude-pre-77"));
        QCOMPARE(folder.read("denyresp-claude-pre-77").value(), QByteArray());
    }
};

NORVA_TEST(PlantedLinksTest)
#include "tst_plantedLinks.moc"
