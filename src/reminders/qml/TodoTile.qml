pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// The to-dos on the open panel's first page: today's and overdue ones, the next few with their
// due, and how many more wait. A click opens the To-dos page. Titles come from the person's files
// and are drawn as plain text.
Rectangle {
    id: tile
    readonly property TodosPageModel model: TodosPageModel
    readonly property int dueCount: model ? model.dueCount : 0
    readonly property int shownCount: model ? model.tileRows.count : 0
    signal openRequested()

    implicitWidth: 270
    implicitHeight: 96
    radius: Theme.radius
    color: hover.hovered ? Theme.cardHover : Theme.card

    PlainText {
        id: heading
        anchors { left: parent.left; top: parent.top; leftMargin: 12; topMargin: 8 }
        text: tile.dueCount > tile.shownCount ? "To-dos  \u00B7 " + (tile.dueCount - tile.shownCount) + " more"
                                                : "To-dos"
        color: Theme.textDim
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall
        font.weight: Font.DemiBold
    }

    Column {
        anchors { left: parent.left; right: parent.right; top: heading.bottom; topMargin: 4
                  leftMargin: 12; rightMargin: 12 }
        spacing: 2
        Repeater {
            model: tile.model ? tile.model.tileRows : null
            delegate: Item {
                id: dueRow
                required property var row
                width: parent.width
                height: 19
                Rectangle {
                    id: mark
                    anchors { left: parent.left; verticalCenter: parent.verticalCenter }
                    width: 8; height: 8; radius: 4
                    color: "transparent"
                    border.width: 1.5
                    border.color: dueRow.row.listColor.length > 0 ? dueRow.row.listColor : Theme.textDim
                }
                PlainText {
                    anchors { left: mark.right; leftMargin: 7; right: dueText.left; rightMargin: 8
                              verticalCenter: parent.verticalCenter }
                    text: dueRow.row.title
                    color: Theme.text
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.fontSmall + 1
                    elide: Text.ElideRight
                }
                PlainText {
                    id: dueText
                    anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                    text: dueRow.row.dueText
                    color: dueRow.row.dueState === "overdue" ? Theme.bad
                         : dueRow.row.dueState === "today" ? Theme.warn : Theme.textDim
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.fontSmall
                }
            }
        }
    }

    PlainText {
        visible: tile.dueCount === 0
        anchors { left: parent.left; right: parent.right; top: heading.bottom; topMargin: 14
                  leftMargin: 12; rightMargin: 12 }
        wrapMode: Text.WordWrap
        text: !tile.model ? "" : tile.model.access === "noFolder" ? "No to-do lists yet. Open to make one."
                                : "Nothing due today."
        color: Theme.textFaint
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall
    }

    HoverHandler { id: hover }
    TapHandler { onTapped: tile.openRequested() }
    FocusRing { onActivated: tile.openRequested() }
}
