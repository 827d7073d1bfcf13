import QtQuick

// The picture of a weather condition, by the glyph word the weather service hands over
// ("clearDay", "clearNight", "cloud", "fog", "rain", "snow", "thunder"): one character of the
// theme's font, tinted by what it shows.
PlainText {
    id: glyph
    property string name
    property real size: 16

    readonly property var characters: ({
        "clearDay": "\u2600", "clearNight": "\u263E", "cloud": "\u2601", "fog": "\u2261",
        "rain": "\u2602", "snow": "\u2744", "thunder": "\u26A1"
    })
    readonly property var tints: ({
        "clearDay": Theme.warn, "clearNight": Theme.accent, "thunder": Theme.warn, "rain": Theme.accent
    })

    text: characters[name] !== undefined ? characters[name] : ""
    color: tints[name] !== undefined ? tints[name] : Theme.text
    font.family: Theme.fontFamily
    font.pixelSize: size
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter
}
