import QtQuick

// The notch itself: black, square against the top edge, rounded below. It follows the pointer
// for the view model and eases between its sizes.
Item {
    id: shape
    required property var notch
    property bool reduced: false
    readonly property real bottomRadius: notch.stateName === "open" ? Theme.radiusLarge + 6
                                       : notch.stateName === "peek" ? 14 : 10

    Behavior on width { NumberAnimation { duration: shape.reduced ? 0 : Theme.normal; easing.type: Easing.OutCubic } }
    Behavior on height { NumberAnimation { duration: shape.reduced ? 0 : Theme.normal; easing.type: Easing.OutCubic } }

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
        enabled: shape.notch.stateName !== "open" && typeof music !== "undefined" && music !== null
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: (event) => music.scrollVolume(event.angleDelta.y / 120)
    }

    focus: true
    Keys.onEscapePressed: shape.notch.escape()
}
