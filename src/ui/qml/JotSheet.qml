import QtQuick

// The jot sheet over the open panel: one text kept as a new note or added to a note or category,
// then a receipt with an undo for a moment.
Rectangle {
    id: sheet
    readonly property var jot: jotSheet
    visible: jot.showing
    opacity: jot.stage === "closing" ? 0 : 1
    Behavior on opacity { NumberAnimation { duration: settings.reducedMotion ? 0 : Theme.normal } }
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
            TextEdit {
                id: words
                anchors { fill: parent; margins: 10 }
                wrapMode: TextEdit.Wrap
                color: Theme.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
                Keys.onReturnPressed: event => {
                    if (event.modifiers & Qt.ControlModifier) sheet.keep(); else event.accepted = false
                }
                Keys.onEscapePressed: sheet.jot.close()
            }
        }
        Row {
            anchors.right: parent.right
            spacing: 6
            TextButton { quiet: true; label: "Cancel"; onClicked: sheet.jot.close() }
            TextButton { label: "Keep  (Ctrl+Enter)"; onClicked: sheet.keep() }
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
