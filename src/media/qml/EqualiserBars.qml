pragma ComponentBehavior: Bound

import QtQuick

// The playing mark beside the notch: four bars that move while the song plays and stand low and
// still while it is paused (or while motion is reduced). They jump to new heights twice a second
// without easing in between, so a playing song costs two repaints a second rather than one every
// frame; a paused song costs none.
Item {
    id: bars
    property bool playing: false
    property bool reduced: false
    property color colour: Theme.text
    readonly property bool moving: playing && !reduced && visible
    readonly property int count: 4
    readonly property real barWidth: 3
    readonly property real gap: 2
    // Shares of the height: where the bars stand now while they move.
    property var levels: [0.55, 0.9, 0.7, 0.4]
    readonly property var stillPlaying: [0.55, 0.9, 0.7, 0.4]
    readonly property real stillPaused: 0.2

    implicitWidth: count * barWidth + (count - 1) * gap
    implicitHeight: 14

    Timer {
        interval: Theme.equaliserStep
        repeat: true
        running: bars.moving
        onTriggered: {
            const next = []
            for (let i = 0; i < bars.count; ++i)
                next.push(0.25 + Math.random() * 0.75)
            bars.levels = next
        }
    }

    Row {
        anchors.fill: parent
        spacing: bars.gap
        Repeater {
            model: bars.count
            Rectangle {
                required property int index
                anchors.bottom: parent.bottom
                width: bars.barWidth
                height: Math.max(2, Math.round(bars.height * (bars.moving ? bars.levels[index]
                                                              : bars.playing ? bars.stillPlaying[index]
                                                              : bars.stillPaused)))
                radius: bars.barWidth / 2
                color: bars.colour
                opacity: bars.playing ? 1 : 0.6
            }
        }
    }
}
