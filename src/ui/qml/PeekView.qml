import QtQuick

// The short enlargement a hover shows before the panel opens: a hint of what opening shows. While
// a drag is over the notch, it says instead that a drop will land on the shelf.
Item {
    id: peek
    property bool dropping: false

    PlainText {
        anchors.centerIn: parent
        anchors.verticalCenterOffset: 2
        visible: !peek.dropping
        text: "Norva"
        color: Theme.textDim
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall
        font.letterSpacing: 1.5
        opacity: 0.9
    }
    DropHint {
        anchors.fill: parent
        shown: peek.dropping
        framed: false
    }
}
