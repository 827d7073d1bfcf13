import QtQuick

// A permission prompt: which agent asks, for which tool, and the command or file it acts on, with
// Allow, Deny and the way back to the agent's own prompt in the terminal.
Rectangle {
    id: cardView
    required property var card
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
            Text {
                text: cardView.card.agent
                color: Theme.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
                font.weight: Font.DemiBold
            }
            Text {
                text: cardView.card.tool + (cardView.card.folder ? "  ·  " + cardView.card.folder : "")
                color: Theme.textDim
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
            }
        }
        Rectangle {
            width: parent.width
            implicitHeight: subject.implicitHeight + Theme.spacing * 2
            radius: Theme.radiusSmall
            color: Theme.panel
            Text {
                id: subject
                anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter
                          margins: Theme.spacing }
                text: cardView.card.subject
                color: Theme.text
                font.family: "DejaVu Sans Mono"
                font.pixelSize: Theme.fontSmall + 1
                wrapMode: Text.WrapAnywhere
                maximumLineCount: 4
                elide: Text.ElideRight
            }
        }
        Row {
            spacing: Theme.spacing
            AgentAnswerButton { label: "Allow"; tint: Theme.good; onClicked: cardView.allow() }
            AgentAnswerButton { label: "Deny"; tint: Theme.bad; onClicked: cardView.deny() }
            AgentAnswerButton { label: "Answer in the terminal"; onClicked: cardView.answerInTerminal() }
        }
    }
}
