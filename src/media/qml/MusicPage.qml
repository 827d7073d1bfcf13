pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// Now playing: the cover, title and artist, a progress bar that moves and can be clicked to seek,
// the transport controls, and the lyrics following the song. With nothing playing it offers the
// installed players.
Item {
    id: page
    readonly property bool playing: MusicManager.hasTrack
    // The position ticks only while a page shows it; the page is made as the notch opens on it.
    Component.onCompleted: MusicManager.followPosition(true)
    Component.onDestruction: MusicManager.followPosition(false)

    function clock(seconds) {
        const whole = Math.max(0, Math.floor(seconds))
        const minutes = Math.floor(whole / 60)
        const rest = whole % 60
        return minutes + ":" + (rest < 10 ? "0" : "") + rest
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.radius
        color: MusicManager.albumTint.valid ? MusicManager.albumTint : Theme.card
        opacity: 0.55
        Behavior on color { enabled: !MusicManager.reducesMotion; ColorAnimation { duration: Theme.slow } }
    }
    Image {
        anchors.fill: parent
        source: MusicManager.albumWash
        visible: source != ""
        opacity: 0.35
        fillMode: Image.Stretch
        smooth: true
    }

    Item {
        id: nowPlaying
        visible: page.playing
        anchors { left: parent.left; top: parent.top; bottom: parent.bottom; margins: Theme.padding }
        width: parent.width * 0.48

        Rectangle {
            id: cover
            width: 112
            height: 112
            radius: Theme.radius
            color: Theme.cardHover
            clip: true
            Image {
                anchors.fill: parent
                source: MusicManager.artworkSource
                fillMode: Image.PreserveAspectCrop
                visible: source != ""
                smooth: true
            }
            PlainText {
                anchors.centerIn: parent
                visible: MusicManager.artworkSource === ""
                text: "♪"
                color: Theme.textFaint
                font.pixelSize: 40
            }
        }

        Column {
            anchors { left: cover.right; leftMargin: Theme.padding; right: parent.right; verticalCenter: cover.verticalCenter }
            spacing: 4
            PlainText {
                width: parent.width
                text: MusicManager.title
                elide: Text.ElideRight
                color: Theme.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontLarge
                font.weight: Font.DemiBold
            }
            PlainText {
                width: parent.width
                text: MusicManager.artist
                elide: Text.ElideRight
                color: Theme.textDim
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
            }
            PlainText {
                width: parent.width
                visible: text.length > 0
                text: MusicManager.sourceAppName.length > 0 ? "from " + MusicManager.sourceAppName : ""
                color: Theme.textFaint
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontSmall
            }
        }

        Item {
            id: progress
            anchors { left: parent.left; right: parent.right; top: cover.bottom; topMargin: Theme.padding }
            height: 26
            Rectangle {
                id: track
                anchors { left: parent.left; right: parent.right; top: parent.top; topMargin: 4 }
                height: 4
                radius: 2
                color: Theme.separator
                Rectangle {
                    width: parent.width * Math.min(1, Math.max(0, MusicManager.playbackProgress))
                    height: parent.height
                    radius: 2
                    color: MusicManager.albumAccentColor.valid ? MusicManager.albumAccentColor : Theme.accent
                }
            }
            TapHandler {
                enabled: MusicManager.duration > 0
                onTapped: (point) => MusicManager.seek(point.position.x / progress.width * MusicManager.duration)
            }
            PlainText {
                anchors { left: parent.left; bottom: parent.bottom }
                text: page.clock(MusicManager.displayElapsed)
                color: Theme.textFaint
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontSmall
            }
            PlainText {
                anchors { right: parent.right; bottom: parent.bottom }
                visible: MusicManager.duration > 0
                text: page.clock(MusicManager.duration)
                color: Theme.textFaint
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontSmall
            }
        }

        Row {
            id: controls
            anchors { horizontalCenter: parent.horizontalCenter; top: progress.bottom; topMargin: Theme.spacing }
            spacing: Theme.padding * 2
            Repeater {
                model: [
                    { glyph: "◀◀", action: "previous" },
                    { glyph: MusicManager.isPlaying ? "❚❚" : "▶", action: "toggle" },
                    { glyph: "▶▶", action: "next" }
                ]
                delegate: Rectangle {
                    id: control
                    required property var modelData
                    width: 40
                    height: 32
                    radius: Theme.radiusSmall
                    color: hover.hovered ? Theme.cardHover : "transparent"
                    PlainText {
                        anchors.centerIn: parent
                        text: control.modelData.glyph
                        color: Theme.text
                        font.family: Theme.fontFamily
                        font.pixelSize: control.modelData.action === "toggle" ? Theme.fontLarge : Theme.fontBody
                    }
                    HoverHandler { id: hover }
                    function act() {
                        if (modelData.action === "previous") MusicManager.previousTrack()
                        else if (modelData.action === "next") MusicManager.nextTrack()
                        else MusicManager.togglePlayPause()
                    }
                    TapHandler { onTapped: parent.act() }
                    FocusRing { onActivated: parent.act() }
                }
            }
        }

        // The output volume: shown once Norva has heard it, so the bar never starts from a guess.
        Item {
            id: volumeRow
            visible: MusicManager.volumeKnown
            anchors { left: parent.left; right: parent.right; top: controls.bottom; topMargin: Theme.spacing }
            height: 18
            ActivityGlyph {
                id: speaker
                anchors { left: parent.left; verticalCenter: parent.verticalCenter }
                style: "bars"
                muted: MusicManager.volumeMuted
                level: volumeTrack.level
                color: Theme.textDim
                size: 12
            }
            Item {
                id: volumeTrack
                anchors { left: speaker.right; leftMargin: Theme.spacing; right: parent.right
                          verticalCenter: parent.verticalCenter }
                height: parent.height
                // While dragged, and until the sound server has answered, the bar shows the hand's level.
                property real heldLevel: -1
                readonly property real level: heldLevel >= 0 ? heldLevel
                                            : Math.min(1, Math.max(0, MusicManager.volume))
                function choose(x) {
                    heldLevel = levelAt(x)
                    MusicManager.setVolume(heldLevel)
                }
                Connections {
                    target: MusicManager
                    function onVolumeChanged() { if (!drag.active) volumeTrack.heldLevel = -1 }
                    function onNoticeChanged() { if (!drag.active) volumeTrack.heldLevel = -1 }
                }
                Rectangle {
                    anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
                    height: 4
                    radius: 2
                    color: Theme.separator
                    Rectangle {
                        width: parent.width * volumeTrack.level
                        height: parent.height
                        radius: 2
                        color: MusicManager.volumeMuted ? Theme.textFaint : Theme.textDim
                    }
                }
                Rectangle {
                    x: volumeTrack.width * volumeTrack.level - width / 2
                    anchors.verticalCenter: parent.verticalCenter
                    width: 10
                    height: 10
                    radius: 5
                    color: Theme.text
                }
                function levelAt(x) { return Math.min(1, Math.max(0, x / width)) }
                TapHandler { onTapped: (point) => volumeTrack.choose(point.position.x) }
                DragHandler {
                    id: drag
                    target: null
                    yAxis.enabled: false
                    onCentroidChanged: if (active) volumeTrack.heldLevel = volumeTrack.levelAt(centroid.position.x)
                    onActiveChanged: if (!active && volumeTrack.heldLevel >= 0) MusicManager.setVolume(volumeTrack.heldLevel)
                }
            }
        }

        PlainText {
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            visible: text.length > 0
            text: MusicManager.notice.length > 0 ? MusicManager.notice : MusicManager.trouble
            wrapMode: Text.WordWrap
            color: Theme.warn
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
        }
    }

    LyricsPane {
        visible: page.playing
        anchors { left: nowPlaying.right; leftMargin: Theme.padding * 2; right: parent.right; top: parent.top
                  bottom: todoTile.visible && page.playing ? todoTile.top : weatherTile.top; margins: Theme.padding }
        lyrics: MusicManager.lyrics
        position: MusicManager.displayElapsed
        reducesMotion: MusicManager.reducesMotion
    }

    Column {
        anchors.centerIn: parent
        visible: !page.playing
        spacing: Theme.spacing
        PlainText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Nothing is playing"
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontTitle
            font.weight: Font.DemiBold
        }
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: Theme.spacing
            Repeater {
                model: MusicManager.launchablePlayers
                delegate: Rectangle {
                    id: playerRow
                    required property string modelData
                    width: label.implicitWidth + 20
                    height: 26
                    radius: height / 2
                    color: playerHover.hovered ? Theme.cardHover : Theme.card
                    PlainText {
                        id: label
                        anchors.centerIn: parent
                        text: "Open " + playerRow.modelData
                        color: Theme.textDim
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.fontSmall
                    }
                    HoverHandler { id: playerHover }
                    TapHandler { onTapped: MusicManager.launch(playerRow.modelData) }
                    FocusRing { onActivated: MusicManager.launch(playerRow.modelData) }
                }
            }
        }
    }

    // Today's and overdue to-dos at a glance, beside the weather; while a song plays it stands above
    // the weather, and only when something is due, so the lyrics keep their room.
    TodoTile {
        id: todoTile
        visible: !page.playing || dueCount > 0
        anchors { right: page.playing ? parent.right : weatherTile.left
                  bottom: page.playing ? weatherTile.top : parent.bottom
                  rightMargin: Theme.padding; bottomMargin: page.playing ? Theme.spacing : Theme.padding }
        width: page.playing ? weatherTile.width : implicitWidth
        height: implicitHeight
        onOpenRequested: App.openNotch("todos")
    }

    // The weather at a glance; a click opens its page.
    WeatherTile {
        id: weatherTile
        anchors { right: parent.right; bottom: parent.bottom; margins: Theme.padding }
        width: implicitWidth
        height: implicitHeight
        onOpenRequested: App.openNotch("weather")
    }
}
