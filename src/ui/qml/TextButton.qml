import QtQuick

// A small rounded button with a word on it, for a page's actions.
Rectangle {
    id: button
    property string label
    property bool quiet: false
    signal clicked()

    implicitWidth: word.implicitWidth + 18
    implicitHeight: 24
    radius: height / 2
    color: hover.hovered ? Theme.cardHover : (quiet ? "transparent" : Theme.card)
    Behavior on color { ColorAnimation { duration: Theme.fast } }

    PlainText {
        id: word
        anchors.centerIn: parent
        text: button.label
        color: hover.hovered ? Theme.text : Theme.textDim
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall
    }
    HoverHandler { id: hover }
    TapHandler { onTapped: button.clicked() }
    FocusRing { onActivated: button.clicked() }
}
