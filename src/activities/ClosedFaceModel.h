#pragma once

#include "activities/ClosedLayout.h"
#include "app/QmlInstances.h"

#include <QObject>
#include <QPointer>
#include <QtQmlIntegration/qqmlintegration.h>

namespace norva {

class LiveActivityCoordinator;
class SettingsStore;

// The closed notch's face as the QML draws it: what each ear shows, the shown activity's symbol,
// words, progress and detail, built from the coordinator's layout. It also carries the person's
// side of the face back: the pointer over the notch pauses the holds, a click runs the activity.
class ClosedFaceModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool active READ active NOTIFY changed)
    Q_PROPERTY(QString activityId READ activityId NOTIFY changed)
    Q_PROPERTY(QString kind READ kind NOTIFY changed)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed)
    Q_PROPERTY(QString glyph READ glyph NOTIFY changed)
    Q_PROPERTY(QString glyphStyle READ glyphStyle NOTIFY changed)
    Q_PROPERTY(QString picture READ picture NOTIFY changed)
    Q_PROPERTY(QString tone READ tone NOTIFY changed)
    Q_PROPERTY(QString controls READ controls NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString value READ value NOTIFY changed)
    Q_PROPERTY(QString detail READ detail NOTIFY changed)
    Q_PROPERTY(bool hasDetail READ hasDetail NOTIFY changed)
    Q_PROPERTY(double progress READ progress NOTIFY changed)
    Q_PROPERTY(bool pinned READ pinned NOTIFY changed)
    Q_PROPERTY(bool hoverOpens READ hoverOpens NOTIFY changed)
    Q_PROPERTY(QString leftPiece READ leftPiece NOTIFY changed)
    Q_PROPERTY(QString rightPiece READ rightPiece NOTIFY changed)
    Q_PROPERTY(QString musicLeft READ musicLeft NOTIFY changed)
    Q_PROPERTY(QString musicRight READ musicRight NOTIFY changed)
    Q_PROPERTY(int liveCount READ liveCount NOTIFY changed)
    Q_PROPERTY(int shownPosition READ shownPosition NOTIFY changed)
    Q_PROPERTY(bool rotating READ rotating NOTIFY changed)
    Q_PROPERTY(QString urgentTab READ urgentTab NOTIFY changed)
    Q_PROPERTY(bool musicPlaying READ musicPlaying WRITE setMusicPlaying NOTIFY inputsChanged)
    Q_PROPERTY(bool pointerInside READ pointerInside WRITE setPointerInside NOTIFY inputsChanged)
    Q_PROPERTY(bool detailOpen READ detailOpen WRITE setDetailOpen NOTIFY inputsChanged)

public:
    static ClosedFaceModel* create(QQmlEngine*, QJSEngine*) { return QmlInstances::of<ClosedFaceModel>(); }
    // What the face draws, as plain values; compared so that the QML hears only real changes.
    struct Face {
        bool active = false;
        QString activityId, kind, symbol, tone, title, value, detail;
        QString glyph;          // the character drawn for the symbol
        QString glyphStyle;     // "character", "dot" (small) or "bars" (the level as four bars)
        QString picture;        // drawn instead of the glyph (a new screenshot's thumbnail), as a data URL
        QString controls;       // buttons under the detail: "timer", "due" or none
        double progress = -1.0; // below 0: no progress to draw
        bool pinned = false;
        bool hoverOpens = false;
        QString leftPiece, rightPiece, musicLeft, musicRight;
        int liveCount = 0;
        int shownPosition = -1;
        bool rotating = false;
        QString urgentTab;
        bool operator==(const Face&) const = default;
    };

    explicit ClosedFaceModel(LiveActivityCoordinator& coordinator, QObject* parent = nullptr);

    // Reads the music ears' preferences from the store, now and whenever they change.
    void follow(SettingsStore& settings);
    void setPrefs(const ClosedPrefs& prefs);

    // The face for one layout: the activity's look from the kinds' table, and its words.
    static Face faceFor(const ClosedLayout& layout, const std::optional<QString>& urgentTab);
    // The glyph of a kind by its word ("listening"), for a face drawn without an activity.
    Q_INVOKABLE QString glyphOf(const QString& kindWord) const;

    const Face& face() const { return m_face; }
    bool active() const { return m_face.active; }
    QString activityId() const { return m_face.activityId; }
    QString kind() const { return m_face.kind; }
    QString symbol() const { return m_face.symbol; }
    QString glyph() const { return m_face.glyph; }
    QString glyphStyle() const { return m_face.glyphStyle; }
    QString picture() const { return m_face.picture; }
    QString tone() const { return m_face.tone; }
    QString controls() const { return m_face.controls; }
    QString title() const { return m_face.title; }
    QString value() const { return m_face.value; }
    QString detail() const { return m_face.detail; }
    bool hasDetail() const { return !m_face.detail.isEmpty(); }
    double progress() const { return m_face.progress; }
    bool pinned() const { return m_face.pinned; }
    bool hoverOpens() const { return m_face.hoverOpens; }
    QString leftPiece() const { return m_face.leftPiece; }
    QString rightPiece() const { return m_face.rightPiece; }
    QString musicLeft() const { return m_face.musicLeft; }
    QString musicRight() const { return m_face.musicRight; }
    int liveCount() const { return m_face.liveCount; }
    int shownPosition() const { return m_face.shownPosition; }
    bool rotating() const { return m_face.rotating; }
    QString urgentTab() const { return m_face.urgentTab; }

    bool musicPlaying() const { return m_musicPlaying; }
    void setMusicPlaying(bool playing);
    bool pointerInside() const { return m_pointerInside; }
    // The pointer over the notch pauses every hold; leaving resumes them after the grace.
    void setPointerInside(bool inside);
    bool detailOpen() const { return m_detailOpen; }
    void setDetailOpen(bool open);

    // The person clicked the shown activity: its own action runs, or the notch opens on its page.
    Q_INVOKABLE bool tap();
    // Runs one of the shown activity's actions ("allow", "dismiss"...) through the coordinator.
    Q_INVOKABLE bool perform(const QString& action);

signals:
    void changed();
    void inputsChanged();
    // The person clicked: the notch should open on this page ("" for wherever the pager lands).
    void openRequested(const QString& page);
    // The most important live activity wants its page opened, with nobody having clicked.
    void urgentPageWanted(const QString& page);

private:
    void refresh();

    LiveActivityCoordinator& m_coordinator;
    QPointer<SettingsStore> m_settings;
    ClosedPrefs m_prefs;
    Face m_face;
    bool m_musicPlaying = false;
    bool m_pointerInside = false;
    bool m_detailOpen = false;
};

} // namespace norva
