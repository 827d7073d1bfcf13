pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// The team's rules in force on this computer, each in its own words ("never run git push*").
// Never rules are fixed; an always rule has a switch, so the person can choose to be asked instead.
Item {
    id: section
    // The team policy; the Team page hands over the one Norva runs.
    property TeamPolicy policy: TeamPolicy
    readonly property RowsModel rules: policy ? policy.rules : null

    Column {
        anchors.fill: parent
        spacing: Theme.spacing

        PlainText {
            text: "Your team's rules"
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontTitle
        }
        PlainText {
            width: parent.width
            text: section.rules === null || section.rules.count === 0
                  ? "No team rules apply on this computer."
                  : "Never rules deny a matching call in every agent, even when the notch doesn't answer prompts."
            color: Theme.textFaint
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
            wrapMode: Text.WordWrap
        }

        Repeater {
            model: section.rules
            delegate: Item {
                id: ruleRow
                required property var row
                width: parent.width
                height: row.never ? 28 : alwaysRow.implicitHeight

                Row {
                    id: neverRow
                    visible: ruleRow.row.never
                    spacing: Theme.spacing
                    anchors.verticalCenter: parent.verticalCenter
                    Rectangle {
                        width: 8; height: 8; radius: 4
                        anchors.verticalCenter: parent.verticalCenter
                        color: Theme.bad
                    }
                    PlainText {
                        text: ruleRow.row.phrase
                        color: Theme.text
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.fontBody
                    }
                }
                ToggleRow {
                    id: alwaysRow
                    visible: !ruleRow.row.never
                    width: parent.width
                    label: ruleRow.row.phrase
                    detail: ruleRow.row.on ? "Answered for you on the notch." : "Off: you're asked as usual."
                    checked: ruleRow.row.on
                    onToggled: on => section.policy.setAlwaysRuleOn(ruleRow.row.identifier, on)
                }
            }
        }

        PlainText {
            visible: section.policy !== null && section.policy.source.length > 0
            width: parent.width
            text: section.policy ? "From " + section.policy.source : ""
            color: Theme.textFaint
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
            elide: Text.ElideMiddle
        }
    }
}
