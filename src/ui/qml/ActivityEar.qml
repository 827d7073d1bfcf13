import QtQuick
import Norva.Core

// One ear beside the notch: the activity's mark, its value, a piece of the music face, or nothing.
// Its implicit width is what it needs, so the notch eases wider or narrower as the ear changes.
Item {
    id: ear
    required property var face      // the ClosedFaceModel
    required property string piece  // "nothing", "mark", "value" or "music"
    required property string side   // "left" or "right"
    readonly property string musicPiece: side === "left" ? face.musicLeft : face.musicRight
    readonly property color tint: toneColour(face.tone)
    readonly property real inner: 12 // from the notch's outer edge to the content

    implicitWidth: piece === "nothing" ? 0 : content.width + inner + 8
    implicitHeight: 32
    clip: true

    function toneColour(tone) {
        switch (tone) {
        case "good": return Theme.good
        case "warn": return Theme.warn
        case "bad": return Theme.bad
        case "neutral": return Theme.text
        default: return Theme.accent
        }
    }

    Item {
        id: content
        anchors.verticalCenter: parent.verticalCenter
        x: ear.side === "left" ? ear.inner : ear.width - width - ear.inner
        width: ear.piece === "mark" ? markItem.implicitWidth
             : ear.piece === "value" ? valueRow.implicitWidth
             : ear.piece === "music" ? (content.musicDrawn ? musicLoader.implicitWidth : quietMusic.implicitWidth) : 0
        height: 22

        ActivityMark {
            id: markItem
            visible: ear.piece === "mark"
            anchors.verticalCenter: parent.verticalCenter
            glyph: ear.face.glyph
            glyphStyle: ear.face.glyphStyle
            picture: ear.face.picture
            tint: ear.tint
            progress: ear.face.progress
            eases: !ear.face.rotating
        }

        Row {
            id: valueRow
            visible: ear.piece === "value"
            anchors.verticalCenter: parent.verticalCenter
            spacing: 6
            // Beside the music's art the value carries a small glyph, so it still says what it is.
            ActivityGlyph {
                visible: ear.face.leftPiece === "music"
                anchors.verticalCenter: parent.verticalCenter
                glyph: ear.face.glyph
                style: ear.face.glyphStyle
                color: ear.tint
                level: ear.face.progress
                size: 12
            }
            PlainText {
                anchors.verticalCenter: parent.verticalCenter
                text: ear.face.value !== "" ? ear.face.value : ear.face.title
                color: ear.face.tone === "neutral" ? Theme.text : ear.tint
                font.family: Theme.fontFamily
                font.pixelSize: Theme.fontBody
                font.weight: Font.DemiBold
                elide: Text.ElideRight
                width: Math.min(implicitWidth, 92)
            }
            RotationDots {
                anchors.verticalCenter: parent.verticalCenter
                count: ear.face.liveCount
                current: ear.face.shownPosition
                pinned: ear.face.pinned
            }
        }

        // The music face's own drawing when the media area ships one; a quiet note until then.
        readonly property bool musicDrawn: App.hasQml("MusicEar.qml")
        Loader {
            id: musicLoader
            visible: ear.piece === "music"
            active: ear.piece === "music" && content.musicDrawn
            anchors.verticalCenter: parent.verticalCenter
            source: active ? "MusicEar.qml" : ""
            onLoaded: {
                if (item.hasOwnProperty("piece"))
                    item.piece = Qt.binding(() => ear.musicPiece)
                if (item.hasOwnProperty("side"))
                    item.side = ear.side
            }
        }
        ActivityGlyph {
            id: quietMusic
            visible: ear.piece === "music" && !content.musicDrawn
            anchors.verticalCenter: parent.verticalCenter
            glyph: ear.face.glyphOf("listening")
            size: 14
            color: Theme.textDim
        }
    }
}
