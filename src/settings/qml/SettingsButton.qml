import QtQuick

// A plain button of the settings window.
Rectangle {
    id: button
    required property var colors
    property string label
    signal clicked()

    implicitWidth: word.implicitWidth + 28
    implicitHeight: 30
    radius: Theme.radiusSmall
    color: hover.hovered ? colors.hover : colors.field
    border.color: colors.line

    PlainText {
        id: word
        anchors.centerIn: parent
        text: button.label
        color: button.colors.text
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontBody
    }
    HoverHandler { id: hover }
    TapHandler { onTapped: button.clicked() }
}
