#include "NorvaProcess.h"
#include "PrivateXServer.h"
#include "TempHome.h"
#include "TestMain.h"

#include <QProcess>
#include <QStandardPaths>
#include <QtTest>

#include <cstring>
#include <xcb/xcb.h>

using norva::test::TempHome;
using norva::test::waitForOutput;

namespace {

// A display of the test's own with a window manager (openbox), so whatever the case does with the
// keyboard touches no other test's display.
class DesktopWithWindowManager : public norva::test::PrivateXServer {
public:
    DesktopWithWindowManager()
    {
        if (display().isEmpty())
            return;
        m_windowManager.setProcessEnvironment(m_environment);
        m_windowManager.start(QStringLiteral("openbox"), {QStringLiteral("--sm-disable")});
        m_windowManager.waitForStarted();
    }
    ~DesktopWithWindowManager()
    {
        m_windowManager.terminate();
        m_windowManager.waitForFinished(5000);
    }

    // What xdotool answers, trimmed; empty when it fails.
    QString xdotool(const QStringList& arguments) const
    {
        QProcess tool;
        tool.setProcessEnvironment(m_environment);
        tool.start(QStringLiteral("xdotool"), arguments);
        tool.waitForFinished(10000);
        return QString::fromUtf8(tool.readAllStandardOutput()).trimmed();
    }
    QString activeWindowName() const
    {
        return xdotool({QStringLiteral("getactivewindow"), QStringLiteral("getwindowname")});
    }
    // Asks the window manager (once it runs) to activate the window of this name; the active one's name.
    QString activate(const QString& name) const
    {
        xdotool({QStringLiteral("search"), QStringLiteral("--name"), name, QStringLiteral("windowactivate")});
        return activeWindowName();
    }

private:
    QProcessEnvironment m_environment = onThisDisplay(QProcessEnvironment::systemEnvironment());
    QProcess m_windowManager;
};

// The window the person was typing in: another X client with a window called "Editor", which also
// holds Ctrl+Alt+J for itself, as a desktop's own shortcut daemon might.
class OtherProgram {
public:
    explicit OtherProgram(const QString& display)
        : m_connection(xcb_connect(display.toLocal8Bit().constData(), nullptr))
    {
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        m_window = xcb_generate_id(m_connection);
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, screen->root, 100, 200, 400, 300, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        const char name[] = "Editor";
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING,
                            8, strlen(name), name);
        xcb_map_window(m_connection, m_window);
        xcb_flush(m_connection);
    }
    ~OtherProgram() { xcb_disconnect(m_connection); }

    void holdCtrlAltJ()
    {
        // J is keycode 44 on the X server's default keymap.
        xcb_grab_key(m_connection, 1, xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root,
                     XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1, 44, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        free(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    }

private:
    xcb_connection_t* m_connection;
    xcb_window_t m_window;
};

} // namespace

class KeyboardHandbackTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        for (const char* tool : {"Xvfb", "openbox", "xdotool"}) {
            if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty())
                QSKIP(qPrintable(QStringLiteral("needs %1").arg(QString::fromLatin1(tool))));
        }
    }

    // The hot key opens the notch over the window the person types in; Escape closes it and that
    // window has the keyboard again. A hot key held by another program is told, not ignored.
    void escapeGivesTheKeyboardBackToTheWindowThatHadIt()
    {
        DesktopWithWindowManager desktop;
        QVERIFY(!desktop.display().isEmpty());
        OtherProgram editor(desktop.display());
        editor.holdCtrlAltJ();
        QTRY_COMPARE_WITH_TIMEOUT(desktop.activate(QStringLiteral("Editor")), QStringLiteral("Editor"),
                                  10000);

        TempHome home;
        auto norva = norva::test::startNorva(QStringLiteral(NORVA_EXECUTABLE),
                                             desktop.onThisDisplay(norva::test::norvaEnvironment(home)));
        QByteArray seen;
        QVERIFY2(waitForOutput(*norva,
                               "Norva keys: could not take Ctrl+Alt+J for the jot sheet (another program "
                               "holds it); norva --jot still opens it",
                               seen),
                 seen.constData());
        QCOMPARE(desktop.activeWindowName(), QStringLiteral("Editor"));

        for (int round = 0; round < 2; ++round) { // twice: the holder is noted at each opening
            desktop.xdotool({QStringLiteral("key"), QStringLiteral("ctrl+alt+n")});
            QTRY_COMPARE_WITH_TIMEOUT(desktop.activeWindowName(), QStringLiteral("Norva"), 10000);
            desktop.xdotool({QStringLiteral("key"), QStringLiteral("Escape")});
            QTRY_COMPARE_WITH_TIMEOUT(desktop.activeWindowName(), QStringLiteral("Editor"), 10000);
        }
        norva::test::stop(*norva);
    }
};

NORVA_TEST(KeyboardHandbackTest)
#include "tst_KeyboardHandback.moc"
