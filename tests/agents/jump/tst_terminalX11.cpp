#include "PrivateXServer.h"
#include "TestMain.h"

#include "platform/linux/X11WindowActivator.h"

#include <xcb/xcb.h>

#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>
#include <QtTest>

#include <cstdlib>
#include <cstring>
#include <memory>

using namespace norva;
using norva::test::PrivateXServer;

namespace {

// The test's own connection: it makes windows for a process and looks at the result.
class Client {
public:
    explicit Client(const QString& display)
    {
        const QByteArray name = display.toLocal8Bit();
        m_c = xcb_connect(name.constData(), nullptr);
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_c)).data->root;
    }
    ~Client() { xcb_disconnect(m_c); }

    xcb_atom_t atom(const char* name)
    {
        xcb_generic_error_t* error = nullptr;
        std::unique_ptr<xcb_intern_atom_reply_t, decltype(&free)> reply(
            xcb_intern_atom_reply(m_c, xcb_intern_atom(m_c, 0, uint16_t(strlen(name)), name), &error), &free);
        if (!reply) {
            qWarning() << "atom failed" << name << (error ? error->error_code : -1)
                       << xcb_connection_has_error(m_c);
            return XCB_ATOM_NONE;
        }
        return reply->atom;
    }
    xcb_window_t window(quint32 pid, bool mapped, bool iconic = false)
    {
        const xcb_window_t id = xcb_generate_id(m_c);
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_c)).data;
        xcb_create_window(m_c, XCB_COPY_FROM_PARENT, id, m_root, 10, 10, 200, 100, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        xcb_change_property(m_c, XCB_PROP_MODE_REPLACE, id, atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 32, 1,
                            &pid);
        if (iconic) {
            const quint32 state[2] = {3, XCB_WINDOW_NONE};
            xcb_change_property(m_c, XCB_PROP_MODE_REPLACE, id, atom("WM_STATE"), atom("WM_STATE"), 32, 2,
                                state);
        }
        if (mapped)
            xcb_map_window(m_c, id);
        sync();
        return id;
    }
    void sync() { free(xcb_get_input_focus_reply(m_c, xcb_get_input_focus(m_c), nullptr)); }
    xcb_window_t topmost()
    {
        std::unique_ptr<xcb_query_tree_reply_t, decltype(&free)> tree(
            xcb_query_tree_reply(m_c, xcb_query_tree(m_c, m_root), nullptr), &free);
        const int count = xcb_query_tree_children_length(tree.get());
        return count > 0 ? xcb_query_tree_children(tree.get())[count - 1] : XCB_WINDOW_NONE;
    }
    xcb_window_t focus()
    {
        std::unique_ptr<xcb_get_input_focus_reply_t, decltype(&free)> reply(
            xcb_get_input_focus_reply(m_c, xcb_get_input_focus(m_c), nullptr), &free);
        return reply->focus;
    }
    bool viewable(xcb_window_t window)
    {
        std::unique_ptr<xcb_get_window_attributes_reply_t, decltype(&free)> reply(
            xcb_get_window_attributes_reply(m_c, xcb_get_window_attributes(m_c, window), nullptr), &free);
        return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    }
    // Plays window manager: takes the root's redirect and announces itself the EWMH way.
    void becomeWindowManager()
    {
        const uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_c, m_root, XCB_CW_EVENT_MASK, &mask);
        const xcb_window_t check = window(0, false);
        xcb_change_property(m_c, XCB_PROP_MODE_REPLACE, m_root, atom("_NET_SUPPORTING_WM_CHECK"),
                            XCB_ATOM_WINDOW, 32, 1, &check);
        sync();
    }
    // The _NET_ACTIVE_WINDOW request that reached the window manager, if any.
    xcb_window_t activationRequest()
    {
        const xcb_atom_t active = atom("_NET_ACTIVE_WINDOW");
        QElapsedTimer waited;
        waited.start();
        while (waited.elapsed() < 3000) {
            while (xcb_generic_event_t* event = xcb_poll_for_event(m_c)) {
                xcb_window_t found = XCB_WINDOW_NONE;
                if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE) {
                    const auto* message = reinterpret_cast<xcb_client_message_event_t*>(event);
                    if (message->type == active && message->data.data32[0] == 2)
                        found = message->window;
                }
                free(event);
                if (found != XCB_WINDOW_NONE)
                    return found;
            }
            QTest::qWait(10);
        }
        return XCB_WINDOW_NONE;
    }

