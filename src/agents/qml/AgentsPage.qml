import QtQuick
import Norva.Core

// The Agents page: Claude Code's usage windows when the person shows them, then one card per
// waiting prompt of Claude Code, Codex or Copilot CLI, oldest first.
// A permission card answers Allow, Deny or hands the prompt back to the terminal; a question card
// shows what the agent asks, to be answered in its own terminal.
Item {
    id: page
    readonly property AgentsPageModel model: AgentsPageModel
    // After a card is answered, the cards ignore clicks for a moment and the answered card's place
    // stays as a gap meanwhile, so the second click of a double click never answers the card that
    // would have slid under the pointer.
    readonly property int answerPause: 400
    implicitHeight: (usageWindows.visible ? usageWindows.height + Theme.spacing : 0) + list.contentHeight
    property var gap: null // {id, index, height} of the card just answered
    function answered(id, index, height) {
        gap = {"id": id, "index": index, "height": height}
        answerGuard.restart()
    }
    Timer { id: answerGuard; interval: page.answerPause; onTriggered: page.gap = null }
    readonly property var shownCards: {
        const cards = page.model ? page.model.cards : []
        if (!page.gap || cards.some(card => card.id === page.gap.id))
            return cards
        const withGap = cards.slice()
        withGap.splice(Math.min(page.gap.index, withGap.length), 0, {"isGap": true, "gapHeight": page.gap.height})
        return withGap
    }

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
        model: page.shownCards
        // Qt 6.4 will not let a Loader in a bound delegate make the delegate's own components
        // ("Cannot instantiate bound component outside its creation context"), so this file stays
        // unbound, and its delegate reaches the page's ids as an unbound component does.
        // qmllint disable unqualified
        delegate: Loader {
            id: slot
            required property var modelData
            required property int index
            width: list.width
            sourceComponent: modelData.isGap ? gapSlot : modelData.isQuestion ? questionCard : promptCard
            function answer(reply) {
                page.answered(modelData.id, slot.index, slot.height)
                reply(modelData.id)
            }
            Component {
                id: gapSlot
                Item { height: slot.modelData.gapHeight }
            }
            Component {
                id: promptCard
                AgentPromptCard {
                    card: slot.modelData
                    answerable: !answerGuard.running
                    onAllow: slot.answer(page.model.allow)
                    onDeny: slot.answer(page.model.deny)
                    onAnswerInTerminal: slot.answer(page.model.answerInTerminal)
                }
            }
            Component {
                id: questionCard
                AgentQuestionCard {
                    card: slot.modelData
                    onShowTerminal: page.model.showTerminal(slot.modelData.id)
                }
            }
        }
    }

    // qmllint enable unqualified
    ScrollCue { view: list }

    EmptyPage {
        anchors.fill: list
        visible: list.count === 0
        title: "Agents"
        text: AgentSettings.answerPromptsOnNotch ? "No agent is waiting for you."
                                            : "Turn on Answer prompts on the notch in Settings to answer here."
    }
}
