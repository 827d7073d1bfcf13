#pragma once

#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "agents/prompts/AgentPromptsManager.h"
#include "agents/prompts/AgentsPageModel.h"
#include "agents/prompts/PromptAlerts.h"
#include "app/Paths.h"
#include "app/SettingsStore.h"

#include <QStringList>

#include <memory>

namespace norva::test {

// Alerts that count what they were asked to do.
class CountingAlerts final : public PromptAlerts {
public:
    void chime() override { ++chimes; }
    void notify(const QString& title, const QString& body) override { notes << title + " | " + body; }
    int chimes = 0;
    QStringList notes;
};

// The pieces of a running Norva core that the exchange needs, inside the current (temporary) HOME:
// in-memory preferences, settings, the prompts manager on the given clock, and the Agents page model.
struct ExchangeCore {
    explicit ExchangeCore(Clock& clock) : settings(prefs)
    {
        manager = std::make_unique<AgentPromptsManager>(clock, settings, alerts, Paths::approvalsFolder());
        model = std::make_unique<AgentsPageModel>(*manager);
    }
    ApprovalsFolder folder() const { return ApprovalsFolder(Paths::approvalsFolder()); }

    MemoryPreferences prefs;
    SettingsStore settings;
    CountingAlerts alerts;
    std::unique_ptr<AgentPromptsManager> manager;
    std::unique_ptr<AgentsPageModel> model;
};

// The same core on a manual clock that starts at the real now (the hooks' files carry real times).
// The clock is a base of its own so that it is made before the core that reads it.
struct ManualClockFirst {
    ManualClock clock{QDateTime::currentDateTimeUtc()};
};
struct ManualExchangeCore : ManualClockFirst, ExchangeCore {
    ManualExchangeCore() : ExchangeCore(clock) {}
};

} // namespace norva::test
