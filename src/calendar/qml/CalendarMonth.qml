pragma ComponentBehavior: Bound

import QtQuick

// The month view: the days of one month in weeks, with a dot in its calendar's colour for each
// event of a day (up to three); today is ringed. Clicking a day shows it in the list beside.
Item {
    id: month
    required property var model
    signal dayPicked(string isoDate)

    Row {
        id: heading
        anchors { top: parent.top; left: parent.left; right: parent.right }
        height: 24
        PlainText {
            width: parent.width - back.width - forward.width
            anchors.verticalCenter: parent.verticalCenter
            text: month.model.monthTitle
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontBody
            font.weight: Font.DemiBold
        }
        TextButton { id: back; quiet: true; label: "‹"; onClicked: month.model.previousMonth() }
        TextButton { id: forward; quiet: true; label: "›"; onClicked: month.model.nextMonth() }
    }

    Grid {
        id: grid
        anchors { top: heading.bottom; topMargin: 6; left: parent.left }
        columns: 7
        readonly property real cell: month.width / 7
        Repeater {
            model: month.model.monthCells
            delegate: Item {
                id: dayCell
                required property var row
                width: grid.cell
                height: 30
                Rectangle {
                    anchors { horizontalCenter: parent.horizontalCenter; top: parent.top }
                    width: 22; height: 22; radius: 11
                    color: "transparent"
                    border.color: Theme.accent
                    border.width: dayCell.row.isToday ? 1 : 0
                }
                PlainText {
                    anchors { horizontalCenter: parent.horizontalCenter; top: parent.top; topMargin: 4 }
                    text: dayCell.row.day
                    color: dayCell.row.inMonth ? Theme.text : Theme.textFaint
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.fontSmall
                }
                Row {
                    anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; bottomMargin: 2 }
                    spacing: 2
                    Repeater {
                        model: dayCell.row.dots
                        delegate: Rectangle {
                            required property var modelData
                            width: 4; height: 4; radius: 2
                            color: modelData.length > 0 ? modelData : Theme.accent
                        }
                    }
                }
                TapHandler { onTapped: month.dayPicked(dayCell.row.date) }
                FocusRing { onActivated: month.dayPicked(dayCell.row.date) }
            }
        }
    }
}
