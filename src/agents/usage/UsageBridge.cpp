#include "agents/usage/UsageBridge.h"

#include "agents/hooks/AgentConfigFile.h"
#include "agents/hooks/ApprovalHook.h"
#include "agents/hooks/HookScripts.h"
#include "app/JsonNumber.h"
#include "app/Log.h"
#include "app/Paths.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace norva {
namespace {

// A "resets_at" above this many units since 1970 is in milliseconds, not seconds.
constexpr double kMillisecondsThreshold = 1e12;
// Claude Code's own blank columns around the status line.
constexpr int kStatusLinePadding = 0;

const QString kStatusLine = QStringLiteral("statusLine");
const QString kCommand = QStringLiteral("command");

std::optional<UsageBridge::Window> parseWindow(const QJsonValue& value, const QDateTime& now,
                                               std::optional<QDateTime>& lastReset)
{
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject window = value.toObject();
    const QJsonValue used = window.contains(QStringLiteral("used_percentage"))
                                ? window.value(QStringLiteral("used_percentage"))
                                : window.value(QStringLiteral("utilization"));
    const auto share = jsonNumber(used);
    const auto resetsAt = UsageBridge::parseResetsAt(window.value(QStringLiteral("resets_at")));
    if (!share || !resetsAt)
        return std::nullopt;
    if (*resetsAt <= now) {
        // A window that has already reset says nothing about now; it is dropped, never shown as 0.
        if (!lastReset || *resetsAt > *lastReset)
            lastReset = *resetsAt;
        return std::nullopt;
    }
    const int percent = int(std::clamp(std::round(*share), 0.0, 100.0));
    return UsageBridge::Window{percent, *resetsAt};
}

} // namespace

UsageBridge::UsageBridge(QString approvalsFolder, QString claudeSettingsFile)
    : m_folder(std::move(approvalsFolder)), m_settingsFile(std::move(claudeSettingsFile))
{}

UsageBridge::UsageBridge() : UsageBridge(Paths::approvalsFolder(), ApprovalHook::settingsPath()) {}

QString UsageBridge::command() const
{
    return HookScripts::command(m_folder.filePath(scriptName));
}

std::optional<QJsonObject> UsageBridge::readSettings(const QString& doing) const
{
    if (!QFileInfo::exists(m_settingsFile))
        return QJsonObject();
    QFile file(m_settingsFile);
    if (!file.open(QIODevice::ReadOnly)) {
        logLine(QStringLiteral("Norva agents: the usage bridge could not be ") + doing +
                QStringLiteral(" (") + m_settingsFile + QStringLiteral(" could not be read: ") +
                file.errorString() + QLatin1Char(')'));
        return std::nullopt;
    }
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    if (!document.isObject()) {
        logLine(QStringLiteral("Norva agents: the usage bridge could not be ") + doing +
                QStringLiteral(" (") + m_settingsFile + QStringLiteral(" is not a JSON object)"));
        return std::nullopt;
    }
    return document.object();
}

bool UsageBridge::isInstalled() const
{
    const QJsonObject settings = AgentConfigFile(m_settingsFile).read();
    return settings.value(kStatusLine).toObject().value(kCommand).toString().contains(marker);
}

