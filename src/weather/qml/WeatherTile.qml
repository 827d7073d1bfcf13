pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// The weather on the open panel's first page: the temperature, the sky and the place, how old the
// forecast is, and the next few hours. A click opens the Weather page.
Rectangle {
    id: tile
    readonly property WeatherService service: WeatherService
    readonly property bool shown: service !== null && service.hasReading
    signal openRequested()

    implicitWidth: 270
    implicitHeight: 96
    radius: Theme.radius
    color: hover.hovered ? Theme.cardHover : Theme.card

    Row {
        id: now
        visible: tile.shown
        anchors { left: parent.left; top: parent.top; leftMargin: 12; topMargin: 10 }
        spacing: 8
        WeatherGlyph {
            anchors.verticalCenter: parent.verticalCenter
            name: tile.service ? tile.service.glyph : ""
            size: 26
        }
        Column {
            anchors.verticalCenter: parent.verticalCenter
            PlainText {
                text: tile.service ? tile.service.temperature + "  " + tile.service.conditionText : ""
                color: Theme.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontTitle
                font.weight: Font.DemiBold
            }
            // The place and how fresh the forecast is; an old one says so in the warning colour.
            Row {
                spacing: 5
                PlainText {
                    width: Math.min(implicitWidth, tile.width - 60 - age.implicitWidth)
                    text: tile.service ? tile.service.placeName : ""
                    elide: Text.ElideRight
                    color: Theme.textDim
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.fontSmall
                }
                PlainText {
                    id: age
                    text: tile.service ? "\u00B7 " + tile.service.ageText : ""
                    color: tile.service && tile.service.isOld ? Theme.warn : Theme.textFaint
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.fontSmall
                }
            }
        }
    }

    Row {
        visible: tile.shown
        anchors { left: parent.left; bottom: parent.bottom; leftMargin: 12; bottomMargin: 8 }
        spacing: 12
        Repeater {
            model: tile.service ? tile.service.hours : null
            // The four hours after this one; the row leaves the hidden ones no room.
            delegate: Row {
                id: hourCell
                required property var row
                required property int index
                visible: index >= 1 && index < 5
                spacing: 3
                PlainText {
                    anchors.verticalCenter: parent.verticalCenter
                    text: hourCell.row.label.slice(0, 2)
                    color: Theme.textFaint
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.fontSmall - 1
                }
                WeatherGlyph { anchors.verticalCenter: parent.verticalCenter; name: hourCell.row.glyph; size: 11 }
                PlainText {
                    anchors.verticalCenter: parent.verticalCenter
                    text: hourCell.row.temperature
                    color: Theme.textDim
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.fontSmall
                }
            }
        }
    }

    PlainText {
        visible: !tile.shown
        anchors.centerIn: parent
        width: parent.width - 24
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.WordWrap
        text: tile.service ? (tile.service.statusText !== "" ? tile.service.statusText : "Weather") : "Weather"
        color: Theme.textDim
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall
    }

    HoverHandler { id: hover }
    TapHandler { onTapped: tile.openRequested() }
    FocusRing { onActivated: tile.openRequested() }
}
