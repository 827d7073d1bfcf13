#include "platform/linux/layershell/LayerShellProbe.h"

#include <wayland-client.h>

#include <cstring>

namespace norva::LayerShellProbe {
namespace {

void globalAnnounced(void* offered, wl_registry*, uint32_t, const char* interface, uint32_t)
{
    if (std::strcmp(interface, "zwlr_layer_shell_v1") == 0)
        *static_cast<bool*>(offered) = true;
}

void globalWithdrawn(void*, wl_registry*, uint32_t) {}

const wl_registry_listener kListener{globalAnnounced, globalWithdrawn};

} // namespace

bool compositorOffersLayer()
{
    wl_display* display = wl_display_connect(nullptr);
    if (!display)
        return false;
    bool offered = false;
    wl_registry* registry = wl_display_get_registry(display);
    wl_registry_add_listener(registry, &kListener, &offered);
    // One round trip: the compositor has announced every global by the time it answers.
    wl_display_roundtrip(display);
    wl_registry_destroy(registry);
    wl_display_disconnect(display);
    return offered;
}

} // namespace norva::LayerShellProbe
