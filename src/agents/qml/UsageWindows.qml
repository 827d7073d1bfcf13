pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// Claude Code's two usage allowances (5 hours and 7 days): how much is used and when each resets.
// Shown beside the agent sessions; hidden when there is no fresh reading.
Row {
    id: usageRow
    // The usage reader; the sessions page hands over the one Norva runs.
    property UsageMonitor monitor: UsageMonitor
    readonly property RowsModel windows: monitor ? monitor.windows : null
    // The person's switch: the windows show only while it is on.
    property bool shown: true

    visible: shown && windows !== null && windows.count > 0
    spacing: Theme.padding
    height: visible ? 40 : 0

    Repeater {
        model: usageRow.windows
        delegate: Column {
            id: window
            required property var row
            width: 150
            spacing: 3

            Row {
                width: parent.width
                PlainText {
                    width: parent.width - percentText.width
                    text: window.row.label
                    color: Theme.textDim
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.fontSmall
                }
                PlainText {
                    id: percentText
                    text: window.row.percent + "%"
                    color: Theme.text
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.fontSmall
                }
            }
            Rectangle {
                width: parent.width
                height: 5
                radius: 2.5
                color: Theme.separator
                Rectangle {
                    width: parent.width * window.row.percent / 100
                    height: parent.height
                    radius: parent.radius
                    color: window.row.level === "full" ? Theme.bad
                         : window.row.level === "high" ? Theme.warn : Theme.accent
                    Behavior on width { NumberAnimation { duration: Theme.normal; easing.type: Easing.OutCubic } }
                }
            }
            PlainText {
                text: window.row.resetText
                color: Theme.textFaint
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontSmall
            }
        }
    }
}
