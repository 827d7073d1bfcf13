pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Window
import Norva.Core

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
    color: look.window

    readonly property SettingsWindowModel model: SettingsWindowModel
    SettingsColors {
        id: look
        dark: DesktopColorScheme.dark
    }

    onVisibleChanged: if (visible) model.refresh()

    Rectangle {
        id: sidebar
        anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
        width: 210
        color: look.sidebar

        Column {
            anchors { left: parent.left; right: parent.right; top: parent.top; margins: 12 }
            spacing: 2
            PlainText {
                text: "Settings"
                color: look.text
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
                    color: chosen ? look.accent : (groupHover.hovered ? look.hover : "transparent")
                    PlainText {
                        anchors { left: parent.left; leftMargin: 10; verticalCenter: parent.verticalCenter }
                        text: parent.modelData.title
                        color: parent.chosen ? look.onAccent : look.text
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
            colors: look
            label: "Quit Norva"
            onClicked: App.quit()
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
                color: look.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontLarge
            }
            PlainText {
                width: parent.width
                text: window.model.summary
                color: look.textDim
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
                wrapMode: Text.WordWrap
                bottomPadding: 12
            }
            Repeater {
                model: window.model.rows
                delegate: SettingRow {
                    id: setting
                    width: body.width
                    colors: look
                    onChanged: value => window.model.setValue(setting.row.key, value)
                }
            }
            Row {
                visible: window.model.section === "general"
                topPadding: 16
                spacing: Theme.spacing
                SettingsButton {
                    colors: look
                    label: "Take the tour again"
                    onClicked: FirstRunGuide.startTour(0)
                }
            }
            PlainText {
                width: parent.width
                visible: window.model.section === "general" && App.desktopLimits.length > 0
                topPadding: 16
                text: App.desktopLimits
                color: look.textDim
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontSmall
                wrapMode: Text.WordWrap
            }
        }
    }
}
