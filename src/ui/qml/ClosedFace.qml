pragma ComponentBehavior: Bound

import QtQuick
import Norva.Core

// The closed notch's face: the shown live activity drawn in the ears beside the notch (its mark on
// the left, its value on the right), its title faint in the middle, and its detail below while the
// person hovers it. The notch shape takes this item's implicit size and eases to it.
Item {
    id: closed
    property var face: ClosedFaceModel // the shown activity; a test hands over its own
    property var notch: null         // the NotchViewModel of this display
    property real centreWidth: 150   // the middle of the notch, where a camera would sit
    readonly property real barHeight: notch ? notch.closedHeight : 0
    readonly property bool hasContent: face.active || face.leftPiece !== "nothing" || face.rightPiece !== "nothing"
    // With nothing else to show, the weather takes the ears when the person switched it on.
    readonly property bool weatherShown: !hasContent && WeatherService.closedFaceReady
    readonly property bool detailShown: face.detailOpen && face.hasDetail
    readonly property bool musicShown: face.leftPiece === "music" || face.rightPiece === "music"
    // The song under the ears while music has them: while the notch peeks, and for a moment when a
    // new song starts (the music manager's song peek).
    readonly property bool songShown: musicShown && !detailShown && MusicManager.hasTrack
                                      && (MusicManager.songPeeking || (notch !== null && notch.stateName === "peek"))
    readonly property bool reduced: SettingsStore.reducedMotion

    // A song's title and artist may ask the notch to widen, up to a limit; longer ones are cut short.
    readonly property real songWidth: songShown ? Math.min(songLine.naturalWidth + 28, 360) : 0
    implicitWidth: hasContent ? Math.max(leftEar.implicitWidth + centreWidth + rightEar.implicitWidth, songWidth)
                 : weatherShown ? weatherFace.implicitWidth : 0
    readonly property bool timerControlsShown: detailShown && face.controls === "timer"
    readonly property bool dueActionsShown: detailShown && face.controls === "due"
    implicitHeight: barHeight + (detailShown ? detailText.implicitHeight + 16 : 0)
                    + (timerControlsShown ? timerControls.implicitHeight + 8 : 0)
                    + (dueActionsShown ? dueActions.implicitHeight + 8 : 0)
                    + (songShown ? songLine.implicitHeight + 8 : 0)

    // A new activity fades in rather than jumping into place; the turns of activities that rotate
    // swap in one repaint, so taking turns costs a frame a turn, not an animation.
    property string shownId: face.activityId
    onShownIdChanged: if (!reduced && !face.rotating) swap.restart()
    SequentialAnimation {
        id: swap
        NumberAnimation { target: bar; property: "opacity"; to: 0.15; duration: 70 }
        NumberAnimation { target: bar; property: "opacity"; to: 1; duration: Theme.normal; easing.type: Easing.OutCubic }
    }

    Item {
        id: bar
        anchors { top: parent.top; left: parent.left; right: parent.right }
        height: closed.barHeight

        ActivityEar {
            id: leftEar
            anchors { left: parent.left; top: parent.top }
            width: implicitWidth
            height: parent.height
            face: closed.face
            piece: closed.face.leftPiece
            side: "left"
        }

        Loader {
            id: weatherFace
            anchors { left: parent.left; top: parent.top }
            active: closed.weatherShown
            visible: active
            width: implicitWidth
            sourceComponent: ClosedWeather { centreWidth: closed.centreWidth }
        }

        PlainText {
            id: title
            anchors { left: leftEar.right; right: rightEar.left; verticalCenter: parent.verticalCenter
                      leftMargin: 6; rightMargin: 6 }
            horizontalAlignment: Text.AlignHCenter
            text: closed.face.active ? closed.face.title : ""
            color: Theme.textDim
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall
            elide: Text.ElideRight
            opacity: closed.face.pinned ? 1 : 0.85
        }

        ActivityEar {
            id: rightEar
            anchors { right: parent.right; top: parent.top }
            width: implicitWidth
            height: parent.height
            face: closed.face
            piece: closed.face.rightPiece
            side: "right"
        }

        // A click on the activity runs it, or opens the notch on its page.
        MouseArea {
            anchors.fill: parent
            enabled: closed.face.active
            acceptedButtons: Qt.LeftButton
            cursorShape: Qt.PointingHandCursor
            onClicked: closed.face.tap()
        }
    }

    PlainText {
        id: detailText
        anchors { top: bar.bottom; left: parent.left; right: parent.right; leftMargin: 14; rightMargin: 14 }
        horizontalAlignment: Text.AlignHCenter
        text: closed.face.detail
        color: Theme.text
        font.family: Theme.fontFamily
        font.pixelSize: Theme.fontSmall + 1
        elide: Text.ElideRight
        opacity: closed.detailShown ? 0.92 : 0
        visible: opacity > 0
        Behavior on opacity { NumberAnimation { duration: closed.reduced ? 0 : Theme.fast } }
    }

    Row {
        id: songLine
        anchors { top: bar.bottom; horizontalCenter: parent.horizontalCenter }
        readonly property real room: closed.width - 28
        readonly property real naturalWidth: songTitle.implicitWidth + (songArtist.visible ? spacing + songArtist.implicitWidth : 0)
        spacing: 6
        opacity: closed.songShown ? 1 : 0
        visible: opacity > 0
        Behavior on opacity { NumberAnimation { duration: closed.reduced ? 0 : Theme.fast } }
        PlainText {
            id: songTitle
            text: MusicManager.title
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall + 1
            font.weight: Font.DemiBold
            elide: Text.ElideRight
            width: Math.min(implicitWidth, songLine.room - Math.min(songArtist.implicitWidth, songLine.room * 0.4) - songLine.spacing)
        }
        PlainText {
            id: songArtist
            visible: text !== ""
            text: MusicManager.artist
            color: Theme.textDim
            font.family: Theme.fontFamily
            font.pixelSize: Theme.fontSmall + 1
            elide: Text.ElideRight
            width: Math.min(implicitWidth, songLine.room - songTitle.width - songLine.spacing)
        }
    }

    // A running timer is paused, resumed or stopped right here, without opening the notch.
    Row {
        id: timerControls
        anchors { top: detailText.bottom; topMargin: 6; horizontalCenter: parent.horizontalCenter }
        spacing: 6
        visible: closed.timerControlsShown
        TextButton {
            label: closed.face.symbol === "timerPaused" ? "Resume" : "Pause"
            onClicked: closed.face.perform(closed.face.symbol === "timerPaused" ? "resume" : "pause")
        }
        TextButton {
            label: "Stop"
            onClicked: closed.face.perform("stop")
        }
    }

    // A due to-do is answered right here: ticked done, or snoozed for ten minutes.
    Row {
        id: dueActions
        anchors { top: detailText.bottom; topMargin: 6; horizontalCenter: parent.horizontalCenter }
        spacing: 6
        visible: closed.dueActionsShown
        TextButton { label: "Done"; onClicked: closed.face.perform("done") }
        TextButton { label: "Snooze"; onClicked: closed.face.perform("snooze") }
    }
}
