pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// What this version brought, once after an update, over the open panel.
Rectangle {
    id: card
    readonly property FirstRunGuide guide: FirstRunGuide
    visible: guide.whatsNewShowing
    color: Theme.panel
    radius: Theme.radius

    Column {
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: Theme.padding }
        spacing: 8
        PlainText {
            text: "What's new in Norva " + card.guide.version
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontLarge
        }
        Repeater {
            model: card.guide.whatsNew
            delegate: PlainText {
                required property string modelData
                width: parent.width
                text: "•  " + modelData
                color: Theme.textDim
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
                wrapMode: Text.WordWrap
            }
        }
    }
    TextButton {
        anchors { right: parent.right; bottom: parent.bottom; margins: Theme.padding }
        label: "Got it"
        onClicked: card.guide.dismissWhatsNew()
    }
}
