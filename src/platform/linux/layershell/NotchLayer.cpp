#include "platform/linux/layershell/NotchLayer.h"

#include <LayerShellQt/Window>

#include <QMargins>
#include <QWindow>

namespace norva::NotchLayer {

void placeOnTopLayer(QWindow& window)
{
    LayerShellQt::Window* layer = LayerShellQt::Window::get(&window);
    layer->setScope(QStringLiteral("norva-notch"));
    // The top layer is above ordinary windows; compositors keep full-screen windows above it, which
    // is what the notch's full-screen guard asks for where Wayland hides full-screen windows.
    layer->setLayer(LayerShellQt::Window::LayerTop);
    // Anchored to the top edge alone, the surface is centred along it.
    layer->setAnchors(LayerShellQt::Window::AnchorTop);
    layer->setMargins(QMargins());
    // Like the camera notch, it sits at the very top, over a panel's reserved strip, reserving none.
    layer->setExclusiveZone(-1);
    layer->setKeyboardInteractivity(LayerShellQt::Window::KeyboardInteractivityOnDemand);
}

} // namespace norva::NotchLayer
