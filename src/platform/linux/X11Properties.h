#pragma once

#include <QByteArray>
#include <QList>

#include <xcb/xcb.h>

// Reading what X11 windows say about themselves: atoms by name and window properties. Shared by the
// clipboard's front-program probe, the full-screen probe and the terminal activation.
namespace norva::x11 {

xcb_atom_t atom(xcb_connection_t* connection, const char* name);
// A property's raw bytes (WM_CLASS, _NET_WM_NAME); empty when it is missing.
QByteArray propertyBytes(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property, xcb_atom_t type);
// The 32-bit items of a property (windows, atoms, cardinals); empty when it is missing.
QList<quint32> propertyWords(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
                             xcb_atom_t type);

} // namespace norva::x11
