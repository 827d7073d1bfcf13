import QtQuick

// The small picture of an activity, by its symbol word from the closed face's model. Levels are
// drawn as bars that fill with the level; everything else is one glyph of the theme's font.
Item {
    id: glyph
    property string symbol
    property color color: Theme.text
    property real level: -1 // 0...1 for the level bars; below 0 for none
    property real size: 13

    implicitWidth: size
    implicitHeight: size

    readonly property bool bars: symbol === "volume" || symbol === "volumeMuted"
    readonly property var characters: ({
        "download": "\u2193", "downloadPaused": "\u2016", "downloadDone": "\u2713",
        "brightness": "\u2600", "charging": "\u26A1", "battery": "\u26A1",
        "agentPrompt": "?", "agentWorking": "\u2026", "agentEdit": "\u270E", "agentRun": "\u25B6",
        "agentProse": "\u2026", "meeting": "\u260E", "taskDue": "\u2691", "timer": "\u25CF", "timerPaused": "\u2016",
        "recording": "\u25CF", "minutesFiled": "\u2709", "listening": "\u266A", "claudeDone": "\u2713",
        "alert": "\u26A0", "announcement": "\u2605", "teamNotice": "\u2691", "reviewNudge": "\u2605",
        "shelf": "\u2630", "quota": "\u2139", "device": "\u2328", "screenshot": "\u2750"
    })

    PlainText {
        visible: !glyph.bars
        anchors.centerIn: parent
        text: glyph.characters[glyph.symbol] !== undefined ? glyph.characters[glyph.symbol] : "\u25CF"
        color: glyph.color
        font.family: Theme.fontFamily
        font.pixelSize: glyph.symbol === "timer" || glyph.symbol === "recording" ? glyph.size * 0.55 : glyph.size
        font.weight: Font.DemiBold
    }

    // Four bars rising left to right; those under the level are lit.
    Row {
        visible: glyph.bars
        anchors.centerIn: parent
        spacing: Math.max(1, glyph.size * 0.12)
        Repeater {
            model: 4
            Rectangle {
                required property int index
                anchors.bottom: parent.bottom
                width: Math.max(2, glyph.size * 0.14)
                height: glyph.size * (0.35 + index * 0.2)
                radius: width / 2
                color: glyph.color
                opacity: glyph.symbol !== "volumeMuted" && glyph.level > index / 4 ? 1 : 0.25
                Behavior on opacity { NumberAnimation { duration: Theme.fast } }
            }
        }
    }
}
