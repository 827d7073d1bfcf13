pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Window

// The rest of a shelf file's actions, opened from its tile's "More…": show it in its folder, copy,
// zip, convert to the formats the file can become, remove. It opens beside the button that asked,
// within the page, and closes on a choice, on Escape or on a click elsewhere, giving the keyboard
// back to that button.
Rectangle {
    id: menu
    property var item: null   // the shelf row the menu is for
    property Item from: null  // the button that opened it
    signal chosen(var row, string action, string argument)

    readonly property bool open: item !== null
    readonly property var entries: {
        if (!item)
            return []
        const list = [{ label: "Show in folder", action: "reveal", argument: "" },
                      { label: "Copy", action: "copy", argument: "" },
                      { label: "Zip", action: "compress", argument: "" }]
        for (const format of item.convertTargets)
            list.push({ label: "Convert to " + format, action: "convert", argument: format })
        list.push({ label: "Remove from the shelf", action: "remove", argument: "" })
        return list
    }

    visible: open
    width: 180
    readonly property int rowHeight: 26
    // Known before the rows are laid out, so the menu is placed where it fits as it opens.
    height: entries.length * rowHeight + 8
    radius: Theme.radiusSmall
    color: Theme.cardHover
    border.width: 1
    border.color: Theme.separator

    // Opens beside the tile, never over it: to its right where there is room, else to its left.
    function openFor(row, button, tile) {
        const byKeyboard = holdsKeyboard(button)
        item = row
        from = button
        const place = tile.mapToItem(parent, 0, 0)
        const right = place.x + tile.width + 4
        x = right + width <= parent.width ? right : Math.max(0, place.x - width - 4)
        y = Math.max(0, Math.min(place.y, parent.height - height))
        if (byKeyboard && rows.count > 0)
            rows.itemAt(0).ring.forceActiveFocus(Qt.TabFocusReason)
        else
            forceActiveFocus()
    }
    function close() {
        const button = from
        const hadKeyboard = holdsKeyboard(menu)
        item = null
        from = null
        if (hadKeyboard && button)
            ringOf(button).forceActiveFocus()
    }
    function holdsKeyboard(within) {
        return Theme.holdsKeyboard(within, Window.activeFocusItem)
    }
    // The part of a control that takes the keyboard (its FocusRing), or the control itself.
    function ringOf(control) {
        for (let i = 0; i < control.children.length; ++i) {
            if (control.children[i].activeFocusOnTab)
                return control.children[i]
        }
        return control
    }

    Keys.onEscapePressed: close()

    Column {
        id: column
        anchors { fill: parent; margins: 4 }
        Repeater {
            id: rows
            model: menu.entries
            delegate: Rectangle {
                id: menuItem
                required property var modelData
                property alias ring: ring
                width: column.width
                height: menu.rowHeight
                radius: Theme.radiusSmall
                color: rowHover.hovered ? Theme.card : "transparent"
                PlainText {
                    anchors { left: parent.left; leftMargin: 10; verticalCenter: parent.verticalCenter }
                    text: menuItem.modelData.label
                    color: menuItem.modelData.action === "remove" ? Theme.bad : Theme.text
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.fontSmall
                }
                HoverHandler { id: rowHover }
                TapHandler { onTapped: menuItem.choose() }
                FocusRing {
                    id: ring
                    Keys.onEscapePressed: menu.close()
                    onActivated: menuItem.choose()
                }
                function choose() {
                    // Closing takes this row away, so the choice is told first.
                    menu.chosen(menu.item, menuItem.modelData.action, menuItem.modelData.argument)
                    menu.close()
                }
            }
        }
    }
}
