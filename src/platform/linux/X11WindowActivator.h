#pragma once

#include "agents/jump/WindowActivator.h"

#include <QList>
#include <QString>

namespace norva {

// Brings a terminal forward on an X11 desktop: finds the windows whose _NET_WM_PID is the
// terminal's process, maps the minimised ones, and asks the window manager for activation with a
// _NET_ACTIVE_WINDOW message. With no window manager it raises and focuses the window itself.
// On a desktop without an X server (pure Wayland) it does nothing and the jump still counts.
class X11WindowActivator final : public WindowActivator {
public:
    // `display` such as ":1"; empty uses $DISPLAY.
    explicit X11WindowActivator(QString display = {});

    bool isRunning(qint64 pid) const override;
    bool activate(qint64 pid) override;
    void unminimize(qint64 pid) override;

    // The top-level windows of the process, in the window manager's client order.
    QList<quint32> windowsOf(qint64 pid) const;

private:
    QString m_display;
};

} // namespace norva
