import QtQuick
import Norva.Core

// The Agents page: Claude Code's usage windows when the person shows them, then one card per
// waiting prompt of Claude Code, Codex or Copilot CLI, oldest first.
// A permission card answers Allow, Deny or hands the prompt back to the terminal; a question card
// shows what the agent asks, to be answered in its own terminal.
Item {
    id: page
    readonly property AgentsPageModel model: AgentsPageModel
    // After a card is answered, the cards ignore clicks for a moment and the answered card keeps its
    // place as a blank gap meanwhile, so the second click of a double click never answers the card
    // that would have slid under the pointer.
    readonly property int answerPause: 400
    implicitHeight: (usageWindows.visible ? usageWindows.height + Theme.spacing : 0) + list.contentHeight
    property string answeredId: ""
    function answered(id) {
        answeredId = id
        answerGuard.restart()
    }
    Timer { id: answerGuard; interval: page.answerPause; onTriggered: page.answeredId = "" }

    UsageWindows {
        id: usageWindows
        anchors { left: parent.left; right: parent.right; top: parent.top }
        shown: AgentSettings.showClaudeUsage
    }

    ListView {
        id: list
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; top: usageWindows.bottom
                  topMargin: usageWindows.visible ? Theme.spacing : 0 }
        spacing: Theme.spacing
        clip: true
        model: page.model ? page.model.cards : null
        // Qt 6.4 will not let a Loader in a bound delegate make the delegate's own components
        // ("Cannot instantiate bound component outside its creation context"), so this file stays
        // unbound, and its delegate reaches the page's ids as an unbound component does.
        // qmllint disable unqualified
        delegate: Loader {
            id: slot
            required property var row
            width: list.width
            sourceComponent: row.isQuestion ? questionCard : promptCard
            // The answered card, once gone from the list, stays in the view unseen until the pause
            // ends, holding its place.
            property bool gone: false
            opacity: gone ? 0 : 1
            enabled: !gone
            ListView.onRemove: gone = answerGuard.running && page.answeredId === row.id
            ListView.delayRemove: gone && answerGuard.running
            function answer(reply) {
                page.answered(row.id)
                reply(row.id)
            }
            Component {
                id: promptCard
                AgentPromptCard {
                    card: slot.row
                    answerable: !answerGuard.running
                    onAllow: slot.answer(page.model.allow)
                    onDeny: slot.answer(page.model.deny)
                    onAnswerInTerminal: slot.answer(page.model.answerInTerminal)
                }
            }
            Component {
                id: questionCard
                AgentQuestionCard {
                    card: slot.row
                    onShowTerminal: page.model.showTerminal(slot.row.id)
                }
            }
        }
    }

    // qmllint enable unqualified
    ScrollCue { view: list }

    EmptyPage {
        anchors.fill: list
        visible: list.count === 0 && !answerGuard.running // not while the last card answered holds its place
        title: "Agents"
        text: AgentSettings.answerPromptsOnNotch ? "No agent is waiting for you."
                                            : "Turn on Answer prompts on the notch in Settings to answer here."
    }
}
