pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// The weather page: now (temperature, sky, place), the next hours and the next days on the left;
// on the right the place picker (search as you type, pin a result, back to the automatic place)
// and the temperature unit.
Item {
    id: page
    readonly property WeatherService service: WeatherService
    readonly property WeatherPlacePicker picker: WeatherPlacePicker
    Item {
        id: forecast
        anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
        width: parent.width * 0.56

        Row {
            id: now
            anchors { left: parent.left; top: parent.top; topMargin: 2 }
            spacing: 12
            visible: page.service.hasReading
            WeatherGlyph {
                anchors.verticalCenter: parent.verticalCenter
                name: page.service.glyph
                size: 40
            }
            Column {
                anchors.verticalCenter: parent.verticalCenter
                Row {
                    spacing: 10
                    PlainText {
                        text: page.service.temperature
                        color: Theme.text
                        font.family: Theme.fontFamily
                        font.pixelSize: 30
                        font.weight: Font.DemiBold
                    }
                    PlainText {
                        anchors.baseline: parent.children[0].baseline
                        text: page.service.conditionText
                        color: Theme.textDim
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.fontTitle
                    }
                }
                PlainText {
                    width: forecast.width - 70
                    text: page.service.placeName
                    elide: Text.ElideRight
                    color: Theme.text
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.fontBody
                }
            }
        }

        // How fresh the forecast is, or what is under way, or what went wrong.
        PlainText {
            id: status
            anchors { left: parent.left; right: parent.right; top: page.service.hasReading ? now.bottom : parent.top
                      topMargin: 6 }
            text: page.service.statusText
            wrapMode: Text.WordWrap
            color: page.service.failure !== "" || page.service.isOld ? Theme.warn : Theme.textFaint
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
        }

        Row {
            id: hours
            anchors { left: parent.left; top: status.bottom; topMargin: 12 }
            spacing: 6
            Repeater {
                model: page.service.hours
                delegate: Rectangle {
                    id: hourCell
                    required property var row
                    width: 60
                    height: 70
                    radius: Theme.radiusSmall
                    color: Theme.card
                    Column {
                        anchors.centerIn: parent
                        spacing: 3
                        PlainText {
                            anchors.horizontalCenter: parent.horizontalCenter
                            text: hourCell.row.label
                            color: Theme.textDim
                            font.family: Theme.fontFamily
                            font.pixelSize: Theme.fontSmall
                        }
                        WeatherGlyph {
                            anchors.horizontalCenter: parent.horizontalCenter
                            name: hourCell.row.glyph
                            size: 16
                        }
                        PlainText {
                            anchors.horizontalCenter: parent.horizontalCenter
                            text: hourCell.row.temperature
                            color: Theme.text
                            font.family: Theme.fontFamily
                            font.pixelSize: Theme.fontBody
                        }
                    }
                }
            }
        }

        Column {
            anchors { left: parent.left; right: parent.right; top: hours.bottom; topMargin: 10 }
            spacing: 2
            Repeater {
                model: page.service.days
                delegate: Item {
                    id: dayRow
                    required property var row
                    width: parent.width
                    height: 20
                    PlainText {
                        id: dayLabel
                        width: 56
                        anchors.verticalCenter: parent.verticalCenter
                        text: dayRow.row.label
                        color: Theme.text
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.fontBody
                    }
                    WeatherGlyph {
                        id: dayGlyph
                        anchors { left: dayLabel.right; verticalCenter: parent.verticalCenter }
                        width: 22
                        name: dayRow.row.glyph
                        size: 14
                    }
                    PlainText {
                        anchors { left: dayGlyph.right; leftMargin: 8; verticalCenter: parent.verticalCenter }
                        text: dayRow.row.text
                        color: Theme.textDim
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.fontSmall
                    }
                    PlainText {
                        anchors { right: parent.right; rightMargin: 8; verticalCenter: parent.verticalCenter }
                        text: dayRow.row.maximum + "  " + dayRow.row.minimum
                        color: Theme.text
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.fontBody
                    }
                }
            }
        }
    }

    Item {
        id: places
        anchors { left: forecast.right; leftMargin: Theme.padding * 2; right: parent.right; top: parent.top
                  bottom: parent.bottom }

        PlainText {
            id: placesTitle
            anchors { left: parent.left; top: parent.top }
            text: page.service.isManualPlace ? "Pinned place" : "Place found from your network"
            color: Theme.textDim
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
        }

        Rectangle {
            id: searchBox
            anchors { left: parent.left; right: parent.right; top: placesTitle.bottom; topMargin: 6 }
            height: 28
            radius: height / 2
            color: Theme.card
            FocusOutline { shown: search.activeFocus; outlineRadius: parent.radius }
            TextInput {
                id: search
                activeFocusOnTab: true
                anchors { fill: parent; leftMargin: 12; rightMargin: 12 }
                verticalAlignment: TextInput.AlignVCenter
                color: Theme.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
                clip: true
                text: page.picker.query
                onTextEdited: page.picker.query = text
            }
            PlainText {
                anchors { left: parent.left; leftMargin: 12; verticalCenter: parent.verticalCenter }
                visible: search.text.length === 0
                text: "Search a city to pin"
                color: Theme.textFaint
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
            }
        }

        Column {
            id: results
            anchors { left: parent.left; right: parent.right; top: searchBox.bottom; topMargin: 6 }
            spacing: 2
            PlainText {
                visible: page.picker.message !== ""
                width: parent.width
                text: page.picker.message
                wrapMode: Text.WordWrap
                color: Theme.textDim
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontSmall
            }
            Repeater {
                model: page.picker.results
                delegate: Rectangle {
                    id: placeRow
                    required property var row
                    required property int index
                    width: results.width
                    height: 24
                    radius: Theme.radiusSmall
                    color: rowHover.hovered ? Theme.cardHover : "transparent"
                    PlainText {
                        anchors { left: parent.left; right: parent.right; leftMargin: 8; rightMargin: 8
                                  verticalCenter: parent.verticalCenter }
                        text: placeRow.row.name
                        elide: Text.ElideRight
                        color: Theme.text
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.fontBody
                    }
                    HoverHandler { id: rowHover }
                    TapHandler { onTapped: page.picker.pin(placeRow.index) }
                    FocusRing { onActivated: page.picker.pin(placeRow.index) }
                }
            }
        }

        Flow {
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            spacing: Theme.spacing
            TextButton {
                visible: page.service.isManualPlace
                label: "Back to automatic"
                onClicked: page.picker.useAutomatic()
            }
            TextButton {
                label: page.service.unitLabel
                onClicked: page.service.nextUnitChoice()
            }
            TextButton {
                label: page.service.showOnClosedNotch ? "Shown on the closed notch" : "Show on the closed notch"
                onClicked: page.service.showOnClosedNotch = !page.service.showOnClosedNotch
            }
        }
    }
}
