pragma ComponentBehavior: Bound

import QtQuick

// The small picture of an activity, as the closed face's model gives it: one glyph of the theme's
// font ("character", or "dot" for a small one), or a level drawn as bars that fill with it ("bars").
Item {
    id: glyph
    property string glyph
    property string style: "character"
    property bool muted: false
    property color color: Theme.text
    property real level: -1 // 0...1 for the level bars; below 0 for none
    property real size: 13

    implicitWidth: size
    implicitHeight: size

    readonly property bool bars: style === "bars"

    PlainText {
        visible: !glyph.bars
        anchors.centerIn: parent
        text: glyph.glyph !== "" ? glyph.glyph : "\u25CF"
        color: glyph.color
        font.family: Theme.fontFamily
        font.pixelSize: glyph.style === "dot" ? glyph.size * 0.55 : glyph.size
        font.weight: Font.DemiBold
    }

    // Four bars rising left to right; those under the level are lit. They exist only while drawn:
    // hidden bars would still ease their opacity whenever the level moves (a download's progress, a
    // turn of the rotation), and every eased step is a frame nobody sees.
    Row {
        visible: glyph.bars
        anchors.centerIn: parent
        spacing: Math.max(1, glyph.size * 0.12)
        Repeater {
            model: glyph.bars ? 4 : 0
            Rectangle {
                required property int index
                // Bottoms line up under the tallest bar: a Row places its items across only, and a
                // bound delegate has no parent yet while its bindings are first read.
                y: glyph.size * 0.95 - height
                width: Math.max(2, glyph.size * 0.14)
                height: glyph.size * (0.35 + index * 0.2)
                radius: width / 2
                color: glyph.color
                opacity: !glyph.muted && glyph.level > index / 4 ? 1 : 0.25
                Behavior on opacity { NumberAnimation { duration: Theme.fast } }
            }
        }
    }
}
