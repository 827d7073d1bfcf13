import QtQuick
import Norva.Core

// The weather on the closed notch while nothing else is shown there: the sky's glyph in the left
// ear and the temperature in the right, with the notch's middle between them.
Item {
    id: closedWeather
    property real centreWidth: 150
    readonly property real earWidth: 44

    implicitWidth: earWidth * 2 + centreWidth
    implicitHeight: 32

    WeatherGlyph {
        anchors { left: parent.left; leftMargin: 14; verticalCenter: parent.verticalCenter }
        name: WeatherService.glyph
        size: 15
    }
    PlainText {
        anchors { right: parent.right; rightMargin: 14; verticalCenter: parent.verticalCenter }
        text: WeatherService.temperature
        color: Theme.text
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontBody
        font.weight: Font.DemiBold
    }
}
