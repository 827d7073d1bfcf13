import QtQuick

// One tab of the pager.
Rectangle {
    id: tab
    property string title
    property bool selected: false
    signal clicked()

    implicitWidth: label.implicitWidth + 20
    implicitHeight: 26
    radius: height / 2
    color: selected ? Theme.cardHover : (hover.hovered ? Theme.card : "transparent")
    Behavior on color { ColorAnimation { duration: Theme.fast } }

    PlainText {
        id: label
        anchors.centerIn: parent
        text: tab.title
        color: tab.selected ? Theme.text : Theme.textDim
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontBody
        font.weight: tab.selected ? Font.DemiBold : Font.Normal
    }
    HoverHandler { id: hover }
    TapHandler { onTapped: tab.clicked() }
    FocusRing { onActivated: tab.clicked() }
}
