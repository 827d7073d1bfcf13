#include "notch/ConnectedDisplays.h"

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

} // namespace norva
