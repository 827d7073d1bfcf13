import QtQuick

// A permission prompt: which agent asks, for which tool, and the command or file it acts on, whole,
// with what an edit will write, then Allow, Deny and the way back to the agent's own prompt in the
// terminal.
Rectangle {
    id: cardView
    required property var card
    property bool answerable: true // false for a moment after another card was answered
    signal allow
    signal deny
    signal answerInTerminal

    implicitHeight: content.implicitHeight + 2 * Theme.padding
    radius: Theme.radius
    color: Theme.card

    Column {
        id: content
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: Theme.padding }
        spacing: Theme.spacing

        Row {
            spacing: Theme.spacing
            PlainText {
                text: cardView.card.agent
                color: Theme.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
                font.weight: Font.DemiBold
            }
            PlainText {
                text: cardView.card.tool + (cardView.card.folder ? "  ·  " + cardView.card.folder : "")
                color: Theme.textDim
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
            }
        }
        LiteralText {
            width: parent.width
            text: cardView.card.subject
        }
        PlainText {
            visible: cardView.card.writes !== ""
            text: "Will write"
            color: Theme.textDim
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
        }
        LiteralText {
            visible: cardView.card.writes !== ""
            width: parent.width
            text: cardView.card.writes
        }
        Row {
            spacing: Theme.spacing
            enabled: cardView.answerable
            AgentAnswerButton { label: "Allow"; tint: Theme.good; onClicked: cardView.allow() }
            AgentAnswerButton { label: "Deny"; tint: Theme.bad; onClicked: cardView.deny() }
            AgentAnswerButton { label: "Answer in the terminal"; onClicked: cardView.answerInTerminal() }
        }
    }
}
