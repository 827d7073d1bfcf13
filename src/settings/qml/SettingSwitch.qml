import QtQuick
import Norva.Core

// An on/off switch in the settings window's colours.
Rectangle {
    id: track
    required property var colors
    property bool checked: false
    signal toggled(bool on)

    width: 40; height: 22; radius: 11
    color: checked ? colors.accent : colors.line
    Behavior on color { ColorAnimation { duration: SettingsStore.reducedMotion ? 0 : Theme.fast } }
    Rectangle {
        width: 18; height: 18; radius: 9
        y: 2
        x: track.checked ? parent.width - width - 2 : 2
        color: "#ffffff"
        border.color: track.colors.line
        Behavior on x { NumberAnimation { duration: SettingsStore.reducedMotion ? 0 : Theme.fast; easing.type: Easing.OutCubic } }
    }
    TapHandler { onTapped: track.toggled(!track.checked) }
}
