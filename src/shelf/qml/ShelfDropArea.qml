import QtQuick
import Norva.Core

// Takes what is dropped on the notch or the open panel to the shelf: files, pictures, links and text.
// A drop is always taken as a copy: the file stays where it was dropped from, and the shelf only
// points to it. While a drag is over it, the notch is told, so it can show that the drop will land.
DropArea {
    id: area
    property bool overNotch: false // dropped on the closed or peeking notch, not on the shelf page
    property var notchModel: null // the NotchViewModel to tell of a drag over it, if any
    signal droppedHere()

    keys: ["text/uri-list", "image/png", "image/jpeg", "text/plain"]
    onEntered: drag => {
        drag.accept(Qt.CopyAction)
        if (area.notchModel)
            area.notchModel.dragEntered()
    }
    // The source proposes its own action at every move (a file manager proposes a move); the
    // answer stays a copy.
    onPositionChanged: drag => drag.accept(Qt.CopyAction)
    onExited: {
        if (area.notchModel)
            area.notchModel.dragLeft()
    }
    onDropped: drop => {
        const formats = drop.formats
        const imageFormat = formats.indexOf("image/png") >= 0 ? "image/png"
                          : formats.indexOf("image/jpeg") >= 0 ? "image/jpeg" : ""
        const image = imageFormat.length > 0 ? drop.getDataAsArrayBuffer(imageFormat) : new ArrayBuffer(0)
        ShelfDesk.dropped(drop.urls, image, imageFormat.length > 0, drop.hasText ? drop.text : "",
                          drop.hasText, area.overNotch)
        drop.accept(Qt.CopyAction)
        if (area.notchModel)
            area.notchModel.dragLeft()
        area.droppedHere()
    }
}
