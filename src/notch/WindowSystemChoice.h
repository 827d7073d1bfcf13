#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace norva {

// What the session tells Norva before Qt starts. The probes run only on a Wayland desktop, and only
// where the choice needs them; elsewhere they read false.
struct SessionEnvironment {
    QString waylandDisplay;         // WAYLAND_DISPLAY: a Wayland compositor runs this session
    QString chosenPlatform;         // the platform the person chose (empty: none), see chosenPlatform()
    bool xDisplayAnswers = false;   // an X server answers on DISPLAY (on a Wayland desktop, XWayland)
    bool notchLayerOffered = false; // the compositor offers wlr-layer-shell and Norva was built with it
};

// How the notch reaches the screen.
enum class DrawingPath {
    x11,           // an X11 desktop: placed at the top centre, above windows, the window probes work
    xwayland,      // a Wayland desktop through XWayland: placed and above, blind to Wayland programs
    notchLayer,    // a layer surface of the compositor: placed and above, blind to other programs
    waylandWindow, // an ordinary Wayland window: the compositor places it, the X11 parts do nothing
    other,         // a platform the person chose for reasons of their own (offscreen, vnc, ...)
};

// Chooses Qt's platform before QGuiApplication exists, and says what the path taken means. A
// Wayland client cannot place its own window or keep it above others, so on a Wayland desktop
// without a layer for the notch Norva draws through XWayland, where it can.
class WindowSystemChoice {
public:
    // The Qt platform to ask for (empty: leave Qt to choose) and the line that says why.
    struct Decision {
        QByteArray platform;
        QString logLine;
        bool operator==(const Decision&) const = default;
    };
    static Decision decide(const SessionEnvironment& session);

    // The platform the person chose: Qt's "-platform" argument, which Qt obeys first, else
    // QT_QPA_PLATFORM; empty when they chose none.
    static QString chosenPlatform(const QStringList& arguments, const QString& environmentValue);

    // The path actually taken once Qt runs on `platformName` ("xcb", "wayland", "offscreen", ...).
    static DrawingPath pathTaken(const QString& platformName, const SessionEnvironment& session,
                                 bool layerInUse);

    // What does not work on that path, in the person's words (empty where everything works).
    static QString limitsText(DrawingPath path);
    // The line logged once at start for a path that loses the notch's place (empty otherwise).
    static QString limitsLogLine(DrawingPath path);
};

} // namespace norva
