pragma ComponentBehavior: Bound

import QtQuick

// The lyrics of the playing track: synced lines that follow the song with the current one lit,
// plain words to scroll, or one calm sentence while loading or when there are none.
Item {
    id: pane
    required property var lyrics
    property real position: 0
    property bool reducesMotion: false
    readonly property int currentLine: lyrics && lyrics.synced ? lyrics.lineIndexAt(position) : -1

    ListView {
        id: lines
        anchors.fill: parent
        visible: pane.lyrics && pane.lyrics.synced
        model: visible ? pane.lyrics.lines : null
        clip: true
        spacing: 6
        interactive: false
        currentIndex: Math.max(pane.currentLine, 0)
        highlightRangeMode: ListView.StrictlyEnforceRange
        preferredHighlightBegin: height / 2 - 14
        preferredHighlightEnd: height / 2 + 14
        highlightMoveDuration: pane.reducesMotion ? 0 : Theme.slow
        delegate: PlainText {
            required property var row
            required property int index
            width: lines.width
            text: row.text.length > 0 ? row.text : "♪"
            wrapMode: Text.WordWrap
            color: index === pane.currentLine ? Theme.text : Theme.textFaint
            font.family: Theme.fontFamily
            font.pixelSize: index === pane.currentLine ? Theme.fontTitle : Theme.fontBody
            font.weight: index === pane.currentLine ? Font.DemiBold : Font.Normal
            Behavior on color { enabled: !pane.reducesMotion; ColorAnimation { duration: Theme.normal } }
        }
    }

    Flickable {
        anchors.fill: parent
        visible: pane.lyrics && pane.lyrics.plain
        contentHeight: plain.implicitHeight
        clip: true
        PlainText {
            id: plain
            width: parent.width
            text: pane.lyrics ? pane.lyrics.plainText : ""
            wrapMode: Text.WordWrap
            color: Theme.textDim
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontBody
            lineHeight: 1.3
        }
    }

    Column {
        anchors.centerIn: parent
        spacing: Theme.spacing
        visible: pane.lyrics && pane.lyrics.message.length > 0
        PlainText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: pane.lyrics ? pane.lyrics.message : ""
            color: Theme.textDim
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontBody
        }
        PlainText {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: pane.lyrics && pane.lyrics.failed
            text: "Try again"
            color: Theme.accent
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
            TapHandler { onTapped: pane.lyrics.retry() }
            FocusRing { onActivated: pane.lyrics.retry() }
        }
    }
}
