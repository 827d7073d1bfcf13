import QtQuick
import QtQuick.Window

// One clip of the history: its words, picture or file names, where it came from, and its pin.
// A click copies it again.
Rectangle {
    id: row
    required property var entry
    signal copyRequested()
    signal pinToggled()
    signal removeRequested()

    implicitHeight: Math.max(40, body.implicitHeight + 14)
    radius: Theme.radiusSmall
    color: hover.hovered ? Theme.cardHover : Theme.card
    border.width: entry.copied ? 1 : 0
    border.color: Theme.accent

    readonly property var kindMarks: ({ "text": "T", "link": "↗", "image": "▣", "file": "▤", "color": "●", "code": "{}" })

    Rectangle {
        id: mark
        anchors { left: parent.left; leftMargin: 8; verticalCenter: parent.verticalCenter }
        width: 22; height: 22; radius: 6
        color: row.entry.kind === "color" ? row.entry.preview : Theme.separator
        PlainText {
            anchors.centerIn: parent
            visible: row.entry.kind !== "color"
            text: row.kindMarks[row.entry.kind] || "T"
            color: Theme.textDim
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
        }
    }

    Column {
        id: body
        anchors { left: mark.right; leftMargin: 10; right: actions.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
        spacing: 2
        Image {
            visible: row.entry.kind === "image"
            source: row.entry.kind === "image" ? row.entry.imageUrl : ""
            sourceSize.height: 48
            height: visible ? 48 : 0
            fillMode: Image.PreserveAspectFit
            asynchronous: true
        }
        PlainText {
            width: parent.width
            visible: row.entry.kind !== "image"
            text: row.entry.preview
            color: Theme.text
            font.family: row.entry.kind === "code" ? "DejaVu Sans Mono" : Theme.fontFamily
            font.pixelSize: Theme.fontBody
            elide: Text.ElideRight
            maximumLineCount: 2
            wrapMode: Text.Wrap
        }
        PlainText {
            width: parent.width
            text: (row.entry.app ? row.entry.app + " · " : "") + Qt.formatDateTime(row.entry.date, "d MMM, HH:mm")
            color: Theme.textFaint
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
            elide: Text.ElideRight
        }
    }

    Row {
        id: actions
        anchors { right: parent.right; rightMargin: 8; verticalCenter: parent.verticalCenter }
        spacing: 4
        readonly property bool keyed: Theme.holdsKeyboard(row, Window.activeFocusItem)
        opacity: hover.hovered || keyed || row.entry.pinned ? 1 : 0
        TextButton { label: row.entry.pinned ? "Unpin" : "Pin"; quiet: true; onClicked: row.pinToggled() }
        TextButton { label: "Remove"; quiet: true; opacity: hover.hovered || actions.keyed ? 1 : 0; onClicked: row.removeRequested() }
    }

    HoverHandler { id: hover }
    TapHandler { onTapped: row.copyRequested() }
    FocusRing { onActivated: row.copyRequested() }
}
