import QtQuick
import QtQuick.Window

// One display's notch: the black shape at the top centre that grows from closed to peek to open.
// The window is as large as the open panel; only the shape takes the pointer.
Window {
    id: window
    required property var overlay
    required property var notch

    width: 800
    height: 640
    color: "transparent"
    title: "Norva"

    readonly property real closedWidth: faceLoader.item && faceLoader.item.implicitWidth > 0
                                        ? Math.max(190, faceLoader.item.implicitWidth) : 190
    readonly property real closedHeight: 32
    readonly property bool reduced: settings.reducedMotion

    NotchShape {
        id: shape
        anchors.horizontalCenter: parent.horizontalCenter
        y: 0
        notch: window.notch
        reduced: window.reduced
        width: notch.stateName === "open" ? notch.openWidth
             : notch.stateName === "peek" ? window.closedWidth + 48 : window.closedWidth
        height: notch.stateName === "open" ? notch.openHeight
              : notch.stateName === "peek" ? window.closedHeight + 16 : window.closedHeight

        onXChanged: window.updateMask()
        onWidthChanged: window.updateMask()
        onHeightChanged: window.updateMask()

        Loader {
            id: faceLoader
            anchors.fill: parent
            active: app.hasQml("ClosedFace.qml")
            source: active ? "ClosedFace.qml" : ""
            visible: window.notch.stateName !== "open"
            opacity: visible ? 1 : 0
        }

        PeekView {
            anchors.fill: parent
            visible: window.notch.stateName === "peek" && !(faceLoader.item && faceLoader.item.hasContent)
        }

        OpenPanel {
            anchors.fill: parent
            notch: window.notch
            visible: opacity > 0
            opacity: window.notch.stateName === "open" ? 1 : 0
            Behavior on opacity { NumberAnimation { duration: window.reduced ? 0 : Theme.fast } }
        }
    }

    // The open panel takes the keyboard, so Escape closes it.
    Connections {
        target: window.notch
        function onStateChanged() {
            if (window.notch.stateName === "open")
                window.requestActivate()
        }
    }

    function updateMask() {
        // A few points of slack so the soft edge is not clipped while it moves.
        overlay.setShape(Qt.rect(shape.x - 1, 0, shape.width + 2, shape.height + 1), shape.bottomRadius)
    }

    Component.onCompleted: updateMask()
}