bool UsageBridge::install() const
{
    if (const FileResult written = HookScripts::write(scriptName, m_folder); !written) {
        logLine(QStringLiteral("Norva agents: the usage bridge could not be installed (") + scriptName +
                QStringLiteral(" could not be written: ") + written.error + QLatin1Char(')'));
        return false;
    }
    auto settings = readSettings(QStringLiteral("installed"));
    if (!settings)
        return false;
    const QJsonValue current = settings->value(kStatusLine);
    if (current.isObject() && !current.toObject().value(kCommand).toString().contains(marker)) {
        // The person's own status line is kept, so the bridge can run it and removal can restore it.
        const QJsonObject own = current.toObject();
        const FileResult savedObject =
            m_folder.write(originalJsonFile, QJsonDocument(own).toJson(QJsonDocument::Compact));
        const FileResult savedCommand =
            m_folder.write(originalCommandFile, own.value(kCommand).toString().toUtf8());
        if (!savedObject || !savedCommand) {
            logLine(QStringLiteral(
                        "Norva agents: the usage bridge could not be installed (your status line could "
                        "not be saved: ") +
                    (savedObject ? savedCommand.error : savedObject.error) + QLatin1Char(')'));
            return false;
        }
    }
    settings->insert(kStatusLine, QJsonObject{{QStringLiteral("type"), QStringLiteral("command")},
                                              {kCommand, command()},
                                              {QStringLiteral("padding"), kStatusLinePadding}});
    if (const FileResult written = AgentConfigFile(m_settingsFile).write(*settings); !written) {
        logLine(QStringLiteral("Norva agents: the usage bridge could not be installed (") + m_settingsFile +
                QStringLiteral(" could not be written: ") + written.error + QLatin1Char(')'));
        return false;
    }
    logLine(QStringLiteral("Norva agents: the usage bridge is installed in ") + m_settingsFile);
    return true;
}

bool UsageBridge::uninstall() const
{
    bool result = true;
    if (auto settings = readSettings(QStringLiteral("removed"))) {
        if (settings->value(kStatusLine).toObject().value(kCommand).toString().contains(marker)) {
            const auto saved = m_folder.read(originalJsonFile);
            const QJsonDocument original = QJsonDocument::fromJson(saved.value_or(QByteArray()));
            if (original.isObject())
                settings->insert(kStatusLine, original.object());
            else
                settings->remove(kStatusLine);
            if (const FileResult written = AgentConfigFile(m_settingsFile).write(*settings); !written) {
                logLine(QStringLiteral("Norva agents: the usage bridge could not be removed (") +
                        m_settingsFile + QStringLiteral(" could not be written: ") + written.error +
                        QLatin1Char(')'));
                result = false;
            }
        }
    } else {
        result = false;
    }
    for (const QString& name : {originalCommandFile, originalJsonFile, limitsFile}) {
        if (const FileResult removed = m_folder.remove(name); !removed)
            logLine(QStringLiteral("Norva agents: ") + m_folder.filePath(name) +
                    QStringLiteral(" could not be removed (") + removed.error + QLatin1Char(')'));
    }
    return result;
}

std::optional<QDateTime> UsageBridge::parseResetsAt(const QJsonValue& value)
{
    if (value.isDouble()) {
        double seconds = value.toDouble();
        if (seconds > kMillisecondsThreshold)
            seconds /= 1000.0;
        return QDateTime::fromMSecsSinceEpoch(qint64(std::llround(seconds * 1000.0)), Qt::UTC);
    }
    const QString text = value.toString().trimmed();
    if (text.isEmpty())
        return std::nullopt;
    // An instant needs its zone ("Z" or an offset); a bare local time is not one.
    QDateTime parsed = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!parsed.isValid())
        parsed = QDateTime::fromString(text, Qt::ISODate);
    if (!parsed.isValid() || parsed.timeSpec() == Qt::LocalTime)
        return std::nullopt;
    return parsed.toUTC();
}

UsageBridge::Reading UsageBridge::parseLimits(const QByteArray& json, const QDateTime& now)
{
    Reading reading;
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject()) {
        reading.failure = QStringLiteral("not a JSON object");
        return reading;
    }
    const QJsonObject limits = document.object();
    reading.limits.fiveHour = parseWindow(limits.value(QStringLiteral("five_hour")), now, reading.lastReset);
    reading.limits.sevenDay = parseWindow(limits.value(QStringLiteral("seven_day")), now, reading.lastReset);
    if (!reading.limits.fiveHour && !reading.limits.sevenDay)
        reading.failure = QStringLiteral("no five_hour or seven_day window with a percent and a reset time");
    return reading;
}

} // namespace norva
