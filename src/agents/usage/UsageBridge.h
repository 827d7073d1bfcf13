#pragma once

#include "agents/ApprovalsFolder.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>

namespace norva {

// Claude Code reports its rate limits only to its status-line command. The bridge puts Norva's
// "statusline.sh" there: it copies the limits into "rate-limits.json" and then runs the person's
// own status line, saved aside at installation and put back at removal.
class UsageBridge {
public:
    // One allowance: how much of it is used, and when it starts afresh.
    struct Window {
        int percent = 0;
        QDateTime resetsAt;
        bool operator==(const Window&) const = default;
    };
    struct Limits {
        std::optional<Window> fiveHour;
        std::optional<Window> sevenDay;
        bool operator==(const Limits&) const = default;
    };
    // The outcome of reading "rate-limits.json": the limits, or why there are none. `lastReset` is
    // the latest reset instant among windows dropped because they had already reset.
    struct Reading {
        Limits limits;
        QString failure;
        std::optional<QDateTime> lastReset;
        bool ok() const { return failure.isEmpty(); }
    };

    UsageBridge(QString approvalsFolder, QString claudeSettingsFile);
    // Norva's folders: the approvals folder and "~/.claude/settings.json".
    UsageBridge();

    bool install() const;
    bool uninstall() const;
    // The status line currently runs the bridge.
    bool isInstalled() const;
    QString command() const;

    static Reading parseLimits(const QByteArray& json, const QDateTime& now);
    static std::optional<QDateTime> parseResetsAt(const QJsonValue& value);

    static inline const QString scriptName = QStringLiteral("statusline.sh");
    static inline const QString limitsFile = QStringLiteral("rate-limits.json");
    static inline const QString originalJsonFile = QStringLiteral("statusline-original.json");
    static inline const QString originalCommandFile = QStringLiteral("statusline-original.cmd");
    static inline const QString marker = QStringLiteral("Norva/approvals/statusline.sh");

private:
    // The settings as an object; none (and one log line) when the file exists but is not one.
    std::optional<QJsonObject> readSettings(const QString& doing) const;

    ApprovalsFolder m_folder;
    QString m_settingsFile;
};

} // namespace norva
