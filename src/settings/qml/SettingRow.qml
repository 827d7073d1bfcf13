import QtQuick

// One setting: its name and one-line explanation, the control its kind calls for, and, when it
// needs something outside Norva, whether that works now and what to do when it does not.
Item {
    id: row
    required property var row
    required property var colors
    signal changed(var value)

    implicitHeight: Math.max(texts.implicitHeight, control.height) + status.height + 20

    Rectangle {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: 1
        color: row.colors.line
    }

    Column {
        id: texts
        anchors { left: parent.left; right: control.left; rightMargin: 16; top: parent.top; topMargin: 10 }
        PlainText {
            width: parent.width
            text: row.row.label
            color: row.colors.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontBody
            wrapMode: Text.WordWrap
        }
        PlainText {
            width: parent.width
            text: row.row.explanation
            color: row.colors.textDim
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
            wrapMode: Text.WordWrap
        }
    }

    Loader {
        id: control
        anchors { right: parent.right; top: parent.top; topMargin: 10 }
        sourceComponent: row.row.kind === "toggle" ? toggleControl
                       : row.row.kind === "number" ? numberControl
                       : row.row.kind === "choice" ? choiceControl : textControl
    }

    Column {
        id: status
        anchors { left: parent.left; right: parent.right; top: texts.height > control.height ? texts.bottom : control.bottom
                  topMargin: 6 }
        readonly property var facts: row.row.status || ({})
        visible: facts.text !== undefined
        height: visible ? implicitHeight + 2 : 0
        Row {
            spacing: 6
            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                width: 8; height: 8; radius: 4
                color: status.facts.works ? row.colors.good : row.colors.warn
            }
            PlainText {
                text: status.facts.text || ""
                color: status.facts.works ? row.colors.good : row.colors.warn
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontSmall
            }
        }
        PlainText {
            width: parent.width
            visible: (status.facts.fix || "").length > 0
            leftPadding: 14
            text: status.facts.fix || ""
            color: row.colors.textDim
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
            wrapMode: Text.WordWrap
        }
    }

    // The controls are made by the Loader above, which Qt 6.4 refuses for components bound to
    // this file ("Cannot instantiate bound component outside its creation context"), so the file
    // is not bound and the controls reach the row by its id.
    // qmllint disable unqualified
    Component {
        id: toggleControl
        SettingSwitch {
            colors: row.colors
            checked: row.row.value === true
            onToggled: on => row.changed(on)
        }
    }
    Component {
        id: numberControl
        SettingNumber {
            colors: row.colors
            value: Number(row.row.value)
            lowest: row.row.lowest
            highest: row.row.highest
            step: row.row.step
            unit: row.row.unit
            onPicked: value => row.changed(value)
        }
    }
    Component {
        id: choiceControl
        SettingChoice {
            colors: row.colors
            options: row.row.options
            value: row.row.value
            onPicked: value => row.changed(value)
        }
    }
    Component {
        id: textControl
        SettingField {
            colors: row.colors
            text: row.row.value || ""
            hint: row.row.example || ""
            onPicked: value => row.changed(value)
        }
    }
    // qmllint enable unqualified
}
