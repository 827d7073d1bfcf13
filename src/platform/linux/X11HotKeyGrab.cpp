#include "platform/linux/X11HotKeyGrab.h"

#include "hotkeys/HotKeyPlatform.h"
#include "platform/linux/X11Properties.h"

#include <QCoreApplication>

#include <array>
#include <cstdlib>
#include <memory>

namespace norva {
namespace {

// The X server's answer to a grab that another client holds.
constexpr uint8_t kBadAccess = 10;
// Num Lock sits on Mod2 on every keyboard layout X11 ships.
constexpr uint16_t kNumLock = XCB_MOD_MASK_2;
constexpr uint16_t kModifierKeys = 0xff;
constexpr std::array<uint16_t, 4> kLockStates{0, XCB_MOD_MASK_LOCK, kNumLock, XCB_MOD_MASK_LOCK | kNumLock};

// X11's name (keysym) of the key Qt calls `key`; 0 for a key Norva does not bind.
xcb_keysym_t keysymFor(Qt::Key key)
{
    if (key >= Qt::Key_A && key <= Qt::Key_Z)
        return xcb_keysym_t('a' + (key - Qt::Key_A)); // the unshifted letter names the key
    if (key >= Qt::Key_F1 && key <= Qt::Key_F35)
        return xcb_keysym_t(0xffbe + (key - Qt::Key_F1));
    switch (key) {
    case Qt::Key_Return:
        return 0xff0d;
    case Qt::Key_Escape:
        return 0xff1b;
    case Qt::Key_Tab:
        return 0xff09;
    case Qt::Key_Backspace:
        return 0xff08;
    case Qt::Key_Insert:
        return 0xff63;
    case Qt::Key_Delete:
        return 0xffff;
    case Qt::Key_Home:
        return 0xff50;
    case Qt::Key_End:
        return 0xff57;
    case Qt::Key_PageUp:
        return 0xff55;
    case Qt::Key_PageDown:
        return 0xff56;
    case Qt::Key_Left:
        return 0xff51;
    case Qt::Key_Up:
        return 0xff52;
    case Qt::Key_Right:
        return 0xff53;
    case Qt::Key_Down:
        return 0xff54;
    case Qt::Key_Print:
        return 0xff61;
    case Qt::Key_Pause:
        return 0xff13;
    default:
        break;
    }
    // Digits, the space and punctuation: Qt's code is the Latin-1 character, and so is the keysym.
    if (key >= Qt::Key_Space && key <= Qt::Key_AsciiTilde)
        return xcb_keysym_t(key);
    return 0;
}

uint16_t modifiersFor(Qt::KeyboardModifiers modifiers)
{
    uint16_t mask = 0;
    if (modifiers & Qt::ShiftModifier)
        mask |= XCB_MOD_MASK_SHIFT;
    if (modifiers & Qt::ControlModifier)
        mask |= XCB_MOD_MASK_CONTROL;
    if (modifiers & Qt::AltModifier)
        mask |= XCB_MOD_MASK_1;
    if (modifiers & Qt::MetaModifier)
        mask |= XCB_MOD_MASK_4; // the Super (Windows) key
    return mask;
}

} // namespace

X11HotKeyGrab::X11HotKeyGrab(xcb_connection_t* connection, QObject* parent)
    : HotKeyGrab(parent), m_connection(connection ? connection : x11::qtConnection())
{
    if (!m_connection)
        return;
    if (const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data)
        m_root = screen->root;
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11HotKeyGrab::~X11HotKeyGrab()
{
    if (!m_connection)
        return;
    QCoreApplication::instance()->removeNativeEventFilter(this);
    for (const Grabbed& grabbed : std::as_const(m_grabs))
        ungrab(grabbed);
    xcb_flush(m_connection);
}

xcb_keycode_t X11HotKeyGrab::keycodeFor(xcb_keysym_t keysym) const
{
    const xcb_setup_t* setup = xcb_get_setup(m_connection);
    const uint8_t count = setup->max_keycode - setup->min_keycode + 1;
    std::unique_ptr<xcb_get_keyboard_mapping_reply_t, decltype(&free)> mapping(
        xcb_get_keyboard_mapping_reply(
            m_connection, xcb_get_keyboard_mapping(m_connection, setup->min_keycode, count), nullptr),
        &free);
    if (!mapping)
        return 0;
    const xcb_keysym_t* keysyms = xcb_get_keyboard_mapping_keysyms(mapping.get());
    const int perKeycode = mapping->keysyms_per_keycode;
    for (int index = 0; index < count * perKeycode; ++index) {
        if (keysyms[index] == keysym)
            return xcb_keycode_t(setup->min_keycode + index / perKeycode);
    }
    return 0;
}

HotKeyGrab::Result X11HotKeyGrab::grab(const QString& name, QKeyCombination key)
{
    release(name);
    if (!m_connection || m_root == XCB_WINDOW_NONE)
        return Result::notOffered;
    const xcb_keysym_t keysym = keysymFor(key.key());
    const xcb_keycode_t keycode = keysym ? keycodeFor(keysym) : 0;
    if (!keycode)
        return Result::notAKey;
    const Grabbed wanted{keycode, modifiersFor(key.keyboardModifiers())};
    bool taken = false;
    for (const uint16_t lock : kLockStates) {
        const xcb_void_cookie_t cookie =
            xcb_grab_key_checked(m_connection, 1, m_root, wanted.modifiers | lock, keycode,
                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        if (xcb_generic_error_t* error = xcb_request_check(m_connection, cookie)) {
            taken = taken || error->error_code == kBadAccess;
            free(error);
        }
    }
    if (taken) {
        ungrab(wanted); // the lock states that were granted go back too
        xcb_flush(m_connection);
        return Result::taken;
    }
    m_grabs.insert(name, wanted);
    return Result::grabbed;
}

void X11HotKeyGrab::release(const QString& name)
{
    const auto found = m_grabs.constFind(name);
    if (found == m_grabs.constEnd())
        return;
    ungrab(*found);
    m_grabs.erase(found);
    xcb_flush(m_connection);
}

void X11HotKeyGrab::ungrab(const Grabbed& grabbed)
{
    for (const uint16_t lock : kLockStates)
        xcb_ungrab_key(m_connection, grabbed.keycode, m_root, grabbed.modifiers | lock);
}

bool X11HotKeyGrab::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & ~0x80) != XCB_KEY_PRESS)
        return false;
    const auto* press = static_cast<const xcb_key_press_event_t*>(message);
    if (press->event != m_root)
        return false;
    // The state holds the pressed mouse buttons too; only the modifier keys count.
    const uint16_t modifiers = press->state & kModifierKeys & ~(XCB_MOD_MASK_LOCK | kNumLock);
    for (auto it = m_grabs.cbegin(); it != m_grabs.cend(); ++it) {
        if (it->keycode == press->detail && it->modifiers == modifiers) {
            emit pressed(it.key());
            return true;
        }
    }
    return false;
}

std::unique_ptr<HotKeyGrab> Platform::makeHotKeyGrab()
{
    return std::make_unique<X11HotKeyGrab>();
}

} // namespace norva
