import QtQuick
import QtQuick.Window

// Norva's settings in a window of their own, as the desktop draws its windows: light or dark as
// the desktop prefers. The groups on the left, the chosen group's settings on the right, each
// written at once. Quit is always at the foot of the groups.
Window {
    id: window
    width: 780
    height: 580
    minimumWidth: 640
    minimumHeight: 420
    title: "Norva Settings"
    color: colors.window

    readonly property var model: settingsWindow

    SettingsColors {
        id: colors
        dark: desktopScheme.dark
    }

    onVisibleChanged: if (visible) model.refresh()

    Rectangle {
        id: sidebar
        anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
        width: 210
        color: colors.sidebar

        Column {
            anchors { left: parent.left; right: parent.right; top: parent.top; margins: 12 }
            spacing: 2
            PlainText {
                text: "Settings"
                color: colors.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontLarge
                bottomPadding: 10
                leftPadding: 8
            }
            Repeater {
                model: window.model.groups
                delegate: Rectangle {
                    required property var modelData
                    readonly property bool chosen: modelData.id === window.model.section
                    width: parent.width
                    height: 30
                    radius: Theme.radiusSmall
                    color: chosen ? colors.accent : (groupHover.hovered ? colors.hover : "transparent")
                    PlainText {
                        anchors { left: parent.left; leftMargin: 10; verticalCenter: parent.verticalCenter }
                        text: parent.modelData.title
                        color: parent.chosen ? colors.onAccent : colors.text
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.fontBody
                    }
                    HoverHandler { id: groupHover }
                    TapHandler { onTapped: window.model.section = parent.modelData.id }
                }
            }
        }
        SettingsButton {
            id: quitButton
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: 12 }
            colors: colors
            label: "Quit Norva"
            onClicked: app.quit()
        }
    }

    Flickable {
        id: page
        anchors { left: sidebar.right; right: parent.right; top: parent.top; bottom: parent.bottom }
        contentHeight: body.implicitHeight + 40
        clip: true
        boundsBehavior: Flickable.StopAtBounds

        Column {
            id: body
            x: 28
            y: 20
            width: page.width - 56
            spacing: 0

            PlainText {
                width: parent.width
                text: {
                    for (const group of window.model.groups)
                        if (group.id === window.model.section) return group.title
                    return ""
                }
                color: colors.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontLarge
            }
            PlainText {
                width: parent.width
                text: window.model.summary
                color: colors.textDim
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
                wrapMode: Text.WordWrap
                bottomPadding: 12
            }
            Repeater {
                model: window.model.rows
                delegate: SettingRow {
                    required property var modelData
                    width: body.width
                    row: modelData
                    colors: colors
                    onChanged: value => window.model.setValue(modelData.key, value)
                }
            }
            Row {
                visible: window.model.section === "general"
                topPadding: 16
                spacing: Theme.spacing
                SettingsButton {
                    colors: colors
                    label: "Take the tour again"
                    onClicked: firstRun.startTour(0)
                }
            }
            PlainText {
                width: parent.width
                visible: window.model.section === "general" && app.desktopLimits.length > 0
                topPadding: 16
                text: app.desktopLimits
                color: colors.textDim
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontSmall
                wrapMode: Text.WordWrap
            }
        }
    }
}
