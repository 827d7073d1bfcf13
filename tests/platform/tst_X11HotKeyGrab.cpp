#include "TestMain.h"

#include "platform/linux/X11HotKeyGrab.h"

#include <QGuiApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QtTest>

#include <cstdlib>
#include <xcb/xcb.h>

using namespace norva;

namespace {

// Another program on the same display that holds a key, as a desktop's own shortcut daemon would.
class OtherProgram {
public:
    OtherProgram() : m_connection(xcb_connect(nullptr, nullptr))
    {
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    }
    ~OtherProgram() { xcb_disconnect(m_connection); }

    bool holdCtrlAlt(uint8_t keysym)
    {
        const xcb_setup_t* setup = xcb_get_setup(m_connection);
        const uint8_t count = setup->max_keycode - setup->min_keycode + 1;
        xcb_get_keyboard_mapping_reply_t* mapping = xcb_get_keyboard_mapping_reply(
            m_connection, xcb_get_keyboard_mapping(m_connection, setup->min_keycode, count), nullptr);
        const xcb_keysym_t* keysyms = xcb_get_keyboard_mapping_keysyms(mapping);
        xcb_keycode_t keycode = 0;
        for (int index = 0; index < count * mapping->keysyms_per_keycode && !keycode; ++index) {
            if (keysyms[index] == keysym)
                keycode = xcb_keycode_t(setup->min_keycode + index / mapping->keysyms_per_keycode);
        }
        free(mapping);
        xcb_generic_error_t* error = xcb_request_check(
            m_connection, xcb_grab_key_checked(m_connection, 1, m_root, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1,
                                               keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        free(error);
        return keycode && !error;
    }

private:
    xcb_connection_t* m_connection;
    xcb_window_t m_root;
};

const QKeyCombination kCtrlAltK(Qt::ControlModifier | Qt::AltModifier, Qt::Key_K);

} // namespace

class X11HotKeyGrabTest : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            QSKIP("needs an X server (run under xvfb-run)");
    }

    void aKeyHeldByAnotherProgramIsTakenUntilItLetsGo()
    {
        X11HotKeyGrab grab;
        {
            OtherProgram other;
            QVERIFY(other.holdCtrlAlt('k'));
            QCOMPARE(grab.grab(QStringLiteral("jot"), kCtrlAltK), HotKeyGrab::Result::taken);
        } // the other program quits, and its grab goes once the X server has seen it leave
        QTRY_COMPARE_WITH_TIMEOUT(grab.grab(QStringLiteral("jot"), kCtrlAltK), HotKeyGrab::Result::grabbed,
                                  5000);
        OtherProgram later;
        QVERIFY(!later.holdCtrlAlt('k'));
    }

    void aPressedKeyIsHeardWithCapsLockOnOrOff_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::newRow("plain") << "ctrl+alt+j";
        QTest::newRow("with Caps Lock") << "Caps_Lock ctrl+alt+j Caps_Lock";
    }
    void aPressedKeyIsHeardWithCapsLockOnOrOff()
    {
        QFETCH(QString, keys);
        X11HotKeyGrab grab;
        QCOMPARE(grab.grab(QStringLiteral("jot"),
                           QKeyCombination(Qt::ControlModifier | Qt::AltModifier, Qt::Key_J)),
                 HotKeyGrab::Result::grabbed);
        QSignalSpy pressed(&grab, &HotKeyGrab::pressed);
        QCOMPARE(QProcess::execute(QStringLiteral("xdotool"), QStringList{"key"} + keys.split(' ')), 0);
        QVERIFY(pressed.wait(5000));
        QCOMPARE(pressed.value(0).value(0).toString(), QStringLiteral("jot"));
    }

    void aKeyThisKeyboardLacksIsSaid()
    {
        X11HotKeyGrab grab;
        QCOMPARE(grab.grab(QStringLiteral("open"), QKeyCombination(Qt::ControlModifier, Qt::Key_Launch0)),
                 HotKeyGrab::Result::notAKey);
    }
};

NORVA_TEST(X11HotKeyGrabTest)
#include "tst_X11HotKeyGrab.moc"
