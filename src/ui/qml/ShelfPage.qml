import QtQuick

// The shelf: the files waiting on the notch, dragged out again from here or opened, shown, copied,
// zipped, converted and removed. Anything dropped on the page joins the shelf.
Item {
    id: page
    readonly property var desk: shelfDesk
    implicitHeight: top.height + Theme.spacing + grid.contentHeight + toast.height

    Row {
        id: top
        anchors { top: parent.top; right: parent.right }
        spacing: Theme.spacing
        visible: page.desk.count > 0
        TextButton {
            label: "Zip all"
            onClicked: page.desk.compress(page.allIds())
        }
        TextButton {
            label: "Clear all"
            onClicked: page.desk.clearAll()
        }
    }

    GridView {
        id: grid
        anchors { top: top.bottom; topMargin: Theme.spacing; left: parent.left; right: parent.right; bottom: toast.top }
        clip: true
        cellWidth: 120
        cellHeight: 132
        model: page.desk.items
        delegate: ShelfTile {
            required property var modelData
            item: modelData
            onAction: name => {
                if (name === "convert")
                    page.desk.convert([modelData.id], "PNG")
                else if (name === "copy" || name === "compress")
                    page.desk[name]([modelData.id])
                else
                    page.desk[name](modelData.id)
            }
        }
    }

    ScrollCue { view: grid }

    PlainText {
        anchors.centerIn: grid
        visible: page.desk.count === 0
        text: page.desk.emptyText
        color: Theme.textDim
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontBody
    }

    PlainText {
        id: toast
        anchors { bottom: parent.bottom; horizontalCenter: parent.horizontalCenter }
        height: implicitHeight
        text: page.desk.busy ? "Working…" : page.desk.toast
        color: Theme.text
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall
    }
    Timer {
        running: page.desk.toast.length > 0
        interval: 3000
        onTriggered: page.desk.dismissToast()
    }

    ShelfDropArea {
        anchors.fill: parent
    }

    function allIds() {
        const ids = []
        for (const item of page.desk.items)
            ids.push(item.id)
        return ids
    }
}
