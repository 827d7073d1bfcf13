#include "JsonText.h"
#include "LogCapture.h"
#include "ManualClock.h"
#include "TempHome.h"
#include "TestMain.h"

#include "agents/usage/UsageBridge.h"
#include "agents/usage/UsageMonitor.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QtTest>

using namespace norva;

namespace {

const QDateTime kNow(QDate(2026, 11, 18), QTime(10, 0), Qt::UTC);

struct Bridge {
    test::TempHome home;
    QString approvals = home.file("data/Norva/approvals");
    QString settings = home.file(".claude/settings.json");
    UsageBridge bridge{approvals, settings};

    QByteArray file(const QString& name) const { return test::TempHome::read(approvals + "/" + name); }
    QJsonObject settingsObject() const
    {
        return QJsonDocument::fromJson(test::TempHome::read(settings)).object();
    }
    QJsonObject statusLine() const { return settingsObject().value("statusLine").toObject(); }
};

struct ScriptRun {
    QByteArray output;
    int exitCode = -1;
};

// Runs the installed bridge the way Claude Code does: sh, the payload on standard input.
ScriptRun runBridge(const Bridge& b, const QByteArray& payload, const QString& path = QString())
{
    QProcess sh;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", b.home.path());
    if (!path.isEmpty())
        environment.insert("PATH", path);
    sh.setProcessEnvironment(environment);
    sh.start("/bin/sh", {b.approvals + "/statusline.sh"});
    sh.write(payload);
    sh.closeWriteChannel();
    sh.waitForFinished(10000);
    return {sh.readAllStandardOutput(), sh.exitCode()};
}

// The monitor ages a reading by its file time, so a test stamps it with its own clock rather than
// letting the wall clock (which runs on while the test writes) decide.
void stampModified(const QString& path, const QDateTime& at)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(at, QFileDevice::FileModificationTime));
}

} // namespace

class UsageBridgeTest : public QObject {
    Q_OBJECT
private slots:
    void windowsReadEveryFormOfShareAndReset_data()
    {
        QTest::addColumn<QByteArray>("window");
        QTest::addColumn<int>("percent"); // -1: the window is dropped
        QTest::addColumn<QDateTime>("resetsAt");
        const QDateTime later = kNow.addSecs(3600);
        const QByteArray seconds = QByteArray::number(later.toSecsSinceEpoch());
        const QByteArray millis = QByteArray::number(later.toMSecsSinceEpoch());
        QTest::newRow("seconds") << "{\"used_percentage\":12,\"resets_at\":" + seconds + "}" << 12 << later;
        QTest::newRow("milliseconds")
            << "{\"used_percentage\":12,\"resets_at\":" + millis + "}" << 12 << later;
        QTest::newRow("fraction rounds up")
            << "{\"used_percentage\":99.6,\"resets_at\":" + seconds + "}" << 100 << later;
        QTest::newRow("below zero") << "{\"used_percentage\":-3,\"resets_at\":" + seconds + "}" << 0 << later;
        QTest::newRow("above hundred")
            << "{\"used_percentage\":140,\"resets_at\":" + seconds + "}" << 100 << later;
        QTest::newRow("text half rounds away")
            << "{\"used_percentage\":\"42.5\",\"resets_at\":" + seconds + "}" << 43 << later;
        QTest::newRow("utilization") << "{\"utilization\":7.2,\"resets_at\":" + seconds + "}" << 7 << later;
        QTest::newRow("used_percentage wins")
            << "{\"used_percentage\":5,\"utilization\":90,\"resets_at\":" + seconds + "}" << 5 << later;
        QTest::newRow("null share is no share")
            << "{\"used_percentage\":null,\"utilization\":9,\"resets_at\":" + seconds + "}" << -1
            << QDateTime();
        QTest::newRow("boolean share")
            << "{\"used_percentage\":true,\"resets_at\":" + seconds + "}" << -1 << QDateTime();
        QTest::newRow("text not a number")
            << "{\"used_percentage\":\"lots\",\"resets_at\":" + seconds + "}" << -1 << QDateTime();
        QTest::newRow("iso text") << j("{'used_percentage':50,'resets_at':'2026-11-18T11:00:00Z'}") << 50
                                  << later;
        QTest::newRow("iso with offset")
            << j("{'used_percentage':50,'resets_at':'2026-11-18T12:00:00+01:00'}") << 50 << later;
        QTest::newRow("iso fractional")
            << j("{'used_percentage':50,'resets_at':'2026-11-18T11:00:00.000Z'}") << 50 << later;
        QTest::newRow("iso without zone")
            << j("{'used_percentage':50,'resets_at':'2026-11-18T11:00:00'}") << -1 << QDateTime();
        QTest::newRow("empty text") << j("{'used_percentage':50,'resets_at':''}") << -1 << QDateTime();
        QTest::newRow("no reset") << j("{'used_percentage':50}") << -1 << QDateTime();
        QTest::newRow("reset in the past")
            << j("{'used_percentage':50,'resets_at':'2026-11-18T09:00:00Z'}") << -1 << QDateTime();
        QTest::newRow("reset exactly now")
            << j("{'used_percentage':50,'resets_at':'2026-11-18T10:00:00Z'}") << -1 << QDateTime();
        QTest::newRow("not an object") << QByteArray("42") << -1 << QDateTime();
    }
    void windowsReadEveryFormOfShareAndReset()
    {
        QFETCH(QByteArray, window);
        QFETCH(int, percent);
        QFETCH(QDateTime, resetsAt);
        const UsageBridge::Reading reading =
            UsageBridge::parseLimits("{\"five_hour\":" + window + ",\"seven_day\":" + window + "}", kNow);
        QCOMPARE(reading.ok(), percent >= 0);
        if (percent < 0) {
            QCOMPARE(reading.failure,
                     QStringLiteral("no five_hour or seven_day window with a percent and a reset time"));
            return;
        }
        QCOMPARE(reading.limits.fiveHour, (UsageBridge::Window{percent, resetsAt}));
        QCOMPARE(reading.limits.sevenDay, (UsageBridge::Window{percent, resetsAt}));
    }

