import QtQuick

// The settings window's colours: the desktop's palette where it has an opinion (the accent), and
// Norva's own light or dark set as the desktop prefers. Text reads at 4.5:1 or better on both.
QtObject {
    property bool dark: false
    readonly property SystemPalette palette: SystemPalette { colorGroup: SystemPalette.Active }

    readonly property color window: dark ? "#1e1f24" : "#f6f6f8"
    readonly property color sidebar: dark ? "#17181c" : "#ebebef"
    readonly property color field: dark ? "#2a2b31" : "#ffffff"
    readonly property color hover: dark ? "#2c2d34" : "#dcdce2"
    readonly property color line: dark ? "#34353d" : "#d6d6dc"
    readonly property color text: dark ? "#f2f2f5" : "#1d1d22"
    readonly property color textDim: dark ? "#a8a8b3" : "#5b5b66"
    // The desktop's selection colour, as its own windows mark a chosen item.
    readonly property color accent: palette.highlight
    readonly property color onAccent: palette.highlightedText
    readonly property color good: dark ? "#4cd07d" : "#1d7a3e"
    readonly property color warn: dark ? "#ffb547" : "#8a5200"
}
