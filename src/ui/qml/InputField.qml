import QtQuick

// A rounded one-line field with a faint hint while empty; the person's words are plain text.
Rectangle {
    id: field
    property alias text: input.text
    property string hint
    property int fontSize: Theme.fontBody
    signal accepted()
    signal edited(string text)

    implicitWidth: 160
    implicitHeight: 28
    radius: height / 2
    color: Theme.card

    TextInput {
        id: input
        anchors { fill: parent; leftMargin: 12; rightMargin: 12 }
        verticalAlignment: TextInput.AlignVCenter
        color: Theme.text
        font.family: Theme.fontFamily
        font.pixelSize: field.fontSize
        clip: true
        selectByMouse: true
        activeFocusOnTab: true
        onAccepted: field.accepted()
        onTextEdited: field.edited(text)
    }
    PlainText {
        anchors { left: parent.left; leftMargin: 12; verticalCenter: parent.verticalCenter }
        visible: input.text.length === 0
        text: field.hint
        color: Theme.textFaint
        font.family: Theme.fontFamily
        font.pixelSize: field.fontSize
    }
    FocusOutline { shown: input.activeFocus; outlineRadius: field.radius }
    function focusField() { input.forceActiveFocus() }
}
