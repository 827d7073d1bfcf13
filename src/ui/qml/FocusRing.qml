import QtQuick

// What makes a control usable from the keyboard, the same everywhere: placed inside the control, it
// is reached with Tab (and Shift+Tab), draws the ring while it has the keyboard, answers Space and
// Enter with activated(), and moves on with the arrows as Tab does, so a row of tabs or a list is
// walked with the arrow keys.
Item {
    id: ring
    signal activated()
    // The control's corner radius, so the ring follows its outline.
    property real radius: parent ? ((parent as Rectangle)?.radius ?? Theme.radiusSmall) : 0
    property bool arrows: true
    anchors.fill: parent
    activeFocusOnTab: visible && enabled

    FocusOutline {
        shown: ring.activeFocus
        outlineRadius: ring.radius
    }

    Keys.onSpacePressed: ring.activated()
    Keys.onReturnPressed: ring.activated()
    Keys.onEnterPressed: ring.activated()
    Keys.onPressed: event => {
        if (!ring.arrows)
            return
        const forward = event.key === Qt.Key_Right || event.key === Qt.Key_Down
        const back = event.key === Qt.Key_Left || event.key === Qt.Key_Up
        if (!forward && !back)
            return
        const next = ring.nextItemInFocusChain(forward)
        if (next) {
            next.forceActiveFocus(forward ? Qt.TabFocusReason : Qt.BacktabFocusReason)
            event.accepted = true
        }
    }
}
