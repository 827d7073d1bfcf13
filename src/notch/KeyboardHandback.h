#pragma once

#include <QtGlobal>

#include <memory>

namespace norva {

// The open notch takes the keyboard so its pages can be used without the pointer; when it closes,
// the keyboard goes back to the window that had it, so the person types on where they were.
class KeyboardHandback {
public:
    virtual ~KeyboardHandback() = default;

    // Notes the window that has the keyboard now, just before the notch window `notchWindow` (its
    // native id) takes it. The notch's own window is never noted.
    virtual void noteHolder(quintptr notchWindow) = 0;
    // Gives the keyboard back to the noted window, if it is still there, and forgets it.
    virtual void giveBack() = 0;
};

namespace Platform {
std::unique_ptr<KeyboardHandback> makeKeyboardHandback();
} // namespace Platform

} // namespace norva
