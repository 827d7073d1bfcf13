import QtQuick
import QtQuick.Window

// One file waiting on the shelf: its picture or symbol, its name, and the folder it came from when
// another file on the shelf has the same name. Dragged, it leaves as the file itself, a copy unless
// the place it goes asks to move it. Hovered or reached from the keyboard, a bar under the name
// offers Open, the rest of the actions (a menu) and Remove; the bar has its own room and never
// covers the picture.
Rectangle {
    id: tile
    required property var item
    signal action(string name)
    signal menuWanted(Item from)  // the button that asked

    readonly property bool barShown: hover.hovered || Theme.holdsKeyboard(tile, Window.activeFocusItem)

    width: 112
    height: 146
    radius: Theme.radius
    color: hover.hovered ? Theme.cardHover : Theme.card
    border.width: item.isScreenshot ? 1 : 0
    border.color: Theme.separator

    Drag.active: dragHandler.active
    Drag.dragType: Drag.Automatic
    Drag.supportedActions: Qt.CopyAction | Qt.MoveAction
    Drag.proposedAction: Qt.CopyAction
    Drag.mimeData: ({ "text/uri-list": item.url.toString() })

    Image {
        id: picture
        objectName: "picture"
        anchors { top: parent.top; topMargin: 10; horizontalCenter: parent.horizontalCenter }
        width: 72; height: 56
        visible: tile.item.isPicture
        source: tile.item.isPicture ? tile.item.url : ""
        sourceSize { width: 144; height: 112 }
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
        id: words
        anchors { top: picture.bottom; topMargin: 6; left: parent.left; right: parent.right; leftMargin: 6; rightMargin: 6 }
        PlainText {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: tile.item.name
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
            elide: Text.ElideMiddle
        }
        // Where the file is, when another on the shelf has its name; its size otherwise.
        PlainText {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: tile.item.place !== "" ? tile.item.place : tile.item.size
            color: tile.item.place !== "" ? Theme.textDim : Theme.textFaint
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
            elide: Text.ElideLeft
        }
    }

    Row {
        id: bar
        objectName: "actionBar"
        anchors { bottom: parent.bottom; bottomMargin: 5; horizontalCenter: parent.horizontalCenter }
        spacing: 3
        visible: !dragHandler.active
        opacity: tile.barShown ? 1 : 0
        TextButton { label: "Open"; onClicked: tile.action("open") }
        TextButton { id: more; label: "More…"; onClicked: tile.menuWanted(more) }
    }

    HoverHandler { id: hover }
    DragHandler { id: dragHandler; target: null }
}
