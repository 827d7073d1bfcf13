#include "LogCapture.h"
#include "TempHome.h"
#include "TestMain.h"

#include "agents/prompts/DesktopPromptAlerts.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>
#include <QProcess>
#include <QtTest>

using namespace norva;

// A stand-in notification server: what a desktop's notification daemon receives from Norva.
class FakeNotifications : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
public:
    QStringList received;
public slots:
    uint Notify(const QString& app, uint replaces, const QString& icon, const QString& summary,
                const QString& body, const QStringList& actions, const QVariantMap& hints, int timeout)
    {
        Q_UNUSED(replaces)
        Q_UNUSED(icon)
        Q_UNUSED(actions)
        Q_UNUSED(hints)
        received << app + " | " + summary + " | " + body + " | " + QString::number(timeout);
        return uint(received.size());
    }
};

// The Linux alerts for a new prompt: a notification over a private session bus to a stand-in
// notification server, and the chime through a stand-in canberra-gtk-play.
class DesktopAlertsTest : public QObject {
    Q_OBJECT
private slots:
    void notificationReachesTheNotificationServer()
    {
        if (QStandardPaths::findExecutable("dbus-daemon").isEmpty())
            QSKIP("dbus-daemon is not installed (tools/install-deps.sh --with-tests installs it)");
        QProcess daemon;
        daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address=1"});
        QVERIFY(daemon.waitForReadyRead(10000));
        const QString address = QString::fromUtf8(daemon.readLine()).trimmed();
        {
            QDBusConnection server = QDBusConnection::connectToBus(address, "notification-server");
            QVERIFY(server.isConnected());
            FakeNotifications fake;
            QVERIFY(server.registerObject("/org/freedesktop/Notifications", &fake,
                                          QDBusConnection::ExportAllSlots));
            QVERIFY(server.registerService("org.freedesktop.Notifications"));
            QDBusConnection client = QDBusConnection::connectToBus(address, "norva");
            DesktopPromptAlerts alerts(client);
            // The body is escaped for servers that read markup in it.
            alerts.notify("Claude Code asks to use Bash", "echo <b>hi</b> <!-- && rm -rf ~ -->");
            QTRY_COMPARE_WITH_TIMEOUT(fake.received.size(), 1, 5000);
            QCOMPARE(fake.received.at(0),
                     QStringLiteral("Norva | Claude Code asks to use Bash | "
                                    "echo &lt;b&gt;hi&lt;/b&gt; &lt;!-- &amp;&amp; rm -rf ~ --&gt; | -1"));
        }
        QDBusConnection::disconnectFromBus("notification-server");
        QDBusConnection::disconnectFromBus("norva");
        daemon.kill();
        daemon.waitForFinished();
    }

    void chimePlaysTheThemeSoundOrStaysSilent()
    {
        test::TempHome home;
        const QByteArray savedPath = qgetenv("PATH");
        const QString record = home.file("played");
        const QString player =
            home.write("bin/canberra-gtk-play", "#!/bin/sh\necho \"$@\" > '" + record.toUtf8() + "'\n");
        QFile::setPermissions(player, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", QFile::encodeName(home.file("bin")) + ":/usr/bin:/bin");
        DesktopPromptAlerts alerts(QDBusConnection(QStringLiteral("none")));
        alerts.chime();
        QTRY_COMPARE_WITH_TIMEOUT(test::TempHome::read(record),
                                  QByteArray("-i message-new-instant -d Norva\n"), 5000);

        QFile::remove(player);
        QFile::remove(record);
        test::LogCapture log;
        alerts.chime();
        alerts.notify("title", "body"); // no bus: nothing, and nothing noisy
        QTest::qWait(200);
        QVERIFY(!QFile::exists(record));
        QCOMPARE(log.lines(), QStringList());
        qputenv("PATH", savedPath);
    }
};
NORVA_TEST(DesktopAlertsTest)
#include "tst_desktopalerts.moc"
