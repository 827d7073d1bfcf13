import QtQuick

// Takes what is dropped on the notch or the open panel to the shelf: files, pictures, links and text.
DropArea {
    id: area
    property bool onNotch: false
    signal droppedHere()

    keys: ["text/uri-list", "image/png", "image/jpeg", "text/plain"]
    onDropped: drop => {
        const formats = drop.formats
        const imageFormat = formats.indexOf("image/png") >= 0 ? "image/png"
                          : formats.indexOf("image/jpeg") >= 0 ? "image/jpeg" : ""
        const image = imageFormat.length > 0 ? drop.getDataAsArrayBuffer(imageFormat) : new ArrayBuffer(0)
        shelfDesk.dropped(drop.urls, image, imageFormat.length > 0, drop.hasText ? drop.text : "",
                          drop.hasText, area.onNotch)
        drop.acceptProposedAction()
        area.droppedHere()
    }
}
