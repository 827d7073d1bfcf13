#include "NorvaProcess.h"
#include "TempHome.h"
#include "TestMain.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QRect>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <unistd.h>
#include <xcb/shape.h>
#include <xcb/xcb.h>

using norva::test::TempHome;

namespace {

// Generous: on a loaded machine weston, XWayland and Norva each take seconds to come up.
constexpr int kCompositorStartMs = 90000;
constexpr int kNorvaStartMs = 90000;
constexpr int kPollMs = 250;

const QByteArray kThroughXWayland =
    "Norva: drawing through XWayland (this desktop offers no layer for the notch)";

// A real Wayland desktop for one test: weston on its headless back end, with XWayland, in a
// runtime folder of its own. Its X display is read from its log, since weston takes the first
// free number.
class WestonSession {
public:
    WestonSession()
    {
        const QString weston = QStandardPaths::findExecutable(QStringLiteral("weston"));
        if (weston.isEmpty()) {
            m_whyNot = QStringLiteral("weston is not installed (tools/install-deps.sh --with-tests)");
            return;
        }
        // XWayland's sockets live in /tmp/.X11-unix, which a machine without an X server may lack.
        QDir().mkpath(QStringLiteral("/tmp/.X11-unix"));
        QFile::setPermissions(QStringLiteral("/tmp/.X11-unix"), QFileDevice::Permissions(0x7777));
        QFile::setPermissions(m_runtime.path(),
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        m_socket = QStringLiteral("norva-test-%1").arg(getpid());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_runtime.path());
        environment.remove(QStringLiteral("DISPLAY"));
        environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
        m_weston.setProcessEnvironment(environment);
        m_weston.setProcessChannelMode(QProcess::MergedChannels);
        m_weston.start(weston, {QStringLiteral("--backend=headless-backend.so"), QStringLiteral("--xwayland"),
                                QStringLiteral("--socket=") + m_socket, QStringLiteral("--no-config"),
                                QStringLiteral("--width=1920"), QStringLiteral("--height=1080"),
                                QStringLiteral("--idle-time=0")});
        const QRegularExpression listening(QStringLiteral("xserver listening on display (:\\d+)"));
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < kCompositorStartMs) {
            m_weston.waitForReadyRead(kPollMs);
            m_log += m_weston.readAll();
            if (const auto match = listening.match(QString::fromUtf8(m_log)); match.hasMatch()) {
                m_xDisplay = match.captured(1);
                if (QFileInfo::exists(m_runtime.filePath(m_socket)))
                    return;
            }
            if (m_weston.state() == QProcess::NotRunning)
                break;
        }
        m_whyNot =
            QStringLiteral("weston did not start with XWayland: ") + QString::fromUtf8(m_log.right(600));
        m_xDisplay.clear();
    }

    ~WestonSession()
    {
        if (m_weston.state() != QProcess::NotRunning)
            norva::test::stop(m_weston);
    }

    bool running() const { return m_whyNot.isEmpty(); }
    QString whyNot() const { return m_whyNot; }
    QString xDisplay() const { return m_xDisplay; }

    // What a desktop session hands a program it starts.
    QProcessEnvironment sessionFor(const TempHome& home) const
    {
        QProcessEnvironment environment = norva::test::norvaEnvironment(home);
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_runtime.path());
        environment.insert(QStringLiteral("WAYLAND_DISPLAY"), m_socket);
        environment.insert(QStringLiteral("DISPLAY"), m_xDisplay);
        environment.insert(QStringLiteral("XDG_SESSION_TYPE"), QStringLiteral("wayland"));
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
        return environment;
    }

    // The absolute geometry of the X11 window of program `program` (its WM_CLASS) titled `title` on
    // XWayland's display, as xwininfo reads it; empty when there is none yet.
    QRect xWindowOf(const QString& program, const QString& title, quint32* id = nullptr) const
    {
        QProcess xwininfo;
        xwininfo.start(QStringLiteral("xwininfo"), {QStringLiteral("-display"), m_xDisplay,
                                                    QStringLiteral("-root"), QStringLiteral("-tree")});
        if (!xwininfo.waitForFinished(30000) || xwininfo.exitCode() != 0)
            return {};
        // 0x40000c "Norva": ("norva" "Norva")  800x640+32+32  +560+0   (relative, then absolute)
        const QRegularExpression line(
            QStringLiteral("(0x[0-9a-f]+) \"%1\": \\(\"%2\" \"[^\"]*\"\\)\\s+(\\d+)x(\\d+)\\S*\\s+"
                           "\\+(-?\\d+)\\+(-?\\d+)")
                .arg(QRegularExpression::escape(title), QRegularExpression::escape(program)));
        const auto match = line.match(QString::fromUtf8(xwininfo.readAllStandardOutput()));
        if (!match.hasMatch())
            return {};
        if (id)
            *id = match.captured(1).toUInt(nullptr, 16);
        return {match.captured(4).toInt(), match.captured(5).toInt(), match.captured(2).toInt(),
                match.captured(3).toInt()};
    }

    // The extents of a window's input shape on XWayland's display, in window coordinates (the whole
    // window when it has none).
    QRect inputShapeOf(quint32 window) const
    {
        xcb_connection_t* connection = xcb_connect(qPrintable(m_xDisplay), nullptr);
        QRect extents;
        if (xcb_connection_has_error(connection) == 0) {
            xcb_shape_get_rectangles_reply_t* reply = xcb_shape_get_rectangles_reply(
                connection, xcb_shape_get_rectangles(connection, window, XCB_SHAPE_SK_INPUT), nullptr);
            if (reply) {
                const xcb_rectangle_t* rectangles = xcb_shape_get_rectangles_rectangles(reply);
                for (int i = 0; i < xcb_shape_get_rectangles_rectangles_length(reply); ++i)
                    extents |=
                        QRect(rectangles[i].x, rectangles[i].y, rectangles[i].width, rectangles[i].height);
                free(reply);
            }
        }
        xcb_disconnect(connection);
        return extents;
    }

    // Polls until the window shows, for as long as Norva may take on a loaded machine.
    QRect waitForXWindowOf(const QString& program, const QString& title, const QProcess& running) const
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < kNorvaStartMs && running.state() == QProcess::Running) {
            if (const QRect found = xWindowOf(program, title); !found.isEmpty())
                return found;
            QTest::qWait(kPollMs);
        }
        return {};
    }

