#pragma once

#include "agents/CodingAgent.h"

#include <QObject>
#include <QStringList>

namespace norva {

// Whether each agent's hooks are in place and which files they occupy, for the settings page and the
// sessions list. Once live, it re-reads whenever "norva.agentHooks.changed" is posted.
class HookPresence : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool claudeOn READ claudeOn NOTIFY changed)
    Q_PROPERTY(bool codexOn READ codexOn NOTIFY changed)
    Q_PROPERTY(bool copilotOn READ copilotOn NOTIFY changed)
public:
    explicit HookPresence(QObject* parent = nullptr);

    bool isOn(CodingAgent agent) const;
    // The files the agent's hooks occupy, as the person reads them ("~/.claude/settings.json", ...).
    QStringList files(CodingAgent agent) const;
    // The status row shown when installed, e.g. "Installed in ~/.claude/settings.json".
    QString statusText(CodingAgent agent) const;
    void live();
    void refresh();

    bool claudeOn() const { return isOn(CodingAgent::claude); }
    bool codexOn() const { return isOn(CodingAgent::codex); }
    bool copilotOn() const { return isOn(CodingAgent::copilot); }

signals:
    void changed();

private:
    bool m_on[3] = {false, false, false};
};

} // namespace norva
