#pragma once

#include "agents/team/TeamRules.h"
#include "agents/team/TeamVerdict.h"
#include "app/Clock.h"
#include "app/QmlInstances.h"
#include "app/RowsModel.h"

#include <QJsonObject>
#include <QObject>
#include <QSet>
#include <QThread>
#include <QVariantList>
#include <QtQmlIntegration/qqmlintegration.h>

class QFileSystemWatcher;

namespace norva {

class SettingsStore;
class TeamDenyResponder;

// The team's rules as they stand on this machine: read from "team-rules.json" (a managed copy
// outranks the person's own), followed while Norva runs, with the person's switched-off always
// rules from the preferences. It keeps "team-deny-active" and the never-allow responder in step
// with the rules, and answers notch prompts that an always rule covers.
class TeamPolicy : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(norva::RowsModel* rules READ ruleRows CONSTANT)
    Q_PROPERTY(bool hasNeverRules READ hasNeverRules NOTIFY rulesChanged)
    Q_PROPERTY(QString source READ source NOTIFY rulesChanged)

public:
    static TeamPolicy* create(QQmlEngine*, QJSEngine*) { return QmlInstances::of<TeamPolicy>(); }
    // A rule set read from a file: the rules that parse, and why the file as a whole could not be
    // read (empty when it could). Rules that do not parse are skipped, one reason each.
    struct Reading {
        QList<TeamRule> rules;
        QString failure;
        QStringList skipped;
    };

    TeamPolicy(SettingsStore& settings, Clock& clock, QString approvalsFolder, QString userRulesFile,
               QString managedRulesFile, QObject* parent = nullptr);
    ~TeamPolicy() override;

    // The paths Norva uses: "team-rules.json" in its data folder, and the administrator's copy.
    static QString defaultUserRulesFile();
    static QString defaultManagedRulesFile();

    void start();
    // Reads the rule files again; the watch and a slow re-check call this.
    void reload();

    static Reading parse(const QByteArray& json);

    QList<TeamRule> rules() const { return m_rules; }
    bool hasNeverRules() const;
    QString source() const { return m_source; }
    QSet<QString> switchedOff() const;
    // The rules as the Team page lists them, each with whether the person keeps it on.
    RowsModel* ruleRows() { return &m_ruleRows; }

    // For a permission prompt on the notch: allow when an always rule covers it and the person has
    // not switched that rule off; deny when a never rule matches (in case a hook asked anyway).
    TeamDecision decidePrompt(const QString& tool, const QJsonObject& input, bool isQuestion) const;
    // The team's answer to a prompt, logged: a never rule's deny or an always rule's allow, with its
    // reason ("Denied by your team's rule: ..."); none when the person decides.
    std::optional<TeamVerdict> answerFor(const QString& agent, const QString& tool, const QJsonObject& input,
                                         bool isQuestion) const;

    // The person's own override of one always rule; kept in the preferences.
    Q_INVOKABLE void setAlwaysRuleOn(const QString& identifier, bool on);

    // The responder lives on its own thread; tests reach it to wait for answers.
    TeamDenyResponder* responder() const { return m_responder; }

    static inline const QString switchedOffKey = QStringLiteral("agents.team.switchedOffAlwaysRules.v1");

signals:
    void rulesChanged();
    // True while a never rule exists: the agent hooks must stay installed (with "notch-off" when
    // answering on the notch is off), so the team's rules reach every agent.
    void hooksNeededChanged(bool needed);

private:
    void apply(const QList<TeamRule>& rules, const QString& source);
    void watchFiles();
    // Lays the rules, with the person's switches, over the listed ones, then says they changed.
    void publishRules();
    QVariantList rulesForView() const;

    SettingsStore& m_settings;
    Clock& m_clock;
    QString m_approvalsFolder;
    QString m_userRulesFile;
    QString m_managedRulesFile;
    QList<TeamRule> m_rules;
    QString m_source;
    QString m_lastFailure;
    bool m_started = false;
    QFileSystemWatcher* m_watcher = nullptr;
    ScheduledWork m_recheck;
    QThread m_responderThread;
    TeamDenyResponder* m_responder = nullptr;
    RowsModel m_ruleRows;
};

} // namespace norva
