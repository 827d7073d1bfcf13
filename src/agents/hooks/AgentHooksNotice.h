#pragma once

#include <QObject>

namespace norva {

// The in-process notice "norva.agentHooks.changed": posted after Norva installed or removed agent
// hooks, so every view of their presence re-reads.
class AgentHooksNotice : public QObject {
    Q_OBJECT
public:
    static AgentHooksNotice& instance();
    static void post() { emit instance().changed(); }

signals:
    void changed();
};

} // namespace norva
