#include "notch/WindowSystemChoice.h"

namespace norva {

WindowSystemChoice::Decision WindowSystemChoice::decide(const SessionEnvironment& session)
{
    if (!session.chosenPlatform.isEmpty())
        return {{},
                QStringLiteral("Norva: drawing through the platform you chose (") + session.chosenPlatform +
                    QStringLiteral(")")};
    if (session.waylandDisplay.isEmpty())
        return {}; // an X11 desktop, or no desktop at all: Qt's own choice is the right one
    if (session.notchLayerOffered)
        return {QByteArrayLiteral("wayland"),
                QStringLiteral("Norva: drawing on this desktop's layer for the notch (wlr-layer-shell)")};
    if (session.xDisplayAnswers)
        return {
            QByteArrayLiteral("xcb"),
            QStringLiteral("Norva: drawing through XWayland (this desktop offers no layer for the notch)")};
    // Neither a layer nor XWayland: Qt draws an ordinary Wayland window, and pathTaken says so.
    return {};
}

QString WindowSystemChoice::chosenPlatform(const QStringList& arguments, const QString& environmentValue)
{
    // Qt reads "-platform name" and "--platform name" (not "=name"), the last one counting.
    QString chosen = environmentValue;
    for (qsizetype i = 1; i + 1 < arguments.size(); ++i) {
        if (arguments[i] == QLatin1String("-platform") || arguments[i] == QLatin1String("--platform"))
            chosen = arguments[++i];
    }
    return chosen;
}

DrawingPath WindowSystemChoice::pathTaken(const QString& platformName, const SessionEnvironment& session,
                                          bool layerInUse)
{
    if (platformName == QLatin1String("xcb"))
        return session.waylandDisplay.isEmpty() ? DrawingPath::x11 : DrawingPath::xwayland;
    if (platformName.startsWith(QLatin1String("wayland")))
        return layerInUse ? DrawingPath::notchLayer : DrawingPath::waylandWindow;
    return DrawingPath::other;
}

QString WindowSystemChoice::limitsText(DrawingPath path)
{
    switch (path) {
    case DrawingPath::xwayland:
        return QStringLiteral("Norva draws through XWayland on this desktop. Programs made for Wayland are "
                              "hidden from it: it cannot tell that one of them is full-screen or that a copy "
                              "came from it, nor bring its window forward.");
    case DrawingPath::notchLayer:
        return QStringLiteral("Wayland keeps other programs private: Norva cannot tell which program a copy "
                              "came from or that a window is full-screen, nor bring a terminal forward.");
    case DrawingPath::waylandWindow:
        return QStringLiteral(
            "Norva is an ordinary Wayland window here (this desktop offers no layer for the "
            "notch, and XWayland is not in use), so the notch cannot keep to the top centre "
            "or stay above other windows. Which program a copy came from, full-screen "
            "windows and bringing a terminal forward are out of reach too.");
    case DrawingPath::x11:
    case DrawingPath::other:
        break;
    }
    return {};
}

QString WindowSystemChoice::limitsLogLine(DrawingPath path)
{
    if (path != DrawingPath::waylandWindow)
        return {};
    return QStringLiteral(
        "Norva: the notch could not be placed at the top centre nor kept above other windows "
        "(an ordinary Wayland window: no layer for the notch, and XWayland not in use); the "
        "copy's program, full-screen detection and terminal jump-back do nothing");
}

} // namespace norva
