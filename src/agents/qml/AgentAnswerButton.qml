import QtQuick

// One answer on an agent's card, drawn in Norva's own style.
Rectangle {
    id: button
    property string label
    property color tint: Theme.textDim
    signal clicked

    implicitWidth: text.implicitWidth + 24
    implicitHeight: 28
    radius: Theme.radiusSmall
    color: hover.hovered ? Theme.cardHover : Theme.panel
    border.color: Qt.rgba(tint.r, tint.g, tint.b, 0.55)
    border.width: 1
    Behavior on color { ColorAnimation { duration: Theme.fast } }

    PlainText {
        id: text
        anchors.centerIn: parent
        text: button.label
        color: button.tint === Theme.textDim ? Theme.text : button.tint
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontBody
    }
    HoverHandler { id: hover }
    TapHandler { onTapped: button.clicked() }
    FocusRing { onActivated: button.clicked() }
}
