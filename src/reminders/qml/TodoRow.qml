pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Window
import Norva.Core

// One to-do: a ring to tick it, its title (double-click to rename), its due in the colour of its
// state, and on hover the lists to move it to and a cross to put it in the trash. Titles come from
// the person's files and are drawn as plain text.
Rectangle {
    id: row
    property var todo
    property bool showList: false
    property var lists: []
    signal toggled()
    signal renamed(string title)
    signal trashed()
    signal moved(string listId)

    readonly property bool keyed: Theme.holdsKeyboard(row, Window.activeFocusItem)

    function edit() {
        if (!TodosPageModel.readOnly) { editor.text = row.todo.title; editor.visible = true; editor.forceActiveFocus() }
    }

    height: 30
    radius: Theme.radiusSmall
    color: hover.hovered ? Theme.cardHover : Theme.card

    Rectangle {
        id: ring
        anchors { left: parent.left; leftMargin: 8; verticalCenter: parent.verticalCenter }
        width: 16; height: 16; radius: 8
        color: row.todo.completed ? Theme.good : "transparent"
        border.width: row.todo.completed ? 0 : 1.5
        border.color: row.todo.listColor.length > 0 ? row.todo.listColor : Theme.textDim
        PlainText {
            anchors.centerIn: parent
            visible: row.todo.completed
            text: "✓"
            color: Theme.notch
            font.pixelSize: 11
            font.bold: true
        }
        TapHandler { onTapped: row.toggled() }
        FocusRing { onActivated: row.toggled() }
    }

    PlainText {
        id: title
        visible: !editor.visible
        anchors { left: ring.right; leftMargin: 9; right: due.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
        text: row.todo.title + (row.todo.recurring ? "  ↻" : "")
        color: row.todo.completed ? Theme.textFaint : Theme.text
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontBody
        font.strikeout: row.todo.completed
        elide: Text.ElideRight
        TapHandler {
            onDoubleTapped: row.edit()
        }
        FocusRing { onActivated: row.edit() }
    }
    TextInput {
        id: editor
        visible: false
        anchors { left: ring.right; leftMargin: 9; right: due.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
        color: Theme.text
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontBody
        clip: true
        onAccepted: { row.renamed(text); visible = false }
        onActiveFocusChanged: if (!activeFocus) visible = false
        Keys.onEscapePressed: visible = false
    }

    Row {
        id: due
        anchors { right: actions.visible ? actions.left : parent.right; rightMargin: 10; verticalCenter: parent.verticalCenter }
        spacing: 6
        PlainText {
            text: row.todo.dueText
            color: row.todo.dueState === "overdue" && !row.todo.completed ? Theme.bad
                 : row.todo.dueState === "today" ? Theme.warn : Theme.textDim
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
        }
        PlainText {
            visible: row.showList
            text: row.todo.listName
            color: Theme.textFaint
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
        }
    }

    Row {
        id: actions
        anchors { right: parent.right; rightMargin: 8; verticalCenter: parent.verticalCenter }
        spacing: 5
        // Hidden by opacity, not visibility, so Tab still reaches them and shows them.
        visible: !TodosPageModel.readOnly
        opacity: hover.hovered || row.keyed ? 1 : 0
        Repeater {
            model: row.lists
            delegate: Rectangle {
                id: listChoice
                required property var modelData
                visible: modelData.id !== row.todo.listId
                width: 10; height: 10; radius: 5
                anchors.verticalCenter: parent.verticalCenter
                color: modelData.color.length > 0 ? modelData.color : Theme.textFaint
                TapHandler { onTapped: row.moved(listChoice.modelData.id) }
                FocusRing { onActivated: row.moved(listChoice.modelData.id) }
            }
        }
        PlainText {
            text: "×"
            color: Theme.textDim
            font.pixelSize: Theme.fontTitle
            TapHandler { onTapped: row.trashed() }
            FocusRing { onActivated: row.trashed() }
        }
    }
    HoverHandler { id: hover }
}
