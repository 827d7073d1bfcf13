import QtQuick

// The ring drawn around whatever has the keyboard, just outside its outline.
Rectangle {
    property bool shown: false
    property real outlineRadius: 0
    anchors { fill: parent; margins: -Theme.focusGap }
    visible: shown
    radius: outlineRadius + Theme.focusGap
    color: "transparent"
    border.width: Theme.focusWidth
    border.color: Theme.focus
}
