pragma ComponentBehavior: Bound

import QtQuick

// A question an agent asks (AskUserQuestion): the question and its options. The agent shows its own
// picker in the terminal, so the card offers the way there.
Rectangle {
    id: cardView
    required property var card
    signal showTerminal

    implicitHeight: content.implicitHeight + 2 * Theme.padding
    radius: Theme.radius
    color: Theme.card

    Column {
        id: content
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: Theme.padding }
        spacing: Theme.spacing

        PlainText {
            text: cardView.card.agent + " has a question"
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontBody
            font.weight: Font.DemiBold
        }
        Repeater {
            model: cardView.card.questions
            delegate: PlainText {
                required property string modelData
                width: content.width
                text: modelData
                color: Theme.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
                wrapMode: Text.WordWrap
            }
        }
        Flow {
            width: parent.width
            spacing: 6
            Repeater {
                model: cardView.card.options
                delegate: Rectangle {
                    required property string modelData
                    width: option.implicitWidth + 16
                    height: option.implicitHeight + 8
                    radius: Theme.radiusSmall
                    color: Theme.panel
                    PlainText {
                        id: option
                        anchors.centerIn: parent
                        text: parent.modelData
                        color: Theme.textDim
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.fontSmall
                    }
                }
            }
        }
        AgentAnswerButton { label: "Answer in the terminal"; onClicked: cardView.showTerminal() }
    }
}