private:
    xcb_connection_t* m_c = nullptr;
    xcb_window_t m_root = XCB_WINDOW_NONE;
};

} // namespace

class TerminalX11Test : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        if (QStandardPaths::findExecutable("Xvfb").isEmpty())
            QSKIP("Xvfb is not installed");
        m_server = std::make_unique<PrivateXServer>(QStringList{QStringLiteral("800x600x24")});
        QVERIFY2(!m_server->display().isEmpty(), "the private X server did not start");
        m_terminal.start("sleep", {"60"});
        QVERIFY(m_terminal.waitForStarted());
    }
    void cleanupTestCase()
    {
        m_terminal.kill();
        m_terminal.waitForFinished();
        m_server.reset();
    }

    void activationRaisesAndFocusesTheTerminalsWindow()
    {
        Client client(m_server->display());
        const quint32 pid = quint32(m_terminal.processId());
        const xcb_window_t terminal = client.window(pid, true);
        const xcb_window_t other = client.window(pid + 100000, true);
        QCOMPARE(client.topmost(), other);
        X11WindowActivator activator(m_server->display());
        QCOMPARE(activator.windowsOf(pid), QList<quint32>{terminal});
        QVERIFY(activator.activate(pid));
        client.sync();
        QCOMPARE(client.topmost(), terminal);
        QCOMPARE(client.focus(), terminal);
    }

    void minimisedWindowIsRestored()
    {
        Client client(m_server->display());
        const quint32 pid = quint32(m_terminal.processId());
        const xcb_window_t hidden = client.window(pid, false, true);
        QVERIFY(!client.viewable(hidden));
        X11WindowActivator activator(m_server->display());
        activator.unminimize(pid);
        client.sync();
        QVERIFY(client.viewable(hidden));
    }

    void windowManagerIsAskedForActivation()
    {
        Client wm(m_server->display());
        wm.becomeWindowManager();
        Client app(m_server->display());
        QProcess second; // a terminal of its own, whose window is not mapped yet
        second.start("sleep", {"30"});
        QVERIFY(second.waitForStarted());
        const xcb_window_t terminal = app.window(quint32(second.processId()), false);
        X11WindowActivator activator(m_server->display());
        QVERIFY(activator.activate(second.processId()));
        QCOMPARE(wm.activationRequest(), terminal);
        second.kill();
        second.waitForFinished();
    }

    void goneProcessIsNotActivated()
    {
        QProcess done;
        done.start("true");
        QVERIFY(done.waitForFinished());
        const qint64 pid = done.processId();
        X11WindowActivator activator(m_server->display());
        QVERIFY(!activator.isRunning(0));
        QVERIFY(!activator.isRunning(1));
        QVERIFY(activator.isRunning(m_terminal.processId()));
        QVERIFY(!activator.activate(pid > 0 ? pid : 999999));
    }

    void noXServerStillCountsARunningProcess()
    {
        X11WindowActivator activator(":999");
        QVERIFY(activator.activate(m_terminal.processId()));
        QCOMPARE(activator.windowsOf(m_terminal.processId()), QList<quint32>{});
    }

private:
    std::unique_ptr<PrivateXServer> m_server;
    QProcess m_terminal;
};
NORVA_TEST(TerminalX11Test)
#include "tst_terminalX11.moc"
