import QtQuick
import QtQuick.Window

// One file waiting on the shelf: its picture or symbol, name and size. Dragged, it leaves as the
// file itself; hovered, it offers open, show, copy, zip and remove.
Rectangle {
    id: tile
    required property var item
    signal action(string name)

    width: 112
    height: 124
    radius: Theme.radius
    color: hover.hovered ? Theme.cardHover : Theme.card
    border.width: item.isScreenshot ? 1 : 0
    border.color: Theme.separator

    Drag.active: dragHandler.active
    Drag.dragType: Drag.Automatic
    Drag.supportedActions: Qt.CopyAction | Qt.MoveAction
    Drag.mimeData: ({ "text/uri-list": item.url.toString() })

    Image {
        id: picture
        anchors { top: parent.top; topMargin: 10; horizontalCenter: parent.horizontalCenter }
        width: 72; height: 56
        visible: tile.item.isPicture
        source: tile.item.isPicture ? tile.item.url : ""
        sourceSize: Qt.size(144, 112)
        fillMode: Image.PreserveAspectFit
        asynchronous: true
    }
    PlainText {
        anchors.centerIn: picture
        visible: !tile.item.isPicture
        text: tile.item.isFolder ? "▤" : "▢"
        color: Theme.textDim
        font.pixelSize: 34
    }
    Column {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: 8 }
        PlainText {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: tile.item.name
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
            elide: Text.ElideMiddle
        }
        PlainText {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: tile.item.size
            color: Theme.textFaint
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
        }
    }

    Flow {
        anchors { top: parent.top; left: parent.left; right: parent.right; margins: 4 }
        spacing: 2
        visible: !dragHandler.active
        opacity: hover.hovered || Theme.holdsKeyboard(tile, Window.activeFocusItem) ? 1 : 0
        TextButton { label: "Open"; onClicked: tile.action("open") }
        TextButton { label: "Show"; onClicked: tile.action("reveal") }
        TextButton { label: "Copy"; onClicked: tile.action("copy") }
        TextButton { label: "Zip"; onClicked: tile.action("compress") }
        TextButton { label: "PNG"; visible: tile.item.isPicture; onClicked: tile.action("convert") }
        TextButton { label: "✕"; onClicked: tile.action("remove") }
    }

    HoverHandler { id: hover }
    DragHandler { id: dragHandler; target: null }
}
