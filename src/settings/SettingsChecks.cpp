#include "settings/SettingsChecks.h"

#include "agents/AgentSettings.h"
#include "app/SettingsStore.h"
#include "storage/VdirRoot.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace norva {

SettingsChecks::Probes SettingsChecks::desktopProbes(std::function<bool()> hooksInstalled,
                                                     std::function<QString()> hooksStatus)
{
    return {[](const QString& name) { return QStandardPaths::findExecutable(name); },
            std::move(hooksInstalled), std::move(hooksStatus),
            [](const QString& setting) { return VdirRoot::locate(setting); }};
}

QString SettingsChecks::homeShort(const QString& path)
{
    const QString home = QDir::homePath();
    if (path == home)
        return QStringLiteral("~");
    if (path.startsWith(home + QLatin1Char('/')))
        return QStringLiteral("~") + path.mid(home.size());
    return path;
}

std::optional<SettingStatus> SettingsChecks::status(SettingNeed need, const SettingsStore& settings) const
{
    switch (need) {
    case SettingNeed::nothing:
        return std::nullopt;
    case SettingNeed::agentHooks:
        if (!settings.flag(AgentSettings::kAnswerOnNotchKey, false))
            return std::nullopt;
        if (m_probes.agentHooksInstalled())
            return SettingStatus{true, m_probes.agentHooksStatus(), {}};
        return SettingStatus{false,
                             QStringLiteral("Not connected: Norva couldn't write ~/.claude/settings.json."),
                             QStringLiteral("Check its permissions, then switch this off and on again.")};
    case SettingNeed::calendarsFolder:
        return calendars(settings);
    case SettingNeed::notesFolder:
        return notesFolder(settings);
    case SettingNeed::soundPlayer:
        return soundPlayer();
    case SettingNeed::pactl:
        return pactl();
    }
    return std::nullopt;
}

SettingStatus SettingsChecks::calendars(const SettingsStore& settings) const
{
    const QString setting = settings.storedText(QStringLiteral("calendars.folder.v1")).value_or(QString());
    const QString root = m_probes.calendarsRoot(setting);
    const QDir folder(root);
    if (!folder.exists())
        return {false, homeShort(root) + QStringLiteral(" doesn't exist yet."),
                QStringLiteral(
                    "Set up vdirsyncer, todoman or khal, or type the folder that holds your calendars.")};
    const int count = int(folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
    if (count == 0)
        return {false, homeShort(root) + QStringLiteral(" holds no calendar yet."),
                QStringLiteral("Sync one with vdirsyncer, or make a folder in it for your to-dos.")};
    return {true,
            QStringLiteral("Reads %1 %2 in ")
                    .arg(count)
                    .arg(count == 1 ? QStringLiteral("calendar") : QStringLiteral("calendars")) +
                homeShort(root) + QLatin1Char('.'),
            {}};
}

std::optional<SettingStatus> SettingsChecks::notesFolder(const SettingsStore& settings) const
{
    if (!settings.flag(QStringLiteral("notesMirror.enabled"), false))
        return std::nullopt;
    const QString path = settings.storedText(QStringLiteral("notesMirror.folder")).value_or(QString());
    if (path.trimmed().isEmpty())
        return SettingStatus{false, QStringLiteral("No folder is chosen, so no file is written."),
                             QStringLiteral("Type the folder the Markdown files should go to.")};
    const QFileInfo folder(
        QDir::cleanPath(path.startsWith(QLatin1Char('~')) ? QDir::homePath() + path.mid(1) : path));
    if (!folder.isDir())
        return SettingStatus{false, homeShort(folder.filePath()) + QStringLiteral(" doesn't exist."),
                             QStringLiteral("Make the folder, or type another.")};
    if (!folder.isWritable())
        return SettingStatus{
            false, QStringLiteral("Norva can't write in ") + homeShort(folder.filePath()) + QLatin1Char('.'),
            QStringLiteral("Check the folder's permissions, or type another.")};
    return SettingStatus{
        true, QStringLiteral("Writes into ") + homeShort(folder.filePath()) + QLatin1Char('.'), {}};
}

SettingStatus SettingsChecks::soundPlayer() const
{
    for (const QString& name :
         {QStringLiteral("canberra-gtk-play"), QStringLiteral("paplay"), QStringLiteral("pw-play")}) {
        if (!m_probes.findProgram(name).isEmpty())
            return {true, QStringLiteral("Plays through ") + name + QLatin1Char('.'), {}};
    }
    return {false, QStringLiteral("No sound player was found, so it stays silent."),
            QStringLiteral("Install gnome-session-canberra, or pulseaudio-utils for paplay.")};
}

SettingStatus SettingsChecks::pactl() const
{
    if (!m_probes.findProgram(QStringLiteral("pactl")).isEmpty())
        return {true, QStringLiteral("Reads and sets the volume through pactl."), {}};
    return {false, QStringLiteral("pactl is missing, so the volume is unknown."),
            QStringLiteral("Install pulseaudio-utils; it works with PipeWire too.")};
}

} // namespace norva
