#pragma once

#include "settings/SettingDescription.h"
#include "settings/SettingStatus.h"

#include <functional>
#include <optional>

namespace norva {

class SettingsStore;

// Looks at what settings depend on outside Norva: the agents' hook files, the calendars folder, the
// notes mirror's folder, a sound player and pactl. The probes are handed in, so the wording is
// tested without the person's machine.
class SettingsChecks {
public:
    struct Probes {
        std::function<QString(const QString& name)> findProgram; // a full path, or empty
        std::function<bool()> agentHooksInstalled;
        std::function<QString()> agentHooksStatus; // "Installed in ~/.claude/settings.json"
        std::function<QString(const QString& setting)> calendarsRoot;
    };

    explicit SettingsChecks(Probes probes) : m_probes(std::move(probes)) {}
    // The probes of this desktop: programs on PATH, the calendars where todoman or khal keep them.
    static Probes desktopProbes(std::function<bool()> hooksInstalled, std::function<QString()> hooksStatus);

    // Nothing when the setting needs nothing, or is off so that its need does not matter now.
    std::optional<SettingStatus> status(SettingNeed need, const SettingsStore& settings) const;

    // "~/..." for a path in the home folder, as the person reads it.
    static QString homeShort(const QString& path);

private:
    SettingStatus calendars(const SettingsStore& settings) const;
    std::optional<SettingStatus> notesFolder(const SettingsStore& settings) const;
    SettingStatus soundPlayer() const;
    SettingStatus pactl() const;

    Probes m_probes;
};

} // namespace norva
