#pragma once

#include "agents/AgentSettings.h"

#include <QObject>

#include <optional>
#include <tuple>

namespace norva {

class SettingsStore;

// The one entry point behind "Answer prompts on the notch": installs the hooks of every watched agent
// when turned on, removes them when turned off, and keeps them (with the "notch-off" marker) while a
// team's never-allow rules need them. It follows the preference, so a change made in Settings or by
// another process while Norva runs takes effect at once. Runs on the main thread, one change at a time.
class AgentPromptSwitch : public QObject {
    Q_OBJECT
public:
    enum class Outcome { on, off, failed };

    explicit AgentPromptSwitch(SettingsStore& settings, QObject* parent = nullptr);

    Outcome set(bool on);
    // Team never-allow rules keep the hooks installed while answering on the notch is off.
    void setTeamNeedsHooks(bool needed);
    // Applies the stored preference now, then after every change of it or of the watched agents.
    void follow();

    static QString outcomeText(Outcome outcome);

signals:
    void applied(Outcome outcome);

private:
    using Applied = std::tuple<bool, bool, bool, bool>; // on, codex watched, copilot watched, team
    Applied wanted() const;
    void onSettingsChanged();
    bool installAgents();
    void removeAgents();
    bool watched(bool codex) const;

    AgentSettings m_settings;
    bool m_teamNeedsHooks = false;
    std::optional<Applied> m_applied;
};

} // namespace norva
