pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// The add field: the due words read while the person types are underlined in the field, the
// reading ("Tomorrow 17:00") shows beside it, and a click on the reading keeps those words in the
// title instead. Enter files the to-do (one a line when several lines are pasted).
Rectangle {
    id: field
    property TodosPageModel model: TodosPageModel
    height: 30
    radius: height / 2
    color: Theme.card

    TextInput {
        id: input
        anchors { left: parent.left; leftMargin: 12; right: reading.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
        color: Theme.text
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontBody
        clip: true
        activeFocusOnTab: true
        readOnly: field.model.readOnly
        text: field.model.draft
        onTextEdited: field.model.draft = text
        onAccepted: field.model.add()

        Repeater {
            model: field.model.readSpans
            delegate: Rectangle {
                required property var modelData
                readonly property rect from: input.positionToRectangle(modelData.start)
                readonly property rect to: input.positionToRectangle(modelData.start + modelData.length)
                x: from.x; y: from.y + from.height - 1
                width: to.x - from.x; height: 2
                radius: 1
                color: Theme.accent
            }
        }
    }
    PlainText {
        anchors { left: input.left; verticalCenter: parent.verticalCenter }
        visible: input.text.length === 0
        text: field.model.readOnly ? "The demo's to-dos are for looking at" : "Add a to-do, like “call mum tomorrow at 5pm”"
        color: Theme.textFaint
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontBody
    }
    FocusOutline { shown: input.activeFocus; outlineRadius: field.radius }
    Rectangle {
        id: reading
        anchors { right: parent.right; rightMargin: 4; verticalCenter: parent.verticalCenter }
        visible: field.model.reading.length > 0
        width: visible ? readingText.implicitWidth + 22 : 0
        height: 22
        radius: height / 2
        color: readingHover.hovered ? Theme.cardHover : Theme.separator
        PlainText {
            id: readingText
            anchors { left: parent.left; leftMargin: 9; verticalCenter: parent.verticalCenter }
            text: field.model.reading
            color: Theme.accent
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
        }
        PlainText {
            anchors { right: parent.right; rightMargin: 6; verticalCenter: parent.verticalCenter }
            text: "×"
            color: Theme.textFaint
            font.pixelSize: Theme.fontSmall
        }
        HoverHandler { id: readingHover }
        TapHandler { onTapped: field.model.dropReading() }
    }
}
