#pragma once

#include "agents/AgentAnswer.h"
#include "agents/team/TeamRule.h"

#include <QList>
#include <QMutex>
#include <QObject>
#include <QSet>
#include <QString>

#include <optional>

namespace norva {

class ApprovalsFolder;
class ApprovalsFolderWatch;

// Answers the hooks' never-allow checks: every "denycheck-KEY.json" that appears in the approvals
// folder gets a "denyresp-KEY" within milliseconds, holding a deny body when a never rule matches
// and nothing otherwise. It keeps no timers; the folder watch drives it, so it can live on a
// thread of its own and never wait behind the notch's drawing.
class TeamDenyResponder : public QObject {
    Q_OBJECT
public:
    // The parts of a check's file name: "denycheck-" agent "-" phase "-" process id ".json".
    struct CheckKey {
        CodingAgent agent = CodingAgent::claude;
        HookPhase phase = HookPhase::preToolUse; // "pre" or "perm" in the name
        QString pid;
        QString key() const;
        bool operator==(const CheckKey&) const = default;
    };

    explicit TeamDenyResponder(QObject* parent = nullptr);

    // Watches `approvalsFolder` and answers what is already there. False when it cannot be watched.
    bool start(const QString& approvalsFolder);
    void stop();
    bool isStarted() const { return !m_folder.isEmpty(); }
    // Only the never rules of the set are used. Safe to call from any thread.
    void setRules(const QList<TeamRule>& rules);
    // Answers every check not yet answered; returns how many answers were written.
    int answerAll();

    static std::optional<CheckKey> parseName(const QString& fileName);
    // The body for one check's payload: a deny body, or empty for no objection.
    static QByteArray answerFor(const CheckKey& key, const QByteArray& payload, const QList<TeamRule>& rules);

private:
    bool writeAnswer(const ApprovalsFolder& folder, const QString& name, const QByteArray& body);

    ApprovalsFolderWatch* m_watch = nullptr;
    QString m_folder;
    mutable QMutex m_rulesLock;
    QList<TeamRule> m_rules;
    // Checks answered and still on disk: the hook removes the answer before the check, and a scan
    // in between must not answer twice.
    QSet<QString> m_answered;
};

} // namespace norva
