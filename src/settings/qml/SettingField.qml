import QtQuick

// A line of text, such as a folder, written when the person leaves the field or presses Enter.
Rectangle {
    id: field
    required property var colors
    property string text
    property string hint
    signal picked(string value)

    width: 240; height: 30
    radius: Theme.radiusSmall
    color: colors.field
    border.color: input.activeFocus ? colors.accent : colors.line

    TextInput {
        id: input
        anchors { fill: parent; leftMargin: 8; rightMargin: 8 }
        verticalAlignment: TextInput.AlignVCenter
        text: field.text
        color: field.colors.text
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontBody
        clip: true
        selectByMouse: true
        onEditingFinished: if (text !== field.text) field.picked(text)
    }
    PlainText {
        anchors { left: parent.left; leftMargin: 8; verticalCenter: parent.verticalCenter }
        visible: input.text.length === 0 && !input.activeFocus
        text: field.hint
        color: field.colors.textDim
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall
    }
}
