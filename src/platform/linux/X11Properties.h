#pragma once

#include <QByteArray>
#include <QList>

#include <xcb/xcb.h>

// Reading what X11 windows say about themselves: atoms by name and window properties. Shared by the
// clipboard's front-program probe, the full-screen probe, the terminal activation, the hot keys and
// the keyboard's hand-back.
namespace norva::x11 {

// Qt's own connection to the X server; null when Qt draws on something else (Wayland, offscreen).
xcb_connection_t* qtConnection();

xcb_atom_t atom(xcb_connection_t* connection, const char* name);
// A property's raw bytes (WM_CLASS, _NET_WM_NAME); empty when it is missing.
QByteArray propertyBytes(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
                         xcb_atom_t type);
// The 32-bit items of a property (windows, atoms, cardinals); empty when it is missing.
QList<quint32> propertyWords(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
                             xcb_atom_t type);

// Brings a window forward with the keyboard: asks the window manager (_NET_ACTIVE_WINDOW, as a
// pager does, which window managers obey at once), or without one raises and focuses it directly.
void activateWindow(xcb_connection_t* connection, xcb_window_t root, xcb_window_t window);
// Waits until the server has handled every request sent so far.
void sync(xcb_connection_t* connection);

} // namespace norva::x11
