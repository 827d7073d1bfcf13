import QtQuick
import Norva.Core

// What the notch shows while a drag it would take is over it: an accent outline and a word that
// the drop lands on the shelf. It takes no part in the drag itself.
Item {
    id: hint
    property bool shown: false
    property bool framed: true // the open panel and the page draw the outline; the small peek only the word

    opacity: shown ? 1 : 0
    visible: opacity > 0
    Behavior on opacity { NumberAnimation { duration: SettingsStore.reducedMotion ? 0 : Theme.fast } }

    Rectangle {
        anchors.fill: parent
        visible: hint.framed
        color: Qt.rgba(Theme.accent.r, Theme.accent.g, Theme.accent.b, 0.08)
        radius: Theme.radius
        border.width: 2
        border.color: Theme.accent
    }
    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        // Low in the open panel, clear of its tabs; in the middle of the peek, below the camera.
        y: hint.framed ? parent.height - height - 12 : (parent.height - height) / 2 + 4
        width: word.implicitWidth + 20
        height: word.implicitHeight + 8
        radius: height / 2
        color: hint.framed ? Theme.accent : "transparent"
        PlainText {
            id: word
            anchors.centerIn: parent
            text: "Drop to keep it on the Shelf"
            color: hint.framed ? Theme.notch : Theme.accent
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
            font.weight: Font.DemiBold
        }
    }
}
