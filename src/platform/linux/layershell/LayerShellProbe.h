#pragma once

namespace norva::LayerShellProbe {

// Whether the compositor on WAYLAND_DISPLAY offers wlr-layer-shell (zwlr_layer_shell_v1). Asked
// before Qt starts, on a connection of its own that is closed again at once.
bool compositorOffersLayer();

} // namespace norva::LayerShellProbe
