pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// The notch introducing itself, over the open panel: one step at a time with a sample of what it
// tells (drawn from the guide, never from the person's own data), Skip at every step.
Rectangle {
    id: card
    readonly property FirstRunGuide guide: FirstRunGuide
    readonly property var step: guide.current
    visible: guide.showing
    color: Theme.panel
    radius: Theme.radius

    Column {
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: Theme.padding }
        spacing: 6

        PlainText {
            text: (card.guide.step + 1) + " of " + card.guide.stepCount
            color: Theme.textFaint
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
        }
        PlainText {
            width: parent.width
            text: card.step.title || ""
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontLarge
        }
        PlainText {
            width: parent.width
            text: card.step.text || ""
            color: Theme.textDim
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontBody
            wrapMode: Text.WordWrap
            lineHeight: 1.15
        }
        Item { width: 1; height: 4 }
        Repeater {
            model: card.step.sample || []
            delegate: Rectangle {
                id: point
                required property var modelData
                width: Math.min(parent.width, 420)
                height: 30
                radius: Theme.radiusSmall
                color: Theme.card
                Row {
                    anchors { left: parent.left; leftMargin: 10; verticalCenter: parent.verticalCenter }
                    spacing: 8
                    ActivityGlyph {
                        anchors.verticalCenter: parent.verticalCenter
                        visible: point.modelData.mark.length > 0
                        glyph: point.modelData.mark
                        size: 13
                        color: Theme.accent
                    }
                    PlainText {
                        anchors.verticalCenter: parent.verticalCenter
                        text: point.modelData.text
                        color: Theme.text
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.fontSmall
                    }
                }
                PlainText {
                    anchors { right: parent.right; rightMargin: 10; verticalCenter: parent.verticalCenter }
                    text: point.modelData.aside
                    color: Theme.textFaint
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.fontSmall
                }
            }
        }
    }

    Row {
        anchors { right: parent.right; bottom: parent.bottom; margins: Theme.padding }
        spacing: 6
        TextButton {
            label: "Skip"
            quiet: true
            visible: card.guide.step + 1 < card.guide.stepCount
            onClicked: card.guide.skip()
        }
        TextButton {
            label: "Back"
            visible: card.guide.step > 0
            onClicked: card.guide.back()
        }
        TextButton {
            label: card.guide.step + 1 < card.guide.stepCount ? "Next" : "Done"
            onClicked: card.guide.next()
        }
    }
}
