#pragma once

#include "agents/team/TeamRule.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QSet>
#include <QStringList>

#include <optional>

namespace norva {

// The strings that rules are matched against for one tool call, with the call's kind.
struct TeamSubject {
    TeamSubjectKind kind = TeamSubjectKind::run;
    QStringList candidates;

    bool operator==(const TeamSubject&) const = default;
};

// The outcome of holding a tool call against the rules: deny or allow with the rule that decided,
// or none when no rule applies (or the person switched the matching always rule off).
struct TeamDecision {
    enum class Outcome { none, deny, allow };
    Outcome outcome = Outcome::none;
    std::optional<TeamRule> rule;

    bool operator==(const TeamDecision&) const = default;
    static TeamDecision none() { return {}; }
    static TeamDecision deny(const TeamRule& rule) { return {Outcome::deny, rule}; }
    static TeamDecision allow(const TeamRule& rule) { return {Outcome::allow, rule}; }
};

// The pure rules of team enforcement: how a tool call is reduced to candidate strings, how a
// pattern matches, and how never rules (which look into chains) and always rules (which never
// allow a chain) decide. Nothing here touches files or the clock.
class TeamRules {
public:
    using Kind = TeamAction;

    static const QStringList& shellTools();
    static const QStringList& editTools();
    static const QStringList& fetchTools();
    static const QStringList& wrappingShells();
    // ; & | line feed, carriage return, backquote, ( ) > <
    static const QString& chainCharacters();

    static std::optional<TeamSubjectKind> kind(const QString& tool);
    // The candidates of a call; none when the tool belongs to no family.
    static std::optional<TeamSubject> subject(const QString& tool, const QJsonObject& input);
    // An argument array as the shell command it runs: "bash -lc X" is X, anything else is joined.
    static QString command(const QStringList& argv);
    static QStringList patchPaths(const QString& text);
    static QStringList segments(const QString& command);
    static bool glob(const QString& pattern, const QString& text);

    // Every string a never rule is held against for one shell command: its segments, and for each
    // segment the command that a wrapping shell, a line continuation, quoting, extra blanks or a
    // launcher word ("env", "exec", "sudo"...) would really run. Deny looks as hard as it can.
    static QStringList denyCandidates(const QString& command);

    // `trusted` says whether always rules may answer for this caller; the deny responder passes
    // false, so only never rules are in force there.
    static TeamDecision decide(const TeamSubject& subject, bool isQuestion, const QList<TeamRule>& rules,
                               const QSet<QString>& switchedOff, bool trusted);

    static QString verb(TeamSubjectKind kind);
    static QString phrase(const TeamRule& rule);
    static QString reason(const TeamDecision& decision);

private:
    static bool neverMatches(const TeamRule& rule, const TeamSubject& subject);
    static bool alwaysMatches(const TeamRule& rule, const TeamSubject& subject);
};

} // namespace norva
