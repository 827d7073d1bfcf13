pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// The to-dos: the smart lists and the person's lists on the left, the chosen one's to-dos on the
// right with the add field above them. Rows can be dragged by their handle to set the manual order.
// Without a calendar folder the page says so and offers to make a first list there.
Item {
    id: page
    readonly property TodosPageModel model: TodosPageModel
    property bool trashShown: false
    implicitHeight: Math.max(side.implicitHeight, header.height + 6 + (trashShown ? 2 : add.height + 6)
                             + (trashShown ? trash.contentHeight : rows.contentHeight) + message.height)

    Column {
        id: side
        anchors { top: parent.top; left: parent.left; bottom: parent.bottom }
        width: 150
        spacing: 2
        visible: page.model.access === "granted"
        Repeater {
            model: page.model.views
            delegate: TodoListEntry {
                required property var row
                width: side.width
                view: row
                selected: row.id === page.model.currentView && !page.trashShown
                onChosen: { page.trashShown = false; page.model.currentView = row.id }
                onDeleteRequested: page.model.deleteList(row.id)
            }
        }
        Item { width: 1; height: 4 }
        Rectangle {
            width: side.width; height: 24
            radius: Theme.radiusSmall
            color: Theme.card
            visible: !page.model.readOnly
            FocusOutline { shown: newList.activeFocus; outlineRadius: parent.radius }
            TextInput {
                id: newList
                activeFocusOnTab: true
                anchors { fill: parent; leftMargin: 10; rightMargin: 10 }
                verticalAlignment: TextInput.AlignVCenter
                color: Theme.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontSmall + 1
                clip: true
                onAccepted: if (page.model.createList(text)) text = ""
            }
            PlainText {
                anchors { left: parent.left; leftMargin: 10; verticalCenter: parent.verticalCenter }
                visible: newList.text.length === 0
                text: "New list"
                color: Theme.textFaint
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontSmall + 1
            }
        }
    }

    Item {
        id: main
        anchors { top: parent.top; bottom: parent.bottom; right: parent.right
                  left: side.visible ? side.right : parent.left; leftMargin: side.visible ? Theme.spacing + 4 : 0 }
        visible: page.model.access === "granted"

        Row {
            id: header
            anchors { top: parent.top; left: parent.left; right: parent.right }
            spacing: 6
            PlainText {
                id: heading
                width: header.width - tools.width - 6
                anchors.verticalCenter: parent.verticalCenter
                text: page.trashShown ? "Trash" : page.model.currentTitle
                color: Theme.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontTitle
                font.bold: true
                elide: Text.ElideRight
            }
            Row {
                id: tools
                spacing: 4
                TextButton {
                    quiet: true
                    visible: !page.trashShown
                    label: page.model.showCompleted ? "Hide done" : "Show done"
                    onClicked: page.model.showCompleted = !page.model.showCompleted
                }
                TextButton {
                    quiet: true
                    visible: !page.trashShown && !page.model.readOnly
                    label: "Clear done"
                    onClicked: page.model.clearCompleted()
                }
                TextButton {
                    quiet: true
                    label: page.trashShown ? "Back" : "Trash"
                    onClicked: page.trashShown = !page.trashShown
                }
            }
        }

        TodoAddField {
            id: add
            anchors { top: header.bottom; topMargin: 6; left: parent.left; right: parent.right }
            visible: !page.trashShown
        }

        ListView {
            id: rows
            anchors { top: add.bottom; topMargin: 6; left: parent.left; right: parent.right; bottom: message.top }
            visible: !page.trashShown
            clip: true
            spacing: 3
            model: page.model.rows
            property int dragFrom: -1
            delegate: Item {
                id: slot
                required property var row
                required property int index
                width: ListView.view.width
                height: 30
                TodoRow {
                    id: todoRow
                    anchors { left: parent.left; right: parent.right; leftMargin: 12 }
                    todo: slot.row
                    showList: !page.model.currentIsList
                    lists: page.model.lists
                    onToggled: page.model.toggle(slot.row.id)
                    onRenamed: (title) => page.model.rename(slot.row.id, title)
                    onTrashed: page.model.trashTask(slot.row.id)
                    onMoved: (listId) => page.model.moveToList(slot.row.id, listId)
                }
                // The handle: drag a row up or down to put it in its place in the manual order.
                PlainText {
                    anchors { left: parent.left; verticalCenter: parent.verticalCenter }
                    text: "⋮"
                    color: Theme.textFaint
                    font.pixelSize: Theme.fontBody
                    DragHandler {
                        id: drag
                        target: todoRow
                        xAxis.enabled: false
                        onActiveChanged: {
                            if (active)
                                return
                            const to = Math.max(0, Math.min(rows.count - 1,
                                slot.index + Math.round(todoRow.y / (slot.height + rows.spacing))))
                            todoRow.y = 0
                            page.model.reorder(slot.index, to)
                        }
                    }
                }
            }
        }
        ScrollCue { view: rows }
        PlainText {
            anchors.centerIn: rows
            visible: !page.trashShown && rows.count === 0
            text: page.model.currentView === "today" ? "Nothing due today." : "No to-dos here."
            color: Theme.textFaint
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontBody
        }

        ListView {
            id: trash
            anchors { top: header.bottom; topMargin: 8; left: parent.left; right: parent.right; bottom: message.top }
            visible: page.trashShown
            clip: true
            spacing: 3
            model: page.model.trash
            delegate: Rectangle {
                id: trashedRow
                required property var row
                required property int index
                width: ListView.view.width
                height: 28
                radius: Theme.radiusSmall
                color: Theme.card
                PlainText {
                    anchors { left: parent.left; leftMargin: 10; right: restore.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
                    text: trashedRow.row.title + "   " + trashedRow.row.listName + (trashedRow.row.dueText.length > 0 ? " · " + trashedRow.row.dueText : "")
                    color: Theme.textDim
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.fontSmall + 1
                    elide: Text.ElideRight
                }
                TextButton {
                    id: restore
                    anchors { right: parent.right; rightMargin: 4; verticalCenter: parent.verticalCenter }
                    visible: !page.model.readOnly
                    label: "Restore"
                    onClicked: page.model.restore(trashedRow.index)
                }
            }
        }
        ScrollCue { view: trash }
        PlainText {
            anchors.centerIn: trash
            visible: page.trashShown && trash.count === 0
            text: "The trash is empty."
            color: Theme.textFaint
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontBody
        }

        PlainText {
            id: message
            anchors { bottom: parent.bottom; left: parent.left; right: parent.right }
            height: text.length > 0 ? implicitHeight + 4 : 0
            text: page.model.message
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
            wrapMode: Text.WordWrap
        }
    }

    Column {
        anchors.centerIn: parent
        width: parent.width - 80
        spacing: 12
        visible: page.model.access === "noFolder"
        PlainText {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WordWrap
            text: "Norva can't reach your to-dos: there is no calendar folder at " + page.model.folder + " yet."
            color: Theme.textDim
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontBody
        }
        TextButton {
            anchors.horizontalCenter: parent.horizontalCenter
            label: "Make a first list there"
            onClicked: page.model.createList("To-dos")
        }
    }
}
