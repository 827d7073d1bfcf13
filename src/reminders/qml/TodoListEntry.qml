import QtQuick
import QtQuick.Window
import Norva.Core

// One entry of the to-do page's side column: a smart list or one of the person's lists, with its
// colour, name and count of open to-dos.
Rectangle {
    id: entry
    property var view
    property bool selected: false
    signal chosen()
    signal deleteRequested()

    height: 24
    radius: Theme.radiusSmall
    color: selected ? Theme.cardHover : (hover.hovered ? Theme.card : "transparent")

    Rectangle {
        id: dot
        anchors { left: parent.left; leftMargin: 8; verticalCenter: parent.verticalCenter }
        width: 8; height: 8; radius: 4
        color: entry.view.smart ? Theme.accent : (entry.view.color.length > 0 ? entry.view.color : Theme.textFaint)
        opacity: entry.view.smart ? 0.6 : 1
    }
    PlainText {
        anchors { left: dot.right; leftMargin: 7; right: count.left; rightMargin: 4; verticalCenter: parent.verticalCenter }
        text: entry.view.title
        color: entry.selected ? Theme.text : Theme.textDim
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall + 1
        elide: Text.ElideRight
    }
    PlainText {
        id: count
        anchors { right: remove.visible ? remove.left : parent.right; rightMargin: 8; verticalCenter: parent.verticalCenter }
        text: entry.view.count > 0 ? entry.view.count : ""
        color: Theme.textFaint
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall
    }
    PlainText {
        id: remove
        anchors { right: parent.right; rightMargin: 6; verticalCenter: parent.verticalCenter }
        visible: !entry.view.smart && !TodosPageModel.readOnly
        opacity: hover.hovered || Theme.holdsKeyboard(entry, Window.activeFocusItem) ? 1 : 0
        text: "×"
        color: Theme.textFaint
        font.pixelSize: Theme.fontBody
        TapHandler { onTapped: entry.deleteRequested() }
        FocusRing { onActivated: entry.deleteRequested() }
    }
    HoverHandler { id: hover }
    TapHandler { onTapped: entry.chosen() }
    FocusRing { onActivated: entry.chosen() }
}
