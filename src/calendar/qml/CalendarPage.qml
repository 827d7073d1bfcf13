pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// The calendar page: a month view on the left, the next two weeks by day on the right, Join where
// a meeting has a link, and the add and edit form over both. The words come from the page's model.
Item {
    id: page
    readonly property CalendarPageModel model: CalendarPageModel
    property var form: null // the fields of the meeting being added or edited

    CalendarMonth {
        id: month
        anchors { top: parent.top; left: parent.left; bottom: parent.bottom }
        width: 214
        model: page.model
        onDayPicked: (isoDate) => {
            const index = page.model.dayIndex(isoDate)
            if (index >= 0)
                days.positionViewAtIndex(index, ListView.Beginning)
        }
    }

    TextButton {
        id: add
        anchors { top: parent.top; right: parent.right }
        label: "Add meeting"
        onClicked: page.form = page.model.formFor("")
    }

    ListView {
        id: days
        anchors { top: add.bottom; topMargin: 6; left: month.right; leftMargin: Theme.padding
                  right: parent.right; bottom: notice.top; bottomMargin: 4 }
        clip: true
        spacing: 10
        model: page.model.days
        delegate: Column {
            id: dayGroup
            required property var row
            width: ListView.view.width
            spacing: 4
            PlainText {
                text: dayGroup.row.label
                color: Theme.textDim
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontSmall
                font.weight: Font.DemiBold
            }
            Repeater {
                model: dayGroup.row.events
                delegate: CalendarEventRow {
                    required property var modelData
                    width: days.width
                    entry: modelData
                    onJoinRequested: page.model.join(modelData.key)
                    onEditRequested: page.form = page.model.formFor(modelData.key)
                }
            }
        }
    }

    PlainText {
        anchors.centerIn: days
        width: days.width - 40
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.WordWrap
        visible: page.model.emptyText.length > 0
        text: page.model.emptyText
        color: Theme.textDim
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontBody
    }

    ScrollCue { view: days }

    PlainText {
        id: notice
        anchors { bottom: parent.bottom; right: parent.right }
        text: page.model.notice
        color: Theme.text
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall
    }
    Timer {
        running: page.model.notice.length > 0
        interval: 4000
        onTriggered: page.model.dismissNotice()
    }

    MeetingForm {
        anchors.fill: parent
        visible: page.form !== null
        fields: page.form
        model: page.model
        onClosed: page.form = null
    }
}
