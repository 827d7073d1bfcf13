import QtQuick

// A number with its unit, a step down and a step up, and a field to type it; the store clamps it.
Row {
    id: number
    required property var colors
    property real value
    property real lowest
    property real highest
    property real step: 1
    property string unit
    signal picked(real value)

    readonly property int decimals: step >= 1 ? 0 : Math.max(0, Math.ceil(-Math.log10(step)))
    spacing: 4

    SettingsButton {
        colors: number.colors
        label: "−"
        width: 30
        onClicked: number.picked(Math.max(number.lowest, number.value - number.step))
    }
    Rectangle {
        width: 64; height: 30
        radius: Theme.radiusSmall
        color: number.colors.field
        border.color: input.activeFocus ? number.colors.accent : number.colors.line
        TextInput {
            id: input
            anchors { fill: parent; leftMargin: 8; rightMargin: 8 }
            verticalAlignment: TextInput.AlignVCenter
            horizontalAlignment: TextInput.AlignRight
            text: number.value.toFixed(number.decimals)
            color: number.colors.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontBody
            selectByMouse: true
            validator: DoubleValidator { bottom: -1e9; top: 1e9 }
            onEditingFinished: {
                const typed = Number(text.replace(",", "."))
                if (!isNaN(typed) && typed !== number.value) number.picked(typed)
                // Shows the kept value again and follows it from then on, as the row stays shown.
                else text = Qt.binding(() => number.value.toFixed(number.decimals))
            }
        }
    }
    SettingsButton {
        colors: number.colors
        label: "+"
        width: 30
        onClicked: number.picked(Math.min(number.highest, number.value + number.step))
    }
    PlainText {
        anchors.verticalCenter: parent.verticalCenter
        width: 36
        text: number.unit
        color: number.colors.textDim
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall
    }
}
