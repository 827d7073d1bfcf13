#pragma once

#include <QString>

namespace norva {

// How Norva draws the person's attention to a new agent prompt: a short chime and a desktop
// notification. One implementation per desktop; tests count the calls.
class PromptAlerts {
public:
    virtual ~PromptAlerts() = default;
    virtual void chime() = 0;
    virtual void notify(const QString& title, const QString& body) = 0;
};

// No chime and no notification: for a run without a desktop (benchmarks, headless tools).
class NoPromptAlerts final : public PromptAlerts {
public:
    void chime() override {}
    void notify(const QString&, const QString&) override {}
};

} // namespace norva
