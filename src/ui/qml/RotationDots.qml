pragma ComponentBehavior: Bound

import QtQuick

// Small dots at the end of the right ear when several activities take turns: one per activity,
// the shown one lit. The lit dot moves with each turn in the same repaint as the activity.
Column {
    id: dots
    property int count: 0
    property int current: -1
    property bool pinned: false // a pinned activity owns the notch: nothing else is waiting its turn
    spacing: 3
    visible: count > 1 && !pinned
    Repeater {
        model: Math.min(dots.count, 4)
        Rectangle {
            required property int index
            width: 4
            height: 4
            radius: 2
            color: Theme.text
            opacity: index === Math.min(dots.current, 3) ? 0.95 : 0.28
        }
    }
}
