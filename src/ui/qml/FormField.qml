import QtQuick

// A one-line text field of a form, with a faint hint while it is empty.
Rectangle {
    id: field
    property alias text: input.text
    property string hint
    property alias input: input
    signal edited()

    implicitHeight: 28
    radius: Theme.radiusSmall
    color: Theme.card
    border.color: input.activeFocus ? Theme.accent : "transparent"

    FocusOutline { shown: input.activeFocus; outlineRadius: parent.radius }
    TextInput {
        id: input
        activeFocusOnTab: true
        anchors { fill: parent; leftMargin: 10; rightMargin: 10 }
        verticalAlignment: TextInput.AlignVCenter
        color: Theme.text
        selectByMouse: true
        clip: true
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontBody
        onTextEdited: field.edited()
    }
    PlainText {
        anchors { left: parent.left; leftMargin: 10; right: parent.right; rightMargin: 10; verticalCenter: parent.verticalCenter }
        visible: input.text.length === 0
        text: field.hint
        elide: Text.ElideRight
        color: Theme.textFaint
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontBody
    }
}
