#pragma once

#include "activities/LiveActivity.h"

#include <QString>

#include <array>
#include <cstddef>

namespace norva {

// How the closed face draws an activity: the symbol's word (what the face's model hands the QML
// and the log), the glyph drawn for it, and the tone it is tinted in.
// The words are those the face's model hands the QML.
struct ActivityLook {
    const char* symbol = "";
    const char* glyph = "";          // UTF-8
    const char* tone = "accent";     // "accent", "good", "warn", "bad" or "neutral"
    const char* drawn = "character"; // "character"; "dot": the glyph small; "bars": the level as bars
};

// One row per kind of live activity: its word, the switch that lets it onto the notch, where it
// stands when the closed face must choose, how the face draws it and which buttons its detail
// offers. Adding a kind is one row here, its maker in ActivityContent and, where its look follows
// its payload, one look function in ActivityKinds.cpp.
struct ActivityKind {
    ActivityContent::Kind kind;
    const char* word;       // in logs and in the closed face ("download", "taskDue")
    const char* switchWord; // its switch is "activities." + this + ".v1"; null: always allowed
    int priority;           // what its producers publish it with; larger wins
    ActivityLook look;
    // The look for a payload that changes it (a paused download, a muted volume); null: `look`.
    ActivityLook (*lookFor)(const ActivityContent&) = nullptr;
    // Buttons under an expanded detail, answered by the kind's producer through perform():
    // "timer" (pause or resume, and stop), "due" (done, and snooze) or none.
    const char* controls = "";
};

// The looks that follow the payload.
ActivityLook downloadLook(const ActivityContent& content);
ActivityLook agentWorkingLook(const ActivityContent& content);
ActivityLook levelLook(const ActivityContent& content);
ActivityLook chargingLook(const ActivityContent& content);
ActivityLook deviceLook(const ActivityContent& content);
ActivityLook timerLook(const ActivityContent& content);

namespace ActivityKinds {

using Kind = ActivityContent::Kind;
inline constexpr const char* good = "good";
inline constexpr const char* warn = "warn";
inline constexpr const char* bad = "bad";
inline constexpr const char* neutral = "neutral";
inline constexpr const char* accent = "accent";
inline constexpr const char* dot = "dot";
inline constexpr const char* bars = "bars";

inline constexpr ActivityLook recording{"recording", "\u25CF", bad, dot};

// In the order of ActivityContent::Kind.
inline constexpr std::array<ActivityKind, ActivityContent::kindCount> table = {{
    {Kind::download, "download", "downloads", 10, {"download", "\u2193"}, downloadLook},
    // A waiting agent outranks music, timers and downloads.
    {Kind::agentPrompt, "agentPrompt", nullptr, 80, {"agentPrompt", "?", warn}},
    {Kind::agentWorking, "agentWorking", nullptr, 30, {"agentWorking", "\u2026"}, agentWorkingLook},
    {Kind::volume, "volume", "volume", 50, {"volume", "", neutral, bars}, levelLook},
    // One switch stands for the system's level overlays: volume and brightness.
    {Kind::brightness, "brightness", "volume", 50, {"brightness", "\u2600", neutral}},
    {Kind::charging, "charging", "charging", 40, {"charging", "\u26A1", good}, chargingLook},
    {Kind::screenshot, "screenshot", nullptr, 60, {"screenshot", "\u2750"}},
    {Kind::screenRecording, "screenRecording", nullptr, 60, recording},
    {Kind::device, "device", "devices", 40, {"device", "\u2328"}, deviceLook},
    {Kind::meeting, "meeting", "meetings", 50, {"meeting", "\u260E"}},
    {Kind::taskDue, "taskDue", "reminders", 70, {"taskDue", "\u2691", warn}, nullptr, "due"},
    {Kind::timer, "timer", "timers", 10, {"timer", "\u25CF", accent, dot}, timerLook, "timer"},
    {Kind::sodalRecording, "sodalRecording", nullptr, 60, recording},
    {Kind::minutesFiled, "minutesFiled", nullptr, 40, {"minutesFiled", "\u2709", good}},
    {Kind::minutesAutoRecord, "minutesAutoRecord", nullptr, 60, recording},
    {Kind::listening, "listening", nullptr, 20, {"listening", "\u266A"}},
    {Kind::claudeDone, "claudeDone", nullptr, 40, {"claudeDone", "\u2713", good}},
    {Kind::alert, "alert", nullptr, 90, {"alert", "\u26A0", bad}},
    {Kind::announcement, "announcement", nullptr, 20, {"announcement", "\u2605"}},
    {Kind::teamNotice, "teamNotice", nullptr, 40, {"teamNotice", "\u2691"}},
    {Kind::reviewNudge, "reviewNudge", nullptr, 20, {"reviewNudge", "\u2605"}},
    {Kind::shelf, "shelf", nullptr, 10, {"shelf", "\u2630"}},
    {Kind::quota, "quota", nullptr, 60, {"quota", "\u2139", warn}},
}};

constexpr bool inKindOrder()
{
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (static_cast<std::size_t>(table[i].kind) != i)
            return false;
    }
    return true;
}
static_assert(inKindOrder(), "the kinds' rows follow the order of ActivityContent::Kind");

constexpr const ActivityKind& of(Kind kind)
{
    return table[static_cast<std::size_t>(kind)];
}

// The look of one activity, its payload considered.
ActivityLook lookOf(const ActivityContent& content);

} // namespace ActivityKinds
} // namespace norva