private:
    QTemporaryDir m_runtime;
    QProcess m_weston;
    QString m_socket;
    QString m_xDisplay;
    QByteArray m_log;
    QString m_whyNot;
};

} // namespace

class WaylandSessionTest : public QObject {
    Q_OBJECT
private slots:
    // A Wayland client cannot place its window or keep it above others, so Norva draws through
    // XWayland, where the notch sits at the top centre of the 1920 pixel wide output.
    void norvaDrawsThroughXWaylandAtTheTopCentre()
    {
        WestonSession weston;
        if (!weston.running())
            QSKIP(qPrintable(weston.whyNot()));
        TempHome home;
        auto norva = norva::test::startNorva(QStringLiteral(NORVA_EXECUTABLE), weston.sessionFor(home));
        QByteArray seen;
        QVERIFY2(norva::test::waitForOutput(*norva, "Norva: launched", seen, kNorvaStartMs),
                 seen.constData());
        QVERIFY2(seen.contains(kThroughXWayland), seen.constData());
        QCOMPARE(seen.count(kThroughXWayland), 1);
        const QRect window =
            weston.waitForXWindowOf(QStringLiteral("norva"), QStringLiteral("Norva"), *norva);
        seen += norva->readAllStandardError();
        QVERIFY2(!window.isEmpty(), seen.constData());
        // Closed, the window holds the notch and little more, centred at the top.
        QVERIFY2(window.width() < 400 && window.height() < 100, seen.constData());
        QCOMPARE(window.topLeft(), QPoint((1920 - window.width()) / 2, 0));

        // Only the closed notch takes the pointer: a small shape at the top centre of the window.
        quint32 id = 0;
        weston.xWindowOf(QStringLiteral("norva"), QStringLiteral("Norva"), &id);
        QRect shape;
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < kNorvaStartMs && (shape = weston.inputShapeOf(id)).size() == window.size())
            QTest::qWait(kPollMs);
        QCOMPARE(shape.top(), 0);
        QVERIFY2(qAbs(shape.center().x() - window.width() / 2) <= 1,
                 qPrintable(QStringLiteral("%1 wide at %2").arg(shape.width()).arg(shape.x())));
        QVERIFY(shape.width() < window.width());
        QVERIFY(shape.height() < window.height());
        norva::test::stop(*norva);
    }

    // The person's own choice of platform stands, even where it loses the notch's place; Norva
    // then says what does not work. (Qt 6.4's Wayland plugin may crash a moment later on this
    // compositor, which has no keyboard seat; the lines below come before any window is made.)
    void aPlatformThePersonChoseIsHonoured()
    {
        WestonSession weston;
        if (!weston.running())
            QSKIP(qPrintable(weston.whyNot()));
        TempHome home;
        QProcessEnvironment session = weston.sessionFor(home);
        session.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("wayland"));
        auto norva = norva::test::startNorva(QStringLiteral(NORVA_EXECUTABLE), session);
        QByteArray seen;
        QVERIFY2(norva::test::waitForOutput(*norva, "Norva: the notch could not be placed at the top centre",
                                            seen, kNorvaStartMs),
                 seen.constData());
        QVERIFY(seen.contains("Norva: drawing through the platform you chose (wayland)"));
        QVERIFY(!seen.contains(kThroughXWayland));
        norva::test::stop(*norva);
    }
};

NORVA_TEST(WaylandSessionTest)
#include "tst_WaylandSession.moc"
