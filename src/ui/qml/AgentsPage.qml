import QtQuick

// The Agents page: Claude Code's usage windows when the person shows them, then one card per
// waiting prompt of Claude Code, Codex or Copilot CLI, oldest first.
// A permission card answers Allow, Deny or hands the prompt back to the terminal; a question card
// shows what the agent asks, to be answered in its own terminal.
Item {
    id: page
    readonly property var model: typeof agentsPage !== "undefined" ? agentsPage : null
    // After a card is answered, the next one ignores clicks for a moment and stays where it is, so
    // the second click of a double click never answers the card that slides under the pointer.
    readonly property int answerPause: 400
    function answered() { answerGuard.restart() }
    Timer { id: answerGuard; interval: page.answerPause }

    UsageWindows {
        id: usageWindows
        anchors { left: parent.left; right: parent.right; top: parent.top }
        shown: settings.showClaudeUsage
    }

    ListView {
        id: list
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; top: usageWindows.bottom
                  topMargin: usageWindows.visible ? Theme.spacing : 0 }
        spacing: Theme.spacing
        clip: true
        model: page.model ? page.model.cards : []
        displaced: Transition {
            SequentialAnimation {
                PauseAnimation { duration: page.answerPause }
                NumberAnimation { property: "y"; duration: Theme.fast; easing.type: Easing.OutCubic }
            }
        }
        delegate: Loader {
            required property var modelData
            width: list.width
            sourceComponent: modelData.isQuestion ? questionCard : promptCard
            Component {
                id: promptCard
                AgentPromptCard {
                    card: modelData
                    answerable: !answerGuard.running
                    onAllow: { page.answered(); page.model.allow(modelData.id) }
                    onDeny: { page.answered(); page.model.deny(modelData.id) }
                    onAnswerInTerminal: { page.answered(); page.model.answerInTerminal(modelData.id) }
                }
            }
            Component {
                id: questionCard
                AgentQuestionCard {
                    card: modelData
                    onShowTerminal: page.model.showTerminal(modelData.id)
                }
            }
        }
    }

    EmptyPage {
        anchors.fill: list
        visible: list.count === 0
        title: "Agents"
        text: settings.answerPromptsOnNotch ? "No agent is waiting for you."
                                            : "Turn on Answer prompts on the notch in Settings to answer here."
    }
}
