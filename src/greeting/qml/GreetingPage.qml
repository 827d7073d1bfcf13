import QtQuick

// The greeting's page: one switch that puts a greeting on the closed notch.
Item {
    ToggleRow {
        anchors { left: parent.left; right: parent.right; top: parent.top }
        label: "Greet me on the closed notch"
        detail: "Shows Hello beside the notch while on."
        checked: greeting.on
        onToggled: on => greeting.on = on
    }
}
