pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// The clipboard history: search, the clips (pinned first), copy again with a click, pin, and clear
// all but the pinned ones. The words come from the page's view model.
Item {
    id: page
    readonly property ClipboardPageModel model: ClipboardPageModel
    implicitHeight: top.height + Theme.spacing + list.contentHeight + 6 + footer.height

    Row {
        id: top
        anchors { top: parent.top; left: parent.left; right: parent.right }
        spacing: Theme.spacing
        Rectangle {
            width: top.width - clear.width - Theme.spacing
            height: 28
            radius: height / 2
            color: Theme.card
            FocusOutline { shown: search.activeFocus; outlineRadius: parent.radius }
            TextInput {
                id: search
                activeFocusOnTab: true
                anchors { fill: parent; leftMargin: 12; rightMargin: 12 }
                verticalAlignment: TextInput.AlignVCenter
                color: Theme.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
                clip: true
                // The page is made anew at each opening while the model keeps its query: the box
                // starts from that query, so what it shows is what filters the list.
                text: page.model.query
                onTextChanged: page.model.query = text
            }
            PlainText {
                anchors { left: parent.left; leftMargin: 12; verticalCenter: parent.verticalCenter }
                visible: search.text.length === 0
                text: "Search"
                color: Theme.textFaint
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
            }
        }
        TextButton {
            id: clear
            anchors.verticalCenter: parent.verticalCenter
            label: "Clear all but pinned"
            onClicked: page.model.clearAllButPinned()
        }
    }

    ListView {
        id: list
        anchors { top: top.bottom; topMargin: Theme.spacing; left: parent.left; right: parent.right; bottom: footer.top; bottomMargin: 6 }
        clip: true
        spacing: 4
        model: page.model.rows
        visible: page.model.historyOn || count > 0
        delegate: ClipboardRow {
            required property var row
            width: ListView.view.width
            entry: row
            onCopyRequested: page.model.copy(row.id)
            onPinToggled: page.model.setPinned(row.id, !row.pinned)
            onRemoveRequested: page.model.remove(row.id)
        }
    }

    ScrollCue { view: list }

    PlainText {
        anchors.centerIn: list
        width: list.width - 40
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.WordWrap
        visible: page.model.emptyText.length > 0
        text: page.model.emptyText
        color: Theme.textDim
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontBody
    }

    PlainText {
        id: footer
        anchors { bottom: parent.bottom; horizontalCenter: parent.horizontalCenter }
        text: page.model.notice.length > 0 ? page.model.notice : page.model.footer
        color: page.model.notice.length > 0 ? Theme.text : Theme.textFaint
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall
    }
    Timer {
        running: page.model.notice.length > 0
        interval: 3000
        onTriggered: page.model.dismissNotice()
    }
}
