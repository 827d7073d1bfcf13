#pragma once

class QWindow;

namespace norva::NotchLayer {

// Makes `window` a layer surface for the notch: the compositor's top layer, anchored to the top
// edge and centred, over any panel there, taking the keyboard only when the person clicks into the
// panel. Call before the window is first shown; the input region then follows QWindow::setMask.
void placeOnTopLayer(QWindow& window);

} // namespace norva::NotchLayer
