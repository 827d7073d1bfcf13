#include "activities/ClosedFaceModel.h"

#include "activities/ActivityKinds.h"
#include "activities/LiveActivityCoordinator.h"
#include "app/DataUrl.h"
#include "app/SettingsStore.h"

#include <cmath>

namespace norva {
namespace {

using Kind = ActivityContent::Kind;

QString pieceWord(Ear::Piece piece)
{
    switch (piece) {
    case Ear::Piece::music:
        return QStringLiteral("music");
    case Ear::Piece::activityMark:
        return QStringLiteral("mark");
    case Ear::Piece::activityValue:
        return QStringLiteral("value");
    case Ear::Piece::nothing:
        break;
    }
    return QStringLiteral("nothing");
}

QString percent(double fraction)
{
    return QString::number(std::lround(std::clamp(fraction, 0.0, 1.0) * 100)) + '%';
}

} // namespace

ClosedFaceModel::ClosedFaceModel(LiveActivityCoordinator& coordinator, QObject* parent)
    : QObject(parent), m_coordinator(coordinator)
{
    connect(&coordinator, &LiveActivityCoordinator::activitiesChanged, this, &ClosedFaceModel::refresh);
    connect(&coordinator, &LiveActivityCoordinator::rotated, this, &ClosedFaceModel::refresh);
    connect(&coordinator, &LiveActivityCoordinator::holdsPausedChanged, this, &ClosedFaceModel::refresh);
    connect(&coordinator, &LiveActivityCoordinator::urgentTabChanged, this, [this] {
        refresh();
        if (const std::optional<QString> page = m_coordinator.urgentTab())
            emit urgentPageWanted(*page);
    });
    refresh();
}

void ClosedFaceModel::follow(SettingsStore& settings)
{
    m_settings = &settings;
    const auto read = [this] {
        if (!m_settings)
            return;
        const ClosedPrefs defaults;
        setPrefs({m_settings->musicLeft().value_or(defaults.musicLeft),
                  m_settings->musicRight().value_or(defaults.musicRight)});
    };
    connect(&settings, &SettingsStore::changed, this, read);
    read();
}

void ClosedFaceModel::setPrefs(const ClosedPrefs& prefs)
{
    if (prefs == m_prefs)
        return;
    m_prefs = prefs;
    refresh();
}

ClosedFaceModel::Face ClosedFaceModel::faceFor(const ClosedLayout& layout,
                                               const std::optional<QString>& urgentTab)
{
    Face face;
    face.leftPiece = pieceWord(layout.left.piece);
    face.rightPiece = pieceWord(layout.right.piece);
    face.musicLeft = layout.left.piece == Ear::Piece::music ? layout.left.music : QString();
    face.musicRight = layout.right.piece == Ear::Piece::music ? layout.right.music : QString();
    face.liveCount = layout.liveCount;
    face.shownPosition = layout.shownPosition;
    face.rotating = layout.rotating;
    face.urgentTab = urgentTab.value_or(QString());
    if (!layout.shown)
        return face;
    const LiveActivity& shown = *layout.shown;
    const ActivityContent& content = shown.content;
    face.active = true;
    face.activityId = shown.id;
    face.kind = ActivityContent::kindWord(content.kind());
    const ActivityKind& row = ActivityKinds::of(content.kind());
    const ActivityLook look = ActivityKinds::lookOf(content);
    face.symbol = QString::fromLatin1(look.symbol);
    face.glyph = QString::fromUtf8(look.glyph);
    face.glyphStyle = QString::fromLatin1(look.drawn);
    face.tone = QString::fromLatin1(look.tone);
    face.controls = QString::fromLatin1(row.controls);
    face.title = shown.text.title;
    face.value = shown.text.value;
    face.detail = shown.text.detail;
    face.pinned = shown.pinned;
    face.hoverOpens = shown.hoverOpens;
    if (shown.text.progress)
        face.progress = std::clamp(*shown.text.progress, 0.0, 1.0);
    // Levels and batteries carry their own numbers: the face shows them when the producer gave none.
    if (const auto* level = content.payload<ActivityContent::Level>()) {
        const double shownLevel = level->muted ? 0.0 : level->level;
        if (face.progress < 0)
            face.progress = std::clamp(shownLevel, 0.0, 1.0);
        if (face.value.isEmpty())
            face.value = percent(shownLevel);
    } else if (const auto* charging = content.payload<ActivityContent::Charging>()) {
        if (face.progress < 0)
            face.progress = std::clamp(charging->percent / 100.0, 0.0, 1.0);
        if (face.value.isEmpty())
            face.value = QString::number(charging->percent) + '%';
    } else if (const auto* shot = content.payload<ActivityContent::Screenshot>()) {
        if (shot->thumbnail && !shot->thumbnail->isNull())
            face.picture = pngDataUrl(*shot->thumbnail);
    } else if (const auto* filed = content.payload<ActivityContent::MinutesFiled>()) {
        if (face.title.isEmpty())
            face.title = filed->title;
    }
    return face;
}

void ClosedFaceModel::refresh()
{
    Face face = faceFor(m_coordinator.layout(m_musicPlaying, m_prefs), m_coordinator.urgentTab());
    if (face == m_face)
        return;
    const bool otherActivity = face.activityId != m_face.activityId;
    m_face = std::move(face);
    // An expanded detail belongs to the activity it was opened on.
    if (otherActivity && m_detailOpen) {
        m_detailOpen = false;
        emit inputsChanged();
    }
    emit changed();
}

void ClosedFaceModel::setMusicPlaying(bool playing)
{
    if (playing == m_musicPlaying)
        return;
    m_musicPlaying = playing;
    emit inputsChanged();
    refresh();
}

void ClosedFaceModel::setPointerInside(bool inside)
{
    if (inside == m_pointerInside)
        return;
    m_pointerInside = inside;
    if (inside)
        m_coordinator.pauseHolds();
    else
        m_coordinator.resumeHoldsAfterGrace();
    emit inputsChanged();
    refresh();
}

void ClosedFaceModel::setDetailOpen(bool open)
{
    open = open && hasDetail();
    if (open == m_detailOpen)
        return;
    m_detailOpen = open;
    emit inputsChanged();
}

QString ClosedFaceModel::glyphOf(const QString& kindWord) const
{
    const std::optional<Kind> kind = ActivityContent::kindFromWord(kindWord);
    return kind ? QString::fromUtf8(ActivityKinds::of(*kind).look.glyph) : QString();
}

bool ClosedFaceModel::tap()
{
    const std::optional<QString> id = m_coordinator.shownId();
    const LiveActivity* shown = id ? m_coordinator.find(*id) : nullptr;
    if (!shown)
        return false;
    if (shown->onTap) {
        const std::function<void()> action = shown->onTap; // it may remove the activity
        action();
        return true;
    }
    emit openRequested(shown->urgentTab.value_or(QString()));
    return true;
}

bool ClosedFaceModel::perform(const QString& action)
{
    if (m_face.activityId.isEmpty())
        return false;
    return m_coordinator.perform(action, m_face.activityId) == LiveActivityCoordinator::Outcome::done;
}

} // namespace norva
