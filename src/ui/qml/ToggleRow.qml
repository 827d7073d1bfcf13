import QtQuick

// A labelled on/off switch drawn in Norva's own style.
Item {
    id: row
    property string label
    property string detail
    property bool checked: false
    signal toggled(bool on)

    implicitHeight: Math.max(32, texts.implicitHeight + 8)
    implicitWidth: 320

    Column {
        id: texts
        anchors { left: parent.left; right: track.left; rightMargin: Theme.spacing; verticalCenter: parent.verticalCenter }
        PlainText {
            width: parent.width
            text: row.label
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontBody
            elide: Text.ElideRight
        }
        PlainText {
            width: parent.width
            visible: row.detail.length > 0
            text: row.detail
            color: Theme.textFaint
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
            wrapMode: Text.WordWrap
        }
    }

    Rectangle {
        id: track
        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        width: 36; height: 20; radius: 10
        color: row.checked ? Theme.accent : Theme.separator
        Behavior on color { ColorAnimation { duration: Theme.fast } }
        Rectangle {
            width: 16; height: 16; radius: 8
            y: 2
            x: row.checked ? parent.width - width - 2 : 2
            color: Theme.text
            Behavior on x { NumberAnimation { duration: Theme.fast; easing.type: Easing.OutCubic } }
        }
    }
    TapHandler { onTapped: row.toggled(!row.checked) }
    FocusRing { radius: Theme.radiusSmall; onActivated: row.toggled(!row.checked) }
}
