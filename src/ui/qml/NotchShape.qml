import QtQuick
import Norva.Core

// The notch itself: black, square against the top edge, rounded below. It follows the pointer
// for the view model and takes the size the view model gives for its state.
Item {
    id: shape
    required property var notch
    property bool reduced: false
    readonly property real bottomRadius: notch.stateName === "open" ? Theme.radiusLarge + 6
                                       : notch.stateName === "peek" ? 14 : 10
    // True while the shape eases from one size to the next.
    readonly property bool moving: sizeEase.running

    readonly property real wantedWidth: notch.shownWidth
    readonly property real wantedHeight: notch.shownHeight
    property string seenState: ""
    onWantedWidthChanged: follow()
    onWantedHeightChanged: follow()
    Component.onCompleted: {
        seenState = notch.stateName
        width = wantedWidth
        height = wantedHeight
    }

    // Opening, peeking and closing ease, and so does whatever moves under the pointer or in the
    // open panel. At rest, a closed face whose activities take turns changes its size in one
    // repaint: live activities cost a frame a turn, not an animation.
    function follow() {
        const eases = !reduced && (notch.stateName !== seenState || notch.stateName === "open"
                                   || notch.isMouseInside || sizeEase.running)
        seenState = notch.stateName
        sizeEase.stop()
        if (eases) {
            widthEase.to = wantedWidth
            heightEase.to = wantedHeight
            sizeEase.start()
        } else {
            width = wantedWidth
            height = wantedHeight
        }
    }
    ParallelAnimation {
        id: sizeEase
        NumberAnimation { id: widthEase; target: shape; property: "width"; duration: Theme.normal; easing.type: Easing.OutCubic }
        NumberAnimation { id: heightEase; target: shape; property: "height"; duration: Theme.normal; easing.type: Easing.OutCubic }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.notch
        radius: shape.bottomRadius
        Behavior on radius { NumberAnimation { duration: shape.reduced ? 0 : Theme.normal } }
    }
    // Square top corners: the shape hangs from the screen's edge.
    Rectangle {
        anchors { left: parent.left; right: parent.right; top: parent.top }
        height: Math.min(parent.height, shape.bottomRadius + 1)
        color: Theme.notch
    }

    HoverHandler {
        id: hover
        onHoveredChanged: hovered ? shape.notch.pointerEntered() : shape.notch.pointerExited()
    }
    TapHandler {
        acceptedButtons: Qt.LeftButton
        onPressedChanged: shape.notch.pressedMouseButtons = pressed ? 1 : 0
        onTapped: if (shape.notch.stateName !== "open") shape.notch.clicked()
    }

    // Scrolling over the closed notch turns the volume; open, the wheel belongs to the pages.
    WheelHandler {
        enabled: shape.notch.stateName !== "open"
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: (event) => MusicManager.scrollVolume(event.angleDelta.y / 120)
    }

    focus: true
    Keys.onEscapePressed: shape.notch.escape()
}
