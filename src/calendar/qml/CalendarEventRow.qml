import QtQuick

// One event in the two weeks' list: its calendar's colour, time, title and calendar (or
// "Norva only"), and Join when it has a link. Clicking the row edits it.
Rectangle {
    id: row
    required property var entry
    signal joinRequested()
    signal editRequested()

    height: 38
    radius: Theme.radiusSmall
    color: hover.hovered ? Theme.cardHover : Theme.card

    Rectangle {
        id: swatch
        anchors { left: parent.left; leftMargin: 8; verticalCenter: parent.verticalCenter }
        width: 4; height: 24; radius: 2
        color: row.entry.color.length > 0 ? row.entry.color : Theme.accent
    }
    PlainText {
        id: time
        anchors { left: swatch.right; leftMargin: 10; verticalCenter: parent.verticalCenter }
        width: 92
        text: row.entry.time
        color: Theme.textDim
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall
    }
    Column {
        anchors { left: time.right; leftMargin: 6; right: join.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
        PlainText {
            width: parent.width
            text: row.entry.title
            elide: Text.ElideRight
            color: row.entry.cancelled ? Theme.textFaint : Theme.text
            font.strikeout: row.entry.cancelled
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontBody
        }
        PlainText {
            width: parent.width
            text: row.entry.calendar + (row.entry.service.length > 0 ? " · " + row.entry.service : "")
            elide: Text.ElideRight
            color: row.entry.norvaOnly ? Theme.accent : Theme.textFaint
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall - 1
        }
    }
    TextButton {
        id: join
        anchors { right: parent.right; rightMargin: 8; verticalCenter: parent.verticalCenter }
        visible: row.entry.canJoin
        width: visible ? implicitWidth : 0
        label: "Join"
        onClicked: row.joinRequested()
    }
    HoverHandler { id: hover }
    // Join has its own tap; the rest of the row edits.
    TapHandler { onTapped: (point) => { if (!join.visible || point.position.x < join.x) row.editRequested() } }
    FocusRing { onActivated: row.editRequested() }
}
