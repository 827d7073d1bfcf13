pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// The quick notes: the list with each note's day and first words, a filter, the chosen note's
// editor with its category, and the Markdown mirror's switch, folder and status.
Item {
    id: page
    readonly property NotesDesk desk: NotesDesk
    readonly property NotesMirror mirror: NotesMirror
    implicitHeight: trouble.height + listTop.height + 6 + noteList.contentHeight + Theme.spacing + mirrorRow.height

    PlainText {
        id: trouble
        anchors { top: parent.top; left: parent.left; right: parent.right }
        visible: text.length > 0
        height: visible ? implicitHeight + 6 : 0
        text: page.desk.failureText
        color: Theme.warn
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall
        wrapMode: Text.Wrap
    }

    Item {
        id: listSide
        anchors { top: trouble.bottom; left: parent.left; bottom: mirrorRow.top; bottomMargin: Theme.spacing }
        width: Math.min(260, parent.width * 0.38)

        Row {
            id: listTop
            width: parent.width
            spacing: 6
            InputField {
                width: parent.width - newButton.width - newNote.width - 12
                hint: "Filter"
                onEdited: text => page.desk.filter = text
            }
            TextButton {
                id: newButton
                label: "Jot"
                onClicked: App.openJot()
            }
            TextButton {
                id: newNote
                label: "New"
                onClicked: { page.desk.newNote(""); editor.forceActiveFocus() }
            }
        }
        ListView {
            id: noteList
            anchors { top: listTop.bottom; topMargin: 6; left: parent.left; right: parent.right; bottom: parent.bottom }
            clip: true
            spacing: 2
            model: page.desk.rows
            delegate: Rectangle {
                id: noteRow
                required property var row
                width: ListView.view.width
                height: 44
                radius: Theme.radiusSmall
                color: row.id === page.desk.selectedId ? Theme.cardHover : (rowHover.hovered ? Theme.card : "transparent")
                Column {
                    anchors { left: parent.left; right: parent.right; leftMargin: 8; rightMargin: 8; verticalCenter: parent.verticalCenter }
                    Row {
                        width: parent.width
                        spacing: 6
                        PlainText {
                            width: parent.width - day.width - 6
                            text: noteRow.row.name
                            color: noteRow.row.isPending ? Theme.textDim : Theme.text
                            font.family: Theme.fontFamily
                            font.pixelSize: Theme.fontBody
                            elide: Text.ElideRight
                        }
                        PlainText {
                            id: day
                            text: noteRow.row.day
                            color: Theme.textFaint
                            font.family: Theme.fontFamily
                            font.pixelSize: Theme.fontSmall
                        }
                    }
                    PlainText {
                        width: parent.width
                        text: (noteRow.row.category.length > 0 ? noteRow.row.category + " · " : "") + noteRow.row.preview
                        color: Theme.textFaint
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.fontSmall
                        elide: Text.ElideRight
                    }
                }
                HoverHandler { id: rowHover }
                TapHandler { onTapped: page.desk.select(noteRow.row.id) }
                FocusRing { onActivated: page.desk.select(noteRow.row.id) }
            }
        }
        ScrollCue { view: noteList }
        PlainText {
            anchors.centerIn: parent
            visible: page.desk.rows.count === 0
            text: page.desk.emptyText
            width: parent.width - 20
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            color: Theme.textDim
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontBody
        }
    }

    Rectangle {
        id: editorSide
        anchors { top: trouble.bottom; left: listSide.right; leftMargin: Theme.spacing; right: parent.right
                  bottom: mirrorRow.top; bottomMargin: Theme.spacing }
        radius: Theme.radius
        color: Theme.card
        visible: page.desk.selectedId.length > 0

        Row {
            id: editorTop
            anchors { top: parent.top; left: parent.left; right: parent.right; margins: 8 }
            spacing: 6
            InputField {
                id: categoryField
                width: 160
                hint: "Category"
                text: page.desk.editorCategory
                onAccepted: page.desk.setCategory(text)
                onEdited: text => page.desk.setCategory(text)
            }
            TextButton {
                quiet: true
                label: "Delete"
                onClicked: page.desk.removeSelected()
            }
        }
        FocusOutline { anchors.margins: 4; shown: editor.activeFocus; outlineRadius: Theme.radiusSmall }
        Flickable {
            anchors { top: editorTop.bottom; left: parent.left; right: parent.right; bottom: parent.bottom; margins: 10 }
            clip: true
            contentHeight: editor.implicitHeight
            TextEdit {
                id: editor
                activeFocusOnTab: true
                width: parent.width
                wrapMode: TextEdit.Wrap
                selectByMouse: true
                color: Theme.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
                text: page.desk.editorText
                onTextChanged: if (activeFocus) page.desk.edit(text)
            }
        }
    }

    Row {
        id: mirrorRow
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: 30
        spacing: Theme.spacing
        ToggleRow {
            width: 230
            label: "Mirror to Markdown"
            checked: page.mirror.enabled
            onToggled: on => page.mirror.enabled = on
        }
        InputField {
            width: 220
            anchors.verticalCenter: parent.verticalCenter
            hint: "Folder, such as ~/Notes"
            text: page.mirror.folder
            onAccepted: page.mirror.folder = text
        }
        PlainText {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - 230 - 220 - 2 * Theme.spacing
            text: page.mirror.enabled ? page.mirror.status : ""
            color: Theme.textFaint
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
            elide: Text.ElideRight
        }
    }
}
