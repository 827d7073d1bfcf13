#include "LogCapture.h"
#include "TestMain.h"

#include "app/StatusNotifierItem.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QImage>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QtTest>

using namespace norva;

namespace {

// Stands in for the panel's watcher (a KDE or GNOME panel cannot run here): it keeps the names
// of the items that register, as a real watcher hands them to its panel.
class WatcherStandIn : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hostRegistered)
public:
    bool hostRegistered() const { return true; }
    QStringList items;
public slots:
    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString& service) { items << service; }
};

// A private session bus for one test.
struct PrivateBus {
    QProcess daemon;
    QString address;
    bool start()
    {
        daemon.start(QStringLiteral("dbus-daemon"), {"--session", "--nofork", "--print-address=1"});
        if (!daemon.waitForReadyRead(10000))
            return false;
        address = QString::fromUtf8(daemon.readLine()).trimmed();
        return !address.isEmpty();
    }
    ~PrivateBus()
    {
        daemon.kill();
        daemon.waitForFinished();
    }
};

QImage solidIcon()
{
    QImage image(16, 16, QImage::Format_ARGB32);
    image.fill(QColor(0x10, 0x20, 0x30));
    return image;
}

// A call as the panel makes it. The item answers from this thread, so the wait keeps the event
// loop turning; no QDBusInterface, whose blocking introspection would stall the same way.
QDBusMessage callOn(QDBusConnection& bus, const QString& service, const QString& path,
                    const QString& interface, const QString& method, const QVariantList& arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setArguments(arguments);
    return bus.call(call, QDBus::BlockWithGui);
}

template <typename T> T propertyOf(QDBusConnection& bus, const QString& service, const QString& name)
{
    const QDBusMessage reply = callOn(bus, service, "/StatusNotifierItem", "org.freedesktop.DBus.Properties",
                                      "Get", {QStringLiteral("org.kde.StatusNotifierItem"), name});
    const QVariant value = reply.arguments().value(0).value<QDBusVariant>().variant();
    if (value.canConvert<QDBusArgument>())
        return qdbus_cast<T>(value.value<QDBusArgument>());
    return value.value<T>();
}

} // namespace

class StatusNotifierItemTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        if (QStandardPaths::findExecutable("dbus-daemon").isEmpty())
            QSKIP("dbus-daemon is not installed (tools/install-deps.sh --with-tests installs it)");
        registerStatusNotifierTypes();
    }

    void thePanelShowsTheIconAndItsMenuAndHearsTheClicks_data()
    {
        QTest::addColumn<bool>("panelStartsLater");
        QTest::newRow("panel already running") << false;
        QTest::newRow("panel starts after Norva") << true;
    }
    void thePanelShowsTheIconAndItsMenuAndHearsTheClicks()
    {
        QFETCH(bool, panelStartsLater);
        PrivateBus bus;
        QVERIFY(bus.start());
        {
            QDBusConnection norva = QDBusConnection::connectToBus(bus.address, QStringLiteral("norva"));
            QDBusConnection panel = QDBusConnection::connectToBus(bus.address, QStringLiteral("panel"));
            WatcherStandIn watcher;
            const auto startPanel = [&] {
                QVERIFY(panel.registerObject("/StatusNotifierWatcher", &watcher,
                                             QDBusConnection::ExportScriptableContents |
                                                 QDBusConnection::ExportAllProperties));
                QVERIFY(panel.registerService(StatusNotifierItem::kWatcherService));
            };
            if (!panelStartsLater)
                startPanel();
            test::LogCapture log;
            StatusNotifierItem item(norva, "norva", "Norva", solidIcon(),
                                    {{"Open Norva"}, {"Settings…"}, {}, {"Quit Norva"}});
            item.setShown(true);
            if (panelStartsLater) {
                QTRY_VERIFY(log.contains(
                    "Norva: the tray icon waits for a panel (no status-notifier watcher answered: "));
                startPanel();
            }
            QTRY_COMPARE_WITH_TIMEOUT(watcher.items, QStringList{item.serviceName()}, 5000);

            // What the panel reads to draw the icon.
            const QString service = item.serviceName();
            QCOMPARE(propertyOf<QString>(panel, service, "Title"), QStringLiteral("Norva"));
            QCOMPARE(propertyOf<QString>(panel, service, "Status"), QStringLiteral("Active"));
            const auto pixmaps = propertyOf<DBusImageList>(panel, service, "IconPixmap");
            QCOMPARE(pixmaps.size(), 1);
            QCOMPARE(pixmaps.first().width, 16);
            QCOMPARE(pixmaps.first().pixels.size(), 16 * 16 * 4);
            QCOMPARE(pixmaps.first().pixels.left(4),
                     QByteArray("\xff\x10\x20\x30", 4)); // ARGB, network order
            const QString menuPath = propertyOf<QDBusObjectPath>(panel, service, "Menu").path();

            // The menu as the panel draws it.
            const auto onMenu = [&](const QString& method, const QVariantList& arguments) {
                return callOn(panel, service, menuPath, "com.canonical.dbusmenu", method, arguments);
            };
            const QDBusMessage layoutReply = onMenu("GetLayout", {0, -1, QStringList()});
            QCOMPARE(layoutReply.type(), QDBusMessage::ReplyMessage);
            const auto layout =
                qdbus_cast<DBusMenuLayout>(layoutReply.arguments().at(1).value<QDBusArgument>());
            QStringList shown;
            for (const auto& entry : layout.children)
                shown << entry.properties.value("label", entry.properties.value("type")).toString();
            QCOMPARE(shown, (QStringList{"Open Norva", "Settings…", "separator", "Quit Norva"}));

            // Clicks come back as the entry's id, and a click on the icon as an activation.
            QSignalSpy triggered(&item, &StatusNotifierItem::menuTriggered);
            QSignalSpy activated(&item, &StatusNotifierItem::activated);
            const QVariant noData = QVariant::fromValue(QDBusVariant(0));
            onMenu("Event", {layout.children.last().id, "clicked", noData, 0u});
            onMenu("Event", {layout.children.at(2).id, "clicked", noData, 0u}); // the separator
            callOn(panel, service, "/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate", {10, 10});
            QTRY_COMPARE(activated.size(), 1);
            QCOMPARE(triggered.size(), 1);
            QCOMPARE(triggered.first().first().toInt(), 4);

            // Hidden (the setting is off): the name leaves the bus, which is how the panel learns it.
            item.setShown(false);
            QTRY_VERIFY(!panel.interface()->isServiceRegistered(service));
        }
        QDBusConnection::disconnectFromBus(QStringLiteral("norva"));
        QDBusConnection::disconnectFromBus(QStringLiteral("panel"));
    }
};

NORVA_TEST(StatusNotifierItemTest)
#include "tst_StatusNotifierItem.moc"
