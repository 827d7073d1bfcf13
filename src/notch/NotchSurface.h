#pragma once

#include <QRegion>
#include <QSize>

class QScreen;

namespace norva {

// What the notch's overlay window needs from the window system, for one window: readied before it
// is first shown (frameless, kept above the others, and outside the window manager or on a layer
// where the desktop needs it), placed at the top centre of its display, and reached by the pointer
// only inside the notch's outline. Platform::makeNotchSurface (NotchWindowPlatform.h) picks the
// implementation for the way this desktop draws the notch.
class NotchSurface {
public:
    virtual ~NotchSurface() = default;

    virtual void prepare() = 0;
    // Puts the window, `size` large, at the top centre of `screen`.
    virtual void place(QScreen& screen, const QSize& size) = 0;
    // Lets the pointer reach the notch only inside `shape` (window coordinates); outside it, the
    // pointer reaches the windows below.
    virtual void setInputShape(const QRegion& shape) = 0;
};

} // namespace norva
