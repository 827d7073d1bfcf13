pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// The shelf: the files waiting on the notch, dragged out again from here or opened, shown, copied,
// zipped, converted and removed. Anything dropped on the page joins the shelf.
Item {
    id: page
    readonly property ShelfDesk desk: ShelfDesk
    implicitHeight: top.height + Theme.spacing + grid.contentHeight + toast.height

    Row {
        id: top
        anchors { top: parent.top; right: parent.right }
        spacing: Theme.spacing
        visible: page.desk.count > 0
        TextButton {
            label: "PDF of pictures"
            visible: page.desk.pictureIds.length > 1
            onClicked: page.desk.convert(page.desk.pictureIds, "PDF")
        }
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
        cellHeight: 154
        model: page.desk.items
        delegate: ShelfTile {
            id: tile
            required property var row
            item: row
            onAction: name => page.act(row, name, "")
            onMenuWanted: from => menu.openFor(row, from, tile)
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

    // What an action came to; a failure's advice can run to two lines and stays longer to be read.
    PlainText {
        id: toast
        anchors { bottom: parent.bottom; left: parent.left; right: parent.right }
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        text: page.desk.busy ? "Working…" : page.desk.toast
        color: page.desk.toastFailed && !page.desk.busy ? Theme.warn : Theme.text
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall
    }
    Timer {
        running: page.desk.toast.length > 0
        interval: page.desk.toastMs
        onTriggered: page.desk.dismissToast()
    }

    ShelfDropArea {
        id: drops
        anchors.fill: parent
    }
    DropHint {
        anchors.fill: parent
        shown: drops.containsDrag
    }

    // A click beside the open menu closes it.
    MouseArea {
        anchors.fill: parent
        visible: menu.open
        onClicked: menu.close()
    }
    ShelfMenu {
        id: menu
        onChosen: (row, action, argument) => page.act(row, action, argument)
    }

    function act(row, name, argument) {
        if (name === "convert")
            page.desk.convert([row.id], argument)
        else if (name === "copy" || name === "compress")
            page.desk[name]([row.id])
        else
            page.desk[name](row.id)
    }

    function allIds() {
        const ids = []
        for (let i = 0; i < page.desk.items.count; ++i)
            ids.push(page.desk.items.get(i).id)
        return ids
    }
}