    void readingReportsWhatIsMissing()
    {
        QCOMPARE(UsageBridge::parseLimits("[1]", kNow).failure, QStringLiteral("not a JSON object"));
        QCOMPARE(UsageBridge::parseLimits("null", kNow).failure, QStringLiteral("not a JSON object"));
        const auto oneWindow = UsageBridge::parseLimits(
            j("{'five_hour':{'used_percentage':1,'resets_at':'2026-11-18T09:00:00Z'},"
              "'seven_day':{'used_percentage':30,'resets_at':'2026-11-20T10:00:00Z'}}"),
            kNow);
        QVERIFY(oneWindow.ok());
        QVERIFY(!oneWindow.limits.fiveHour);
        QCOMPARE(oneWindow.limits.sevenDay->percent, 30);
        const auto allReset = UsageBridge::parseLimits(
            j("{'five_hour':{'used_percentage':1,'resets_at':'2026-11-18T09:00:00Z'},"
              "'seven_day':{'used_percentage':30,'resets_at':'2026-11-18T09:30:00Z'}}"),
            kNow);
        QVERIFY(!allReset.ok());
        QCOMPARE(allReset.lastReset, QDateTime(QDate(2026, 11, 18), QTime(9, 30), Qt::UTC));
    }

    void installKeepsThePersonsStatusLine()
    {
        Bridge b;
        b.home.write(
            ".claude/settings.json",
            j("{'model':'opus','statusLine':{'type':'command','command':'~/bin/line.sh','padding':2}}"));
        const QByteArray before = test::TempHome::read(b.settings);
        QVERIFY(b.bridge.install());
        QVERIFY(b.bridge.isInstalled());
        QCOMPARE(b.file("statusline-original.cmd"), QByteArray("~/bin/line.sh"));
        QCOMPARE(
            QJsonDocument::fromJson(b.file("statusline-original.json")).object(),
            QJsonDocument::fromJson(j("{'type':'command','command':'~/bin/line.sh','padding':2}")).object());
        QCOMPARE(b.statusLine().value("command").toString(), "sh '" + b.approvals + "/statusline.sh'");
        QVERIFY(b.statusLine().contains("padding"));
        QCOMPARE(b.settingsObject().value("model").toString(), QStringLiteral("opus"));
        QCOMPARE(test::TempHome::read(b.settings + ".norva-backup"), before);
        QCOMPARE(QFileInfo(b.approvals + "/statusline.sh").permissions() & QFile::ExeOwner, QFile::ExeOwner);

        // Installing again must not save the bridge over the person's command.
        QVERIFY(b.bridge.install());
        QCOMPARE(b.file("statusline-original.cmd"), QByteArray("~/bin/line.sh"));
        QCOMPARE(test::TempHome::read(b.settings + ".norva-backup"), before);

        QVERIFY(b.bridge.uninstall());
        QCOMPARE(
            b.statusLine(),
            QJsonDocument::fromJson(j("{'type':'command','command':'~/bin/line.sh','padding':2}")).object());
        QVERIFY(!QFile::exists(b.approvals + "/statusline-original.cmd"));
        QVERIFY(!QFile::exists(b.approvals + "/statusline-original.json"));
    }

