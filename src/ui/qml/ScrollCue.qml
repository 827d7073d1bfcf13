import QtQuick

// Says that a list holds more than fits: the edge where more waits fades into the notch's black,
// and a thin bar at the right shows how much is in view and where; it brightens while the list
// moves or the pointer is on it, and dragging it scrolls. A sibling of the list it belongs to, laid
// over it.
Item {
    id: cue
    required property Flickable view
    readonly property bool overflows: view.contentHeight > view.height + 1
    readonly property int fadeDepth: 22

    x: view.x
    y: view.y
    width: view.width
    height: view.height
    visible: view.visible && overflows

    Rectangle {
        anchors { left: parent.left; right: parent.right; top: parent.top }
        height: cue.fadeDepth
        opacity: cue.view.atYBeginning ? 0 : 1
        Behavior on opacity { NumberAnimation { duration: Theme.fast } }
        gradient: Gradient {
            GradientStop { position: 0; color: Theme.notch }
            GradientStop { position: 1; color: "transparent" }
        }
    }
    Rectangle {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: cue.fadeDepth
        opacity: cue.view.atYEnd ? 0 : 1
        Behavior on opacity { NumberAnimation { duration: Theme.fast } }
        gradient: Gradient {
            GradientStop { position: 0; color: "transparent" }
            GradientStop { position: 1; color: Theme.notch }
        }
    }

    // The bar's track takes the pointer only along the right edge, so the rows keep their clicks.
    Item {
        id: track
        anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
        width: 12
        readonly property real shown: Math.min(1, cue.view.visibleArea.heightRatio)
        readonly property real along: Math.max(0, Math.min(1 - shown, cue.view.visibleArea.yPosition))

        Rectangle {
            id: bar
            anchors { right: parent.right; rightMargin: 1 }
            width: drag.active || barHover.hovered ? 6 : 4
            radius: width / 2
            y: track.along * track.height
            height: Math.max(18, track.shown * track.height)
            color: Theme.textDim
            opacity: cue.view.moving || drag.active || barHover.hovered ? 0.9 : 0.45
            Behavior on opacity { NumberAnimation { duration: Theme.fast } }
        }
        HoverHandler { id: barHover; cursorShape: Qt.ArrowCursor }
        DragHandler {
            id: drag
            target: null
            xAxis.enabled: false
            property real startY: 0
            onActiveChanged: startY = cue.view.contentY
            onTranslationChanged: {
                const view = cue.view
                const room = view.contentHeight - view.height
                const perPoint = room / Math.max(1, track.height - bar.height)
                view.contentY = Math.max(view.originY, Math.min(view.originY + room,
                                                               startY + translation.y * perPoint))
            }
        }
    }
}
