pragma ComponentBehavior: Bound

import QtQuick

// A few fixed choices side by side, the chosen one marked in the desktop's selection colour.
Row {
    id: choice
    required property var colors
    property var options: []
    property var value
    signal picked(var value)
    spacing: 0

    Repeater {
        model: choice.options
        delegate: Rectangle {
            required property var modelData
            required property int index
            // An option without a value stands for the key being absent.
            readonly property bool chosen: modelData.value === choice.value
                                           || (modelData.value === undefined && choice.value === undefined)
            width: word.implicitWidth + 20
            height: 30
            radius: Theme.radiusSmall
            color: chosen ? choice.colors.accent : (hover.hovered ? choice.colors.hover : choice.colors.field)
            border.color: chosen ? choice.colors.accent : choice.colors.line
            PlainText {
                id: word
                anchors.centerIn: parent
                text: parent.modelData.label
                color: parent.chosen ? choice.colors.onAccent : choice.colors.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontSmall
            }
            HoverHandler { id: hover }
            TapHandler { onTapped: choice.picked(parent.modelData.value) }
        }
    }
}
