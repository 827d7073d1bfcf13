#include "activities/LiveActivity.h"

#include <array>

namespace norva {
namespace {

using Kind = ActivityContent::Kind;

// The kinds' words, in the order of the enumeration.
const std::array<QString, ActivityContent::kindCount>& kindWords()
{
    static const std::array<QString, ActivityContent::kindCount> words = {
        QStringLiteral("download"),
        QStringLiteral("agentPrompt"),
        QStringLiteral("agentWorking"),
        QStringLiteral("volume"),
        QStringLiteral("brightness"),
        QStringLiteral("charging"),
        QStringLiteral("screenshot"),
        QStringLiteral("screenRecording"),
        QStringLiteral("device"),
        QStringLiteral("meeting"),
        QStringLiteral("taskDue"),
        QStringLiteral("timer"),
        QStringLiteral("sodalRecording"),
        QStringLiteral("minutesFiled"),
        QStringLiteral("minutesAutoRecord"),
        QStringLiteral("listening"),
        QStringLiteral("claudeDone"),
        QStringLiteral("alert"),
        QStringLiteral("announcement"),
        QStringLiteral("teamNotice"),
        QStringLiteral("reviewNudge"),
        QStringLiteral("shelf"),
        QStringLiteral("quota"),
    };
    return words;
}

} // namespace

QString ActivityContent::kindWord(Kind kind)
{
    const auto index = static_cast<size_t>(kind);
    return index < kindWords().size() ? kindWords()[index] : QString();
}

std::optional<ActivityContent::Kind> ActivityContent::kindFromWord(const QString& word)
{
    const auto& words = kindWords();
    for (size_t i = 0; i < words.size(); ++i) {
        if (words[i] == word)
            return static_cast<Kind>(i);
    }
    return std::nullopt;
}

} // namespace norva