    void uninstallWithoutSavedLineRemovesTheMember()
    {
        Bridge b;
        QVERIFY(b.bridge.install()); // no settings file at all
        QVERIFY(b.bridge.isInstalled());
        QVERIFY(!QFile::exists(b.approvals + "/statusline-original.cmd"));
        b.home.write("data/Norva/approvals/rate-limits.json", "{}");
        QVERIFY(b.bridge.uninstall());
        QVERIFY(!b.settingsObject().contains("statusLine"));
        QVERIFY(!QFile::exists(b.approvals + "/rate-limits.json"));
    }

    void uninstallLeavesAStatusLineThePersonChanged()
    {
        Bridge b;
        b.home.write(".claude/settings.json", j("{'statusLine':{'type':'command','command':'old'}}"));
        QVERIFY(b.bridge.install());
        QJsonObject settings = b.settingsObject();
        settings.insert("statusLine", QJsonObject{{"type", "command"}, {"command", "newer"}});
        b.home.write(".claude/settings.json", QJsonDocument(settings).toJson());
        QVERIFY(b.bridge.uninstall());
        QCOMPARE(b.statusLine().value("command").toString(), QStringLiteral("newer"));
        QVERIFY(!QFile::exists(b.approvals + "/statusline-original.cmd"));
    }

    void unreadableSettingsFailInstallAndStayAsTheyWere()
    {
        Bridge b;
        test::LogCapture log;
        b.home.write(".claude/settings.json", "{ this is not json");
        QVERIFY(!b.bridge.install());
        QCOMPARE(test::TempHome::read(b.settings), QByteArray("{ this is not json"));
        QVERIFY(!QFile::exists(b.settings + ".norva-backup"));
        QCOMPARE(log.count("Norva agents: the usage bridge could not be installed (" + b.settings +
                           " is not a JSON object)"),
                 1);
    }

    void bridgeCopiesTheLimitsAndRunsThePersonsLine()
    {
        if (QStandardPaths::findExecutable("python3").isEmpty())
            QSKIP("python3 is not installed");
        Bridge b;
        b.home.write(".claude/settings.json", "{\"statusLine\":{\"type\":\"command\",\"command\":\"cat > '" +
                                                  b.home.file("seen").toUtf8() +
                                                  "'; echo my line; exit 3\"}}");
        QVERIFY(b.bridge.install());
        const QByteArray payload = j("{'model':{'id':'x'},'rate_limits':{'five_hour':{'used_percentage':12.5,"
                                     "'resets_at':1893456000}}}");
        const ScriptRun run = runBridge(b, payload);
        QCOMPARE(run.exitCode, 0); // the person's line failed, the bridge still did not
        QCOMPARE(run.output, QByteArray("my line\n"));
        QCOMPARE(test::TempHome::read(b.home.file("seen")), payload);
        QCOMPARE(QJsonDocument::fromJson(b.file("rate-limits.json")),
                 QJsonDocument::fromJson(j("{'five_hour':{'used_percentage':12.5,'resets_at':1893456000}}")));
        QVERIFY(!QFile::exists(b.approvals + "/rate-limits.json.tmp"));

        // No limits, or null limits, leave the last reading in place and still run the person's line.
        const QByteArray kept = b.file("rate-limits.json");
        for (const QByteArray& other :
             {j("{'model':{}}"), j("{'rate_limits':null}"), QByteArray("not json")}) {
            const ScriptRun again = runBridge(b, other);
            QCOMPARE(again.exitCode, 0);
            QCOMPARE(again.output, QByteArray("my line\n"));
            QCOMPARE(b.file("rate-limits.json"), kept);
        }
    }

    // Without an extractor the person's line still runs; without a saved line nothing is printed.
    void bridgeRunsWhateverItHas_data()
    {
        QTest::addColumn<QByteArray>("settings");
        QTest::addColumn<bool>("extractor");
        QTest::addColumn<QByteArray>("output");
        QTest::newRow("no extractor")
            << j("{'statusLine':{'type':'command','command':'echo mine'}}") << false << QByteArray("mine\n");
        QTest::newRow("no saved line") << QByteArray() << true << QByteArray();
    }
    void bridgeRunsWhateverItHas()
    {
        QFETCH(QByteArray, settings);
        QFETCH(bool, extractor);
        Bridge b;
        if (!settings.isEmpty())
            b.home.write(".claude/settings.json", settings);
        QVERIFY(b.bridge.install());
        // A PATH with only what the script needs besides an extractor.
        const QString bin = b.home.file("bin");
        QDir().mkpath(bin);
        for (const char* tool : {"cat", "mv", "sh"})
            QVERIFY(QFile::link(QStandardPaths::findExecutable(tool), bin + "/" + tool));
        const ScriptRun run =
            runBridge(b, j("{'rate_limits':{'five_hour':{}}}"), extractor ? QString() : bin);
        QCOMPARE(run.exitCode, 0);
        QTEST(run.output, "output");
        QCOMPARE(QFile::exists(b.approvals + "/rate-limits.json"), extractor);
    }

