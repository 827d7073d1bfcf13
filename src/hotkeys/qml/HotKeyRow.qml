import QtQuick

// One hot key on the Settings page: what it does, the key as the person wrote it (Enter keeps a
// new one, an empty field switches it off), and what stands in the way when the key can't be had.
Item {
    id: row
    required property var hotKey
    signal keyChosen(string text)

    implicitWidth: 320
    implicitHeight: top.height + (trouble.visible ? trouble.implicitHeight + 2 : 0) + 4

    Item {
        id: top
        width: parent.width
        height: 32
        PlainText {
            anchors { left: parent.left; right: field.left; rightMargin: Theme.spacing; verticalCenter: parent.verticalCenter }
            text: row.hotKey.title
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontBody
            elide: Text.ElideRight
        }
        InputField {
            id: field
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            width: 130
            height: 26
            fontSize: Theme.fontSmall
            text: row.hotKey.key
            hint: "No key"
            onAccepted: row.keyChosen(text)
        }
    }
    PlainText {
        id: trouble
        anchors { left: parent.left; right: parent.right; top: top.bottom; topMargin: 2 }
        visible: text.length > 0
        text: row.hotKey.trouble
        color: Theme.warn
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall
        wrapMode: Text.WordWrap
    }
}
