import QtQuick
import QtQuick.Window
import Norva.Core

// One display's notch: the black shape at the top centre that grows from closed to peek to open.
// The window is as large as what it shows, and only the shape takes the pointer.
Window {
    id: window
    // The window's own NotchOverlay (fit, setShape). A type of the norva executable, which Qt 6.4 does
    // not show to the module's own files, so it stays untyped.
    required property var overlay
    required property NotchViewModel notch

    color: "transparent"
    title: "Norva"

    readonly property bool reduced: SettingsStore.reducedMotion
    // The closed face asks for its size; the view model answers with the shape's size in each state.
    Binding {
        target: window.notch
        property: "faceSize"
        value: faceLoader.item ? Qt.size((faceLoader.item as Item).implicitWidth, (faceLoader.item as Item).implicitHeight) : Qt.size(0, 0)
    }

    NotchShape {
        id: shape
        anchors.horizontalCenter: parent.horizontalCenter
        y: 0
        notch: window.notch
        reduced: window.reduced
        onWidthChanged: window.updateMask()
        onHeightChanged: window.updateMask()
        onBottomRadiusChanged: window.updateMask()
        onMovingChanged: window.fitWindow()

        Loader {
            id: faceLoader
            anchors.fill: parent
            active: App.hasQml("ClosedFace.qml")
            source: active ? "ClosedFace.qml" : ""
            onLoaded: item.notch = Qt.binding(() => window.notch)
            visible: window.notch.stateName !== "open" && !window.notch.dragOver
            opacity: visible ? 1 : 0
        }

        PeekView {
            anchors.fill: parent
            dropping: window.notch.dragOver
            visible: window.notch.stateName === "peek"
                     && (dropping || !(faceLoader.item && (faceLoader.item as ClosedFace).hasContent))
        }

        // Below the open panel, so the shelf page's own drop area takes drops while it is shown.
        ShelfDropArea {
            anchors.fill: parent
            notchModel: window.notch
            overNotch: window.notch.stateName !== "open"
            onDroppedHere: {
                if (overNotch && ShelfDesk.openOnDrop)
                    window.notch.openPage("shelf")
            }
        }

        OpenPanel {
            anchors.fill: parent
            notch: window.notch
            visible: opacity > 0
            opacity: window.notch.stateName === "open" ? 1 : 0
            Behavior on opacity { NumberAnimation { duration: window.reduced ? 0 : Theme.fast } }
        }

        // Over any page of the open panel, a drag that the shelf would take says so.
        DropHint {
            anchors { fill: parent; margins: 6 }
            shown: window.notch.dragOver && window.notch.stateName === "open"
        }
    }

    // While the closed face's activities take turns, the window keeps the widest size the turns
    // asked for: a turn to a narrower activity then repaints the face alone, where resizing the
    // window would also cost an expose and a resize, three frames a turn instead of one.
    readonly property bool turning: notch.stateName === "closed" && faceLoader.item !== null
                                    && (faceLoader.item as ClosedFace).face.rotating
    onTurningChanged: fitWindow()

    // The window follows what the notch shows: larger at once, smaller once the shape has settled.
    Connections {
        target: window.notch
        function onShownSizeChanged() { window.fitWindow() }
    }

    function fitWindow() {
        overlay.fit(Qt.size(notch.shownWidth, notch.shownHeight), Qt.size(shape.width, shape.height),
                    shape.moving || turning)
    }

    function updateMask() {
        overlay.setShape(Qt.size(shape.width, shape.height), shape.bottomRadius)
    }

    Component.onCompleted: {
        updateMask()
        fitWindow()
    }
}
