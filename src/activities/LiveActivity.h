#pragma once

#include <QDateTime>
#include <QImage>
#include <QString>

#include <functional>
#include <optional>
#include <variant>

namespace norva {

// What one live activity is about: a tagged union with one case per kind. The kind and its payload
// always agree because the only way to make one is through the named makers below
// (ActivityContent::volume({0.4, false}), ActivityContent::download(DownloadState::running), ...).
class ActivityContent {
public:
    // The 23 kinds, in their fixed order; switches and log lines work on kinds.
    enum class Kind {
        download,
        agentPrompt,
        agentWorking,
        volume,
        brightness,
        charging,
        screenshot,
        screenRecording,
        device,
        meeting,
        taskDue,
        timer,
        sodalRecording,
        minutesFiled,
        minutesAutoRecord,
        listening,
        claudeDone,
        alert,
        announcement,
        teamNotice,
        reviewNudge,
        shelf,
        quota,
    };
    static constexpr int kindCount = 23;

    enum class DownloadState { running, paused, finished };
    enum class AgentStep { edit, run, prose };
    enum class DeviceEvent { connected, low };
    enum class Recorder { take, minutes };

    struct Level {
        double level = 0.0; // 0...1
        bool muted = false;
        bool operator==(const Level&) const = default;
    };
    struct Charging {
        int percent = 0;
        bool pluggedIn = false;
        bool operator==(const Charging&) const = default;
    };
    struct Screenshot {
        std::optional<QImage> thumbnail;
        bool operator==(const Screenshot&) const = default;
    };
    struct MinutesFiled {
        QString title;
        bool operator==(const MinutesFiled&) const = default;
    };
    struct ClaudeDone {
        bool planReady = false;
        bool operator==(const ClaudeDone&) const = default;
    };
    // A countdown for the closed notch: while it runs, its end; while paused, what remains.
    struct Countdown {
        std::optional<QDateTime> endsAt; // absent while paused
        double remaining = 0.0;          // seconds left when last published
        bool paused = false;
        double progress = 0.0; // 0...1 of the whole length gone by
        bool operator==(const Countdown&) const = default;
    };

    using Payload = std::variant<std::monostate, DownloadState, AgentStep, Level, Charging, Screenshot,
                                 DeviceEvent, Recorder, MinutesFiled, ClaudeDone, Countdown>;

    // An announcement with nothing in it, so a LiveActivity can be declared before it is filled in.
    ActivityContent() = default;

    static ActivityContent download(DownloadState state) { return {Kind::download, state}; }
    static ActivityContent agentPrompt() { return {Kind::agentPrompt, {}}; }
    static ActivityContent agentWorking(AgentStep step) { return {Kind::agentWorking, step}; }
    static ActivityContent volume(Level level) { return {Kind::volume, level}; }
    static ActivityContent brightness(Level level) { return {Kind::brightness, level}; }
    static ActivityContent charging(Charging charging) { return {Kind::charging, charging}; }
    static ActivityContent screenshot(Screenshot shot = {}) { return {Kind::screenshot, std::move(shot)}; }
    static ActivityContent screenRecording() { return {Kind::screenRecording, {}}; }
    static ActivityContent device(DeviceEvent event) { return {Kind::device, event}; }
    static ActivityContent meeting() { return {Kind::meeting, {}}; }
    static ActivityContent taskDue() { return {Kind::taskDue, {}}; }
    static ActivityContent timer() { return {Kind::timer, Countdown()}; }
    static ActivityContent timer(Countdown countdown) { return {Kind::timer, countdown}; }
    static ActivityContent sodalRecording(Recorder recorder) { return {Kind::sodalRecording, recorder}; }
    static ActivityContent minutesFiled(MinutesFiled filed) { return {Kind::minutesFiled, std::move(filed)}; }
    static ActivityContent minutesAutoRecord() { return {Kind::minutesAutoRecord, {}}; }
    static ActivityContent listening() { return {Kind::listening, {}}; }
    static ActivityContent claudeDone(ClaudeDone done) { return {Kind::claudeDone, done}; }
    static ActivityContent alert() { return {Kind::alert, {}}; }
    static ActivityContent announcement() { return {Kind::announcement, {}}; }
    static ActivityContent teamNotice() { return {Kind::teamNotice, {}}; }
    static ActivityContent reviewNudge() { return {Kind::reviewNudge, {}}; }
    static ActivityContent shelf() { return {Kind::shelf, {}}; }
    static ActivityContent quota() { return {Kind::quota, {}}; }

    Kind kind() const { return m_kind; }
    // The payload of the kinds that carry one, or null: content.payload<Level>() for volume.
    template <typename T> const T* payload() const { return std::get_if<T>(&m_payload); }

    // The kind as the word Norva uses for it in logs and in the closed face ("download", "taskDue").
    static QString kindWord(Kind kind);
    static std::optional<Kind> kindFromWord(const QString& word);

    bool operator==(const ActivityContent&) const = default;

private:
    ActivityContent(Kind kind, Payload payload) : m_kind(kind), m_payload(std::move(payload)) {}

    Kind m_kind = Kind::announcement;
    Payload m_payload;
};

// The words and progress a producer gives its activity for the closed face to draw: a title
// ("Focus"), a short value for the ear beside the notch ("24:12", "62%"), an optional progress 0...1
// drawn as a ring, and a detail that expands under the notch when the person hovers it.
struct ActivityText {
    QString title;
    QString value;
    QString detail;
    std::optional<double> progress;
    bool operator==(const ActivityText&) const = default;
};

// One activity that a feature publishes to the closed notch. Identity is the id: producers use
// fixed ids for singletons ("timer", "task-due", "meeting") and composed ones for many-at-once
// activities (one per download, one per agent session).
struct LiveActivity {
    QString id;
    int priority = 0; // larger wins when the closed face must choose
    ActivityContent content;
    ActivityText text;
    std::function<void()> onTap;      // run when the person clicks the activity in the closed notch
    std::optional<QString> urgentTab; // page of the open notch this activity wants opened
    bool pinned = false;              // owns the body of the closed notch; promote cannot displace it
    std::optional<double> hold;       // seconds a transient activity stays before it leaves by itself
    bool hoverOpens = false;          // hovering this activity opens the notch

    bool isTransient() const { return hold.has_value(); }
};

} // namespace norva
