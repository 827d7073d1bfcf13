pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// The jot sheet over the open panel: one text kept as a new note, added to a note or category, or
// filed as a to-do with its due read as it is typed, then a receipt with an undo for a moment.
Rectangle {
    id: sheet
    readonly property JotPresenter jot: JotPresenter
    visible: jot.showing
    opacity: jot.stage === "closing" ? 0 : 1
    Behavior on opacity { NumberAnimation { duration: SettingsStore.reducedMotion ? 0 : Theme.normal } }
    color: Theme.panel
    radius: Theme.radius
    onVisibleChanged: if (visible && jot.stage === "writing") { words.text = ""; words.forceActiveFocus() }

    Column {
        anchors { fill: parent; margins: Theme.padding }
        spacing: Theme.spacing
        visible: sheet.jot.stage === "writing"

        Row {
            spacing: 6
            PlainText {
                anchors.verticalCenter: parent.verticalCenter
                text: "Jot"
                color: Theme.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontTitle
            }
            Item { width: Theme.spacing; height: 1 }
            TextButton {
                label: "New note"
                quiet: sheet.jot.mode !== "new"
                onClicked: sheet.jot.mode = "new"
            }
            TextButton {
                label: "Add to a note"
                quiet: sheet.jot.mode !== "append"
                onClicked: sheet.jot.mode = "append"
            }
            TextButton {
                visible: sheet.jot.todoChoice
                label: "File as a to-do"
                quiet: sheet.jot.mode !== "todo"
                onClicked: sheet.jot.mode = "todo"
            }
        }
        InputField {
            id: target
            width: parent.width
            visible: sheet.jot.mode === "append"
            hint: "Which note or category (" + (sheet.jot.targets.length > 0 ? sheet.jot.targets[0] : "General") + ")"
        }
        Rectangle {
            width: parent.width
            height: parent.height - y - 34
            radius: Theme.radiusSmall
            color: Theme.card
            FocusOutline { shown: words.activeFocus; outlineRadius: parent.radius }
            TextEdit {
                id: words
                anchors { fill: parent; margins: 10 }
                wrapMode: TextEdit.Wrap
                color: Theme.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
                activeFocusOnTab: true
                onTextChanged: sheet.jot.draft = text
                Keys.onReturnPressed: event => {
                    // A to-do is one line, so Enter files it; a note takes Ctrl+Enter.
                    if (sheet.jot.mode === "todo" || (event.modifiers & Qt.ControlModifier)) sheet.keep()
                    else event.accepted = false
                }
                Keys.onEscapePressed: sheet.jot.close()

                // The due words the to-do's reading took out of its title.
                Repeater {
                    model: sheet.jot.readSpans
                    delegate: Rectangle {
                        required property var modelData
                        readonly property rect from: words.positionToRectangle(modelData.start)
                        readonly property rect to: words.positionToRectangle(modelData.start + modelData.length)
                        x: from.x; y: from.y + from.height - 1
                        width: to.x - from.x; height: 2
                        radius: 1
                        color: Theme.accent
                    }
                }
            }
            PlainText {
                anchors { left: parent.left; top: parent.top; margins: 10 }
                visible: words.text.length === 0 && sheet.jot.mode === "todo"
                text: "A to-do, like \u201Ccall mum tomorrow at 5pm\u201D"
                color: Theme.textFaint
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
            }
        }
        Row {
            anchors.right: parent.right
            spacing: 6
            PlainText {
                anchors.verticalCenter: parent.verticalCenter
                visible: sheet.jot.message.length > 0
                width: Math.min(implicitWidth, sheet.width - 260)
                elide: Text.ElideRight
                text: sheet.jot.message
                color: Theme.warn
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontSmall
            }
            TextButton {
                visible: sheet.jot.reading.length > 0
                label: "Due " + sheet.jot.reading + "  \u00D7"
                onClicked: sheet.jot.dropReading()
            }
            TextButton { quiet: true; label: "Cancel"; onClicked: sheet.jot.close() }
            TextButton {
                label: sheet.jot.mode === "todo" ? "File  (Enter)" : "Keep  (Ctrl+Enter)"
                onClicked: sheet.keep()
            }
        }
    }

    Row {
        anchors.centerIn: parent
        spacing: Theme.spacing
        visible: sheet.jot.stage === "saved" || sheet.jot.stage === "closing"
        PlainText {
            anchors.verticalCenter: parent.verticalCenter
            text: sheet.jot.receiptGlyph + "  " + sheet.jot.receiptMessage
            color: sheet.jot.receiptGlyph === "!" ? Theme.warn : Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontBody
        }
        TextButton {
            visible: sheet.jot.receiptUndoable
            label: "Undo"
            onClicked: sheet.jot.undo()
        }
    }

    function keep() {
        sheet.jot.submit(words.text, target.text.length > 0 ? target.text : (sheet.jot.targets.length > 0 ? sheet.jot.targets[0] : ""))
    }
}
