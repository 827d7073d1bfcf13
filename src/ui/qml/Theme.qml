pragma Singleton
import QtQuick

// Colours, radii, spacings and durations of Norva's look, in one place.
QtObject {
    readonly property color notch: "#000000"
    readonly property color panel: "#0b0b0d"
    readonly property color card: "#17171b"
    readonly property color cardHover: "#202026"
    readonly property color separator: "#2a2a30"
    readonly property color text: "#f2f2f5"
    readonly property color textDim: "#a0a0aa"
    // The faintest text still reads at 4.5:1 on a hovered card, the lightest surface a text sits on.
    readonly property color textFaint: "#8a8a94"
    readonly property color accent: "#7aa2ff"
    readonly property color good: "#4cd07d"
    readonly property color warn: "#ffb547"
    readonly property color bad: "#ff5f57"
    // The ring around whatever has the keyboard: bright enough to find at a glance on every surface.
    readonly property color focus: "#a8c2ff"
    readonly property int focusWidth: 2
    readonly property int focusGap: 2

    // Whether the item with the keyboard (`focused`, the window's activeFocusItem) lies inside
    // `item`: a row shows the controls it otherwise shows on hover while the keyboard is in it.
    function holdsKeyboard(item, focused) {
        for (let inside = focused; inside; inside = inside.parent) {
            if (inside === item)
                return true
        }
        return false
    }

    readonly property string fontFamily: "DejaVu Sans"
    readonly property int fontSmall: 11
    readonly property int fontBody: 13
    readonly property int fontTitle: 15
    readonly property int fontLarge: 20

    readonly property int radiusSmall: 6
    readonly property int radius: 10
    readonly property int radiusLarge: 18
    readonly property int spacing: 8
    readonly property int padding: 14

    readonly property int fast: 120
    readonly property int normal: 220
    readonly property int slow: 360
    // How often the playing mark's bars jump to new heights. Each jump is one frame, and a frame
    // wakes three threads about eight times (the GUI thread's timer, update and sync, the render
    // thread's round trips to the X server, the X reader woken by their replies), so twice a second
    // is what a playing song costs a closed notch.
    readonly property int equaliserStep: 500
}
