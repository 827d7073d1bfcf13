#pragma once

#include "hotkeys/HotKeyGrab.h"

#include <QAbstractNativeEventFilter>
#include <QHash>

#include <xcb/xcb.h>

namespace norva {

// Hot keys on X11: a passive grab of the key on the root window (XGrabKey), made over Qt's own
// connection, so the presses arrive in Qt's event stream and are picked out by a native event
// filter. The X server refuses a grab that another client already holds, which is how a key taken
// by another program is found. Caps Lock and Num Lock are grabbed in every state, since X11 counts
// them as modifiers.
class X11HotKeyGrab final : public HotKeyGrab, private QAbstractNativeEventFilter {
public:
    // `connection` null uses Qt's; without an X server every grab answers notOffered.
    explicit X11HotKeyGrab(xcb_connection_t* connection = nullptr, QObject* parent = nullptr);
    ~X11HotKeyGrab() override;

    Result grab(const QString& name, QKeyCombination key) override;
    void release(const QString& name) override;

private:
    struct Grabbed {
        xcb_keycode_t keycode = 0;
        uint16_t modifiers = 0;
    };

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    xcb_keycode_t keycodeFor(xcb_keysym_t keysym) const;
    void ungrab(const Grabbed& grabbed);

    xcb_connection_t* m_connection = nullptr;
    xcb_window_t m_root = XCB_WINDOW_NONE;
    QHash<QString, Grabbed> m_grabs;
};

} // namespace norva
