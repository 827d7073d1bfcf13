#include "TestMain.h"

#include "platform/linux/ActiveWindow.h"

#include <QGuiApplication>
#include <QWindow>
#include <QtTest>

#include <cstring>
#include <xcb/xcb.h>

using namespace norva;

namespace {

xcb_connection_t* connection()
{
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_atom_t atom(const char* name)
{
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
        connection(), xcb_intern_atom(connection(), 0, uint16_t(strlen(name)), name), nullptr);
    const xcb_atom_t found = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    free(reply);
    return found;
}

xcb_window_t root()
{
    return xcb_setup_roots_iterator(xcb_get_setup(connection())).data->root;
}

// What a window manager does: names the active window on the root and keeps each window's state.
void setActive(xcb_window_t window)
{
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, root(), atom("_NET_ACTIVE_WINDOW"),
                        XCB_ATOM_WINDOW, 32, 1, &window);
}
void setStates(xcb_window_t window, const QList<xcb_atom_t>& states)
{
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window, atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 32,
                        uint32_t(states.size()), states.constData());
    xcb_flush(connection());
}

} // namespace

class ActiveWindowTest : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            QSKIP("needs an X server (run under xvfb-run)");
    }
    void cleanup()
    {
        if (connection()) {
            xcb_delete_property(connection(), root(), atom("_NET_ACTIVE_WINDOW"));
            xcb_flush(connection());
        }
    }

    void fullscreenFrontWindow_data()
    {
        QTest::addColumn<bool>("active");
        QTest::addColumn<QStringList>("states");
        QTest::addColumn<QRect>("display");
        QTest::addColumn<bool>("expected");
        const QRect here(0, 0, 1920, 1080);
        const QStringList full{"_NET_WM_STATE_FULLSCREEN"};
        QTest::newRow("full-screen on this display") << true << full << here << true;
        QTest::newRow("full-screen among other states")
            << true << QStringList{"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_FULLSCREEN"} << here << true;
        QTest::newRow("maximised is not full-screen")
            << true << QStringList{"_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ"} << here
            << false;
        QTest::newRow("no state at all") << true << QStringList() << here << false;
        QTest::newRow("full-screen on another display")
            << true << full << QRect(1920, 0, 1920, 1080) << false;
        QTest::newRow("no window manager names a window") << false << full << here << false;
    }
    void fullscreenFrontWindow()
    {
        QFETCH(bool, active);
        QFETCH(QStringList, states);
        QFETCH(QRect, display);
        QWindow window;
        window.setGeometry(100, 100, 400, 300);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QList<xcb_atom_t> atoms;
        for (const QString& state : states)
            atoms << atom(state.toLatin1().constData());
        setStates(xcb_window_t(window.winId()), atoms);
        if (active)
            setActive(xcb_window_t(window.winId()));
        xcb_flush(connection());
        QTEST(ActiveWindow::isFullscreenOn(display), "expected");
    }
};

NORVA_TEST(ActiveWindowTest)
#include "tst_ActiveWindow.moc"
