pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// The settings a person reaches for most, two columns of switches and the hot keys, what this
// desktop keeps from Norva when it does, the way to every other setting, and Quit for desktops
// without a tray.
Item {
    Grid {
        id: switches
        anchors { left: parent.left; right: parent.right; top: parent.top; topMargin: 4 }
        columns: 2
        columnSpacing: 28
        rowSpacing: 2
        readonly property real cell: (width - columnSpacing) / 2

        ToggleRow {
            width: parent.cell
            label: "Open on hover"
            detail: "Otherwise a click opens the notch."
            checked: SettingsStore.openOnHover
            onToggled: on => SettingsStore.openOnHover = on
        }
        ToggleRow {
            width: parent.cell
            label: "Peek on hover"
            checked: SettingsStore.peekOnHover
            onToggled: on => SettingsStore.peekOnHover = on
        }
        ToggleRow {
            width: parent.cell
            label: "Answer prompts on the notch"
            detail: "Claude Code, Codex and Copilot CLI ask here."
            checked: AgentSettings.answerPromptsOnNotch
            onToggled: on => AgentSettings.answerPromptsOnNotch = on
        }
        ToggleRow {
            width: parent.cell
            label: "Show Claude Code's usage"
            detail: "Adds Norva to Claude Code's status line."
            checked: AgentSettings.showClaudeUsage
            onToggled: on => AgentSettings.showClaudeUsage = on
        }
        ToggleRow {
            width: parent.cell
            label: "Keep clipboard history"
            checked: ClipboardSettings.history
            onToggled: on => ClipboardSettings.history = on
        }
        ToggleRow {
            width: parent.cell
            label: "Show the tray icon"
            checked: SettingsStore.showMenuBarIcon
            onToggled: on => SettingsStore.showMenuBarIcon = on
        }
        ToggleRow {
            width: parent.cell
            label: "Start Norva at login"
            checked: SettingsStore.launchAtLogin
            onToggled: on => SettingsStore.launchAtLogin = on
        }
    }

    // The hot keys side by side, so a message under one leaves the other in its place.
    Row {
        id: keys
        anchors { left: parent.left; right: parent.right; top: switches.bottom; topMargin: 2 }
        spacing: switches.columnSpacing
        Repeater {
            model: HotKeys.keys
            delegate: HotKeyRow {
                required property var row
                width: switches.cell
                hotKey: row
                onKeyChosen: text => HotKeys.setKey(row.name, text)
            }
        }
    }

    Row {
        id: actions
        anchors { right: parent.right; bottom: parent.bottom }
        spacing: 6
        TextButton {
            label: "All settings…"
            onClicked: App.openSettings()
        }
        TextButton {
            label: "Quit Norva"
            quiet: true
            onClicked: App.quit()
        }
    }

    PlainText {
        anchors { left: parent.left; right: actions.left; rightMargin: Theme.spacing; top: keys.bottom
                  topMargin: Theme.spacing }
        visible: text.length > 0
        text: App.desktopLimits
        color: Theme.textDim
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall
        wrapMode: Text.WordWrap
    }
}
