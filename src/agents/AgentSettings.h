#pragma once

#include "agents/CodingAgent.h"
#include "app/QmlInstances.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQmlIntegration/qqmlintegration.h>

namespace norva {

class SettingsStore;

// The coding agents' own preferences, read and written through the settings store: whether prompts
// are answered on the notch, which agents are watched, the chime and the
// notification on a prompt, questions opening the panel, and Claude Code's usage. Only these keys
// wake its listeners, whether Norva or an edit outside it changed them.
class AgentSettings : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(
        bool answerPromptsOnNotch READ answerPromptsOnNotch WRITE setAnswerPromptsOnNotch NOTIFY changed)
    Q_PROPERTY(bool showClaudeUsage READ showClaudeUsage WRITE setShowClaudeUsage NOTIFY changed)

public:
    static AgentSettings* create(QQmlEngine*, QJSEngine*) { return QmlInstances::of<AgentSettings>(); }
    static const QString kAnswerOnNotchKey; // "answerPromptsOnNotch", off when absent
    static const QString kWatchClaudeKey;   // "agents.watch.claude.v1", on when absent
    static const QString kWatchCodexKey;    // "agents.watch.codex.v1", on when absent
    static const QString kWatchCopilotKey;  // "agents.watch.copilot.v1", on when absent
    static const QString kChimeKey;         // "approvalChime", on when absent
    static const QString kNotificationKey;  // "approvalNotification", on when absent
    static const QString kOpenQuestionsKey; // "agents.openQuestions.v1", off when absent
    static const QString kShowUsageKey;     // "agents.showClaudeUsage.v1", off when absent
    static const QStringList& keys();

    explicit AgentSettings(SettingsStore& store, QObject* parent = nullptr);

    bool answerPromptsOnNotch() const;
    void setAnswerPromptsOnNotch(bool on);
    // Whether Norva watches this agent (installs its hooks while prompts are answered on the notch).
    bool watches(CodingAgent agent) const;
    void setWatches(CodingAgent agent, bool on);
    bool chime() const;
    bool notification() const;
    bool openQuestions() const;
    bool showClaudeUsage() const;
    void setShowClaudeUsage(bool on);

signals:
    // One of the agents' preferences changed.
    void changed();

private:
    SettingsStore& m_store;
};

} // namespace norva
