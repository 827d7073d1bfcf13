import QtQuick

// The short enlargement a hover shows before the panel opens: a hint of what opening shows.
Item {
    PlainText {
        anchors.centerIn: parent
        anchors.verticalCenterOffset: 2
        text: "Norva"
        color: Theme.textDim
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall
        font.letterSpacing: 1.5
        opacity: 0.9
    }
}
