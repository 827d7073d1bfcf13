import QtQuick

// What a page shows while it has nothing yet: its name and one calm sentence.
Item {
    id: empty
    property string title
    property string text

    Column {
        anchors.centerIn: parent
        spacing: 6
        PlainText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: empty.title
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontTitle
            font.weight: Font.DemiBold
        }
        PlainText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: empty.text
            color: Theme.textDim
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontBody
        }
    }
}
