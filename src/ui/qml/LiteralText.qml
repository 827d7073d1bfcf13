import QtQuick

// A text that would run or be written (a command, a file's new content), shown whole and exactly:
// monospace, line breaks kept, tabs marked, and characters that draw nothing or turn the text round
// (bidi overrides such as U+202E, zero-width spaces, control characters) spelled out as <U+202E>, so
// the person reads what the agent will do. A few lines show at first; the rest is one click away and
// scrolls.
Column {
    id: literal
    property string text
    property int collapsedLines: 6
    property real expandedHeight: 260
    property bool expanded: false
    readonly property string shown: reveal(text)
    readonly property bool longer: body.lineCount > collapsedLines

    spacing: 4

    // The text as drawn: each invisible or direction-changing character written out, each tab as an
    // arrow before its tab stop.
    function reveal(raw) {
        return raw.replace(/[\u0000-\u0008\u000b-\u001f\u007f-\u009f\u061c\u200b-\u200f\u2028-\u202e\u2060-\u2064\u2066-\u206f\ufeff\ufff9-\ufffb]/g,
                           function (c) {
                               return "<U+" + ("000" + c.charCodeAt(0).toString(16).toUpperCase()).slice(-4) + ">"
                           })
                  .replace(/\t/g, "\u2192\t")
    }

    Rectangle {
        width: parent.width
        height: Math.min(body.implicitHeight, literal.expanded ? literal.expandedHeight
                                                               : literal.collapsedLines * metrics.height)
                + Theme.spacing * 2
        radius: Theme.radiusSmall
        color: Theme.panel

        Flickable {
            id: scroller
            anchors { fill: parent; margins: Theme.spacing }
            contentWidth: width
            contentHeight: body.implicitHeight
            interactive: literal.expanded && contentHeight > height
            clip: true
            boundsBehavior: Flickable.StopAtBounds

            PlainText {
                id: body
                width: scroller.width
                text: literal.shown
                color: Theme.text
                font.family: "DejaVu Sans Mono"
                font.pixelSize: Theme.fontSmall + 1
                wrapMode: Text.WrapAnywhere
            }
        }
        FontMetrics { id: metrics; font: body.font }
    }

    TextButton {
        visible: literal.longer
        label: literal.expanded ? "Show less" : "Show all " + body.lineCount + " lines"
        onClicked: {
            literal.expanded = !literal.expanded
            scroller.contentY = 0
        }
    }
}
