import QtQuick
import Norva.Core

// The shown activity's mark in the left ear: its glyph inside a ring that fills with its progress,
// or its picture where it has one (a new screenshot's thumbnail).
Item {
    id: mark
    property string glyph
    property string glyphStyle: "character"
    property string picture: ""
    property color tint: Theme.accent
    property real progress: -1 // below 0: no ring
    property real size: 22
    // Whether a big jump of the progress eases; off while activities take turns, so each turn is
    // one repaint.
    property bool eases: true

    readonly property bool pictured: picture !== "" && thumbnail.status === Image.Ready
    implicitWidth: pictured ? thumbnail.paintedWidth : size
    implicitHeight: size

    // A wide screenshot keeps its shape, up to twice as wide as the ear is high.
    Image {
        id: thumbnail
        anchors.centerIn: parent
        width: mark.size * 2
        height: mark.size
        visible: mark.pictured
        source: mark.picture
        fillMode: Image.PreserveAspectFit
        smooth: true
    }
    Rectangle {
        anchors.centerIn: parent
        visible: mark.pictured
        width: thumbnail.paintedWidth
        height: thumbnail.paintedHeight
        color: "transparent"
        radius: 3
        border.width: 1
        border.color: Theme.separator
    }

    Canvas {
        id: ring
        anchors.fill: parent
        visible: mark.progress >= 0 && !mark.pictured
        antialiasing: true
        property real shownProgress: 0
        // Big jumps ease; the small steps of a running timer or download are drawn at once, so an
        // activity that ticks every second costs one frame a second, not an animation. The ring is
        // repainted only when its arc would move by a visible amount (a quarter of a point along
        // its edge): a 25-minute round moves it every few seconds, not at every tick.
        readonly property real steps: Math.max(1, Math.ceil(4 * Math.PI * width))
        readonly property real wanted: Math.round(Math.max(0, Math.min(1, mark.progress)) * steps) / steps
        onWantedChanged: {
            if (mark.eases && Math.abs(wanted - shownProgress) > 0.1 && !SettingsStore.reducedMotion) {
                ease.to = wanted
                ease.restart()
            } else {
                ease.stop()
                shownProgress = wanted
            }
        }
        Component.onCompleted: shownProgress = wanted
        NumberAnimation { id: ease; target: ring; property: "shownProgress"; duration: Theme.normal; easing.type: Easing.OutCubic }
        onShownProgressChanged: requestPaint()
        onVisibleChanged: requestPaint()
        onPaint: {
            const ctx = getContext("2d")
            ctx.reset()
            const line = 2.2
            const r = width / 2 - line
            ctx.lineWidth = line
            ctx.lineCap = "round"
            ctx.strokeStyle = Qt.rgba(mark.tint.r, mark.tint.g, mark.tint.b, 0.22)
            ctx.beginPath()
            ctx.arc(width / 2, height / 2, r, 0, 2 * Math.PI)
            ctx.stroke()
            if (shownProgress > 0) {
                ctx.strokeStyle = mark.tint
                ctx.beginPath()
                ctx.arc(width / 2, height / 2, r, -Math.PI / 2, -Math.PI / 2 + 2 * Math.PI * shownProgress)
                ctx.stroke()
            }
        }
    }
    onTintChanged: ring.requestPaint()

    ActivityGlyph {
        anchors.centerIn: parent
        visible: !mark.pictured
        glyph: mark.glyph
        style: mark.glyphStyle
        color: style === "bars" ? Theme.text : mark.tint
        level: mark.progress
        size: mark.progress >= 0 && style !== "bars" ? mark.size * 0.5 : mark.size * 0.62
    }
}
