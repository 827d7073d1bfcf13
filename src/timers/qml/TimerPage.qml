pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// The timer: a free countdown (a preset or minutes of one's own) or focus rounds, with pause,
// resume and stop, what comes next, the to-dos chosen for the focus session (and today's to offer),
// and the completion sound's switch.
Item {
    id: page
    readonly property TimerManager timer: TimerManager
    // The page is taller than the open notch while focus rounds offer to-dos: it scrolls, and the
    // cue says there is more below.
    Flickable {
        id: scroller
        anchors.fill: parent
        clip: true
        contentHeight: content.height
        boundsBehavior: Flickable.StopAtBounds
        Column {
            id: content
            x: (scroller.width - width) / 2
            width: Math.min(scroller.width, 520)
            spacing: Theme.spacing + 2

            PlainText {
                anchors.horizontalCenter: parent.horizontalCenter
                text: page.timer.active ? page.timer.title + (page.timer.paused ? " · paused" : "") : "No timer running"
                color: Theme.textDim
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
            }
            PlainText {
                anchors.horizontalCenter: parent.horizontalCenter
                text: page.timer.active ? page.timer.remainingText : "0:00"
                color: page.timer.paused ? Theme.textDim : Theme.text
                font.family: Theme.fontFamily
                font.pixelSize: 44
                font.weight: Font.Light
            }
            Rectangle {
                width: parent.width
                height: 4
                radius: 2
                color: Theme.card
                Rectangle {
                    width: parent.width * (page.timer.active ? page.timer.progress : 0)
                    height: parent.height
                    radius: 2
                    color: page.timer.phase === "work" || !page.timer.focus ? Theme.accent : Theme.good
                }
            }
            PlainText {
                anchors.horizontalCenter: parent.horizontalCenter
                visible: page.timer.active
                text: page.timer.nextText
                color: Theme.textFaint
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontSmall
            }
            Row {
                anchors.horizontalCenter: parent.horizontalCenter
                spacing: Theme.spacing
                visible: page.timer.active
                TextButton {
                    label: page.timer.paused ? "Resume" : "Pause"
                    onClicked: page.timer.togglePause()
                }
                TextButton {
                    label: "Stop"
                    onClicked: page.timer.stop()
                }
            }
            Row {
                anchors.horizontalCenter: parent.horizontalCenter
                spacing: 6
                TextButton {
                    label: "Focus rounds"
                    onClicked: page.timer.startFocus()
                }
                Repeater {
                    model: page.timer.presets
                    delegate: TextButton {
                        required property int modelData
                        quiet: true
                        label: modelData >= 3600 ? (modelData / 3600) + " h" : (modelData / 60) + " min"
                        onClicked: page.timer.startCountdown(modelData)
                    }
                }
            }
            Row {
                anchors.horizontalCenter: parent.horizontalCenter
                spacing: Theme.spacing
                InputField {
                    id: custom
                    width: 150
                    hint: "h:mm:ss or minutes"
                    onAccepted: start.start()
                }
                TextButton {
                    id: start
                    label: "Start"
                    onClicked: start.start()
                    function start() {
                        const parts = custom.text.trim().split(":").map(Number)
                        if (parts.some(isNaN) || parts.length === 0 || parts.length > 3)
                            return
                        let seconds = 0
                        if (parts.length === 1)
                            seconds = parts[0] * 60
                        else
                            for (const part of parts)
                                seconds = seconds * 60 + part
                        page.timer.startCountdown(Math.round(seconds))
                        custom.text = ""
                    }
                }
            }
            Column {
                width: parent.width
                visible: page.timer.focus && page.timer.focusTargets.length > 0
                spacing: 2
                PlainText {
                    text: "This session"
                    color: Theme.textDim
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.fontSmall
                }
                Repeater {
                    model: page.timer.focusTargets
                    delegate: Row {
                        id: targetRow
                        required property string modelData
                        spacing: Theme.spacing
                        PlainText {
                            text: "• " + targetRow.modelData
                            color: Theme.text
                            font.family: Theme.fontFamily
                            font.pixelSize: Theme.fontBody
                        }
                        TextButton {
                            quiet: true
                            label: "Remove from this session"
                            onClicked: page.timer.removeFocusTarget(targetRow.modelData)
                        }
                    }
                }
            }
            // Open to-dos of today and overdue ones, to work on in these focus rounds.
            Column {
                width: parent.width
                visible: offered.count > 0
                spacing: 2
                PlainText {
                    text: "From your to-dos"
                    color: Theme.textDim
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.fontSmall
                }
                Repeater {
                    id: offered
                    model: page.timer.focus
                           ? Array.from(TodosPageModel.dueTitles).filter(title => page.timer.focusTargets.indexOf(title) < 0).slice(0, 3)
                           : []
                    delegate: Row {
                        id: offeredRow
                        required property string modelData
                        spacing: Theme.spacing
                        PlainText {
                            anchors.verticalCenter: parent.verticalCenter
                            text: "\u2022 " + offeredRow.modelData
                            color: Theme.text
                            font.family: Theme.fontFamily
                            font.pixelSize: Theme.fontBody
                        }
                        TextButton {
                            quiet: true
                            label: "Add to this session"
                            onClicked: page.timer.addFocusTarget(offeredRow.modelData)
                        }
                    }
                }
            }
            ToggleRow {
                width: parent.width
                label: "Play a sound when a timer ends"
                checked: page.timer.soundOn
                onToggled: on => page.timer.soundOn = on
            }
        }
    }
    ScrollCue { view: scroller }
}
