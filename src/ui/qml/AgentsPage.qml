import QtQuick

// The Agents page: Claude Code's usage windows when the person shows them, then one card per
// waiting prompt of Claude Code, Codex or Copilot CLI, oldest first.
// A permission card answers Allow, Deny or hands the prompt back to the terminal; a question card
// shows what the agent asks, to be answered in its own terminal.
Item {
    id: page
    readonly property var model: typeof agentsPage !== "undefined" ? agentsPage : null

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
        delegate: Loader {
            required property var modelData
            width: list.width
            sourceComponent: modelData.isQuestion ? questionCard : promptCard
            Component {
                id: promptCard
                AgentPromptCard {
                    card: modelData
                    onAllow: page.model.allow(modelData.id)
                    onDeny: page.model.deny(modelData.id)
                    onAnswerInTerminal: page.model.answerInTerminal(modelData.id)
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
