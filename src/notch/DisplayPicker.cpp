#include "notch/DisplayPicker.h"

namespace norva {

QList<DisplayInfo> pickDisplays(const DisplayChoice& choice, const QList<DisplayInfo>& connected)
{
    if (connected.isEmpty())
        return {};
    if (choice.kind == DisplayChoice::Kind::all)
        return connected;
    if (choice.kind == DisplayChoice::Kind::display) {
        for (const DisplayInfo& display : connected) {
            if (display.id == choice.displayId)
                return {display};
        }
    }
    for (const DisplayInfo& display : connected) {
        if (display.builtIn)
            return {display};
    }
    for (const DisplayInfo& display : connected) {
        if (display.primary)
            return {display};
    }
    return {connected.first()};
}

} // namespace norva