    void monitorLogsWhyItShowsNothing()
    {
        test::TempHome home;
        test::ManualClock clock(QDateTime::currentDateTimeUtc());
        test::LogCapture log;
        const QString folder = home.file("approvals");
        QDir().mkpath(folder);
        UsageMonitor monitor(clock, folder);
        QSignalSpy changed(&monitor, &UsageMonitor::windowsChanged);
        monitor.refresh();
        monitor.refresh();
        QCOMPARE(log.lines(),
                 QStringList{"Norva agents: Claude usage: no statusline data yet (the usage bridge "
                             "has not written rate-limits.json), hiding"});

        const QDateTime now = clock.now();
        const QByteArray good = "{\"five_hour\":{\"used_percentage\":61.4,\"resets_at\":" +
                                QByteArray::number(now.addSecs(2 * 3600 + 5 * 60 + 30).toSecsSinceEpoch()) +
                                "},\"seven_day\":{\"utilization\":\"20\",\"resets_at\":" +
                                QByteArray::number(now.addDays(3).addSecs(4 * 3600 + 30).toSecsSinceEpoch()) +
                                "}}";
        home.write("approvals/rate-limits.json", good);
        monitor.refresh();
        QVERIFY(monitor.available());
        const QVariantList& windows = monitor.windows()->rows();
        QCOMPARE(windows.size(), 2);
        QCOMPARE(windows.at(0).toMap().value("label").toString(), QStringLiteral("5 hours"));
        QCOMPARE(windows.at(0).toMap().value("percent").toInt(), 61);
        QCOMPARE(windows.at(0).toMap().value("resetText").toString(), QStringLiteral("resets in 2 h 5 min"));
        QCOMPARE(windows.at(1).toMap().value("resetText").toString(), QStringLiteral("resets in 3 d 4 h"));

        home.write("approvals/rate-limits.json", "[\"five_hour\"]");
        monitor.refresh();
        QVERIFY(!monitor.available());
        QCOMPARE(log.lines().last(),
                 QStringLiteral("Norva agents: Claude usage is hidden (rate_limits is not an object)"));

        home.write("approvals/rate-limits.json", good);
        monitor.refresh();
        QVERIFY(monitor.available());
        // Both windows reset while no new reading came: the slow re-read hides them.
        clock.advance(Seconds(4 * 86400));
        stampModified(folder + "/rate-limits.json", clock.now());
        monitor.refresh();
        QVERIFY(!monitor.available());
        QVERIFY(log.lines().last().startsWith(
            "Norva agents: Claude usage: every window in the last reading has already reset at "));
        QVERIFY(changed.size() >= 3);
    }

    void monitorHidesAnOldReading()
    {
        test::TempHome home;
        test::ManualClock clock(QDateTime::currentDateTimeUtc());
        test::LogCapture log;
        const QString folder = home.file("approvals");
        home.write("approvals/rate-limits.json",
                   "{\"five_hour\":{\"used_percentage\":5,\"resets_at\":" +
                       QByteArray::number(clock.now().addDays(2).toSecsSinceEpoch()) + "}}");
        stampModified(folder + "/rate-limits.json", clock.now());
        UsageMonitor monitor(clock, folder);
        monitor.start();
        QVERIFY(monitor.available());
        clock.advance(Seconds(7 * 3600));
        QVERIFY(!monitor.available());
        QCOMPARE(log.count(": the last reading is 7 h old, hiding"), 1);
    }

    void monitorFollowsTheFileThroughTheFolderWatch()
    {
        test::TempHome home;
        test::ManualClock clock(QDateTime::currentDateTimeUtc());
        const QString folder = home.file("approvals");
        QDir().mkpath(folder);
        UsageMonitor monitor(clock, folder);
        monitor.start();
        QVERIFY(!monitor.available());
        home.write("approvals/rate-limits.json.tmp",
                   "{\"seven_day\":{\"used_percentage\":5,\"resets_at\":" +
                       QByteArray::number(clock.now().addDays(2).toSecsSinceEpoch()) + "}}");
        QVERIFY(QFile::rename(folder + "/rate-limits.json.tmp", folder + "/rate-limits.json"));
        QTRY_VERIFY_WITH_TIMEOUT(monitor.available(), 3000);
    }
};
NORVA_TEST(UsageBridgeTest)
#include "tst_usageBridge.moc"
