#include "notch/SessionPlatform.h"

#include <xcb/xcb.h>

#ifdef NORVA_LAYER_SHELL
#include "platform/linux/layershell/LayerShellProbe.h"
#endif

namespace norva::Platform {
namespace {

// Whether an X server answers on DISPLAY. On a Wayland desktop that is XWayland, which compositors
// such as weston and GNOME start on the first connection, so this may take a moment.
bool xDisplayAnswers()
{
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return false;
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool answers = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return answers;
}

bool compositorOffersNotchLayer()
{
#ifdef NORVA_LAYER_SHELL
    return LayerShellProbe::compositorOffersLayer();
#else
    return false; // built without LayerShellQt (Qt older than 6.5)
#endif
}

} // namespace

SessionEnvironment readSessionEnvironment(const QStringList& arguments)
{
    SessionEnvironment session;
    session.waylandDisplay = qEnvironmentVariable("WAYLAND_DISPLAY");
    session.chosenPlatform =
        WindowSystemChoice::chosenPlatform(arguments, qEnvironmentVariable("QT_QPA_PLATFORM"));
    if (session.waylandDisplay.isEmpty())
        return session; // nothing for Norva to choose
    // A person who chose Wayland still gets the layer where the compositor offers it.
    if (session.chosenPlatform.isEmpty() || session.chosenPlatform.startsWith(QLatin1String("wayland")))
        session.notchLayerOffered = compositorOffersNotchLayer();
    if (session.chosenPlatform.isEmpty() && !session.notchLayerOffered)
        session.xDisplayAnswers = xDisplayAnswers();
    return session;
}

} // namespace norva::Platform
