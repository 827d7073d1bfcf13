import QtQuick
import Norva.Core

// The music's piece of one ear beside the notch, as the person chose it for that side
// ("music.left.v1", "music.right.v1"): the cover as a small rounded square ("artAndRing", "art"),
// the play/pause mark ("playPause"), or the playing bars ("equaliser", and anything unknown).
Item {
    id: ear
    property string piece: ""
    property string side: "left"
    readonly property bool playing: MusicManager.isPlaying
    readonly property bool showsCover: piece === "artAndRing" || piece === "art"
    readonly property bool showsPlayPause: piece === "playPause"
    readonly property bool showsBars: !showsCover && !showsPlayPause
    readonly property color accent: MusicManager.albumAccentColor.valid ? MusicManager.albumAccentColor : Theme.text

    implicitWidth: showsCover ? cover.width : showsPlayPause ? playPause.implicitWidth : bars.implicitWidth
    implicitHeight: 22

    Item {
        id: cover
        visible: ear.showsCover
        anchors.verticalCenter: parent.verticalCenter
        width: 20
        height: 20
        // The cover comes rounded and small from the music manager; until it is there (or when the
        // song has none), a quiet note on a rounded card.
        Image {
            id: art
            anchors.fill: parent
            source: MusicManager.coverSource
            sourceSize { width: 48; height: 48 }
            fillMode: Image.PreserveAspectCrop
            smooth: true
            visible: status === Image.Ready
        }
        Rectangle {
            anchors.fill: parent
            visible: !art.visible
            radius: 5
            color: Theme.cardHover
            PlainText {
                anchors.centerIn: parent
                text: "\u266A"
                color: Theme.textDim
                font.family: Theme.fontFamily
                font.pixelSize: 12
            }
        }
    }

    PlainText {
        id: playPause
        visible: ear.showsPlayPause
        anchors.verticalCenter: parent.verticalCenter
        // What a press on the player's own button would do: pause while it plays.
        text: ear.playing ? "\u2016" : "\u25B6"
        color: Theme.text
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontBody
        font.weight: Font.DemiBold
    }

    EqualiserBars {
        id: bars
        visible: ear.showsBars
        anchors.verticalCenter: parent.verticalCenter
        playing: ear.playing
        reduced: MusicManager.reducesMotion
        colour: ear.accent
    }
}
