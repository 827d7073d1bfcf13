#include "notch/ConnectedDisplays.h"

#include "app/Platform.h"
#include "notch/DisplayPicker.h"

#include <QGuiApplication>
#include <QScreen>

namespace norva {

QList<ConnectedDisplay> connectedDisplays()
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    const QScreen* primary = QGuiApplication::primaryScreen();
    QList<ScreenFacts> facts;
    for (const QScreen* screen : screens)
        facts.append(
            {screen->name(), screen->model(), screen->serialNumber(), screen->geometry(), screen == primary});
    const QList<DisplayInfo> described = describeDisplays(facts);
    QList<ConnectedDisplay> connected;
    for (qsizetype i = 0; i < screens.size(); ++i)
        connected.append({described[i], screens[i]});
    return connected;
}

QList<DisplayInfo> connectedDisplayInfos()
{
    QList<DisplayInfo> displays;
    for (const ConnectedDisplay& connected : connectedDisplays())
        displays.append(connected.display);
    return displays;
}

QList<ConnectedDisplay> notchDisplays(const DisplayChoice& choice)
{
    const QList<ConnectedDisplay> connected = connectedDisplays();
    QList<DisplayInfo> displays;
    for (const ConnectedDisplay& each : connected)
        displays.append(each.display);
    QList<ConnectedDisplay> chosen;
    // Found by the identifier, which tells apart screens that share a connector name.
    for (const DisplayInfo& display : pickDisplays(choice, displays))
        chosen.append(connected[displays.indexOf(display)]);
    return chosen;
}

bool fullscreenWindowOn(const QScreen& screen)
{
    // Qt keeps a scaled display's origin in the display server's pixels and scales its size.
    const QRect logical = screen.geometry();
    const QSize native = (QSizeF(logical.size()) * screen.devicePixelRatio()).toSize();
    return Platform::frontWindowIsFullscreenOn(QRect(logical.topLeft(), native));
}

} // namespace norva
