#pragma once

#include <QtGlobal>

namespace norva {

// What the terminal jump-back needs from the desktop: bring an application forward by its process
// id, and give back its minimised windows. One implementation per platform;
// Platform::makeWindowActivator() (JumpPlatform.h) picks it.
class WindowActivator {
public:
    virtual ~WindowActivator() = default;

    virtual bool isRunning(qint64 pid) const = 0;
    // Brings the application with this process forward. False only when the process is not running;
    // a desktop that will not raise its window still counts the process as found.
    virtual bool activate(qint64 pid) = 0;
    // Restores the application's minimised windows, leaving the others as they are.
    virtual void unminimize(qint64 pid) = 0;
};

} // namespace norva
