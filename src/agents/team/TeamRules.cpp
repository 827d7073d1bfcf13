#include "agents/team/TeamRules.h"

#include <QJsonArray>
#include <QRegularExpression>

namespace norva {
namespace {

// How deep a wrapping shell inside a wrapping shell is unwrapped before giving up.
constexpr int kUnwrapDepth = 4;

// Words that run the rest of the line as a command of its own.
const QStringList& launcherWords()
{
    static const QStringList words = {
        QStringLiteral("env"),   QStringLiteral("exec"), QStringLiteral("command"), QStringLiteral("builtin"),
        QStringLiteral("nohup"), QStringLiteral("sudo"), QStringLiteral("doas"),    QStringLiteral("time"),
        QStringLiteral("nice"),  QStringLiteral("eval")};
    return words;
}

bool isAssignment(const QString& word)
{
    static const QRegularExpression assignment(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*="));
    return assignment.match(word).hasMatch();
}

QString baseName(const QString& word)
{
    return word.mid(word.lastIndexOf(QLatin1Char('/')) + 1);
}

bool isShellWord(const QString& word)
{
    static const QStringList shellNames = {QStringLiteral("bash"), QStringLiteral("sh"),
                                           QStringLiteral("zsh"), QStringLiteral("dash"),
                                           QStringLiteral("ksh")};
    return TeamRules::wrappingShells().contains(word) || shellNames.contains(baseName(word));
}

// "-c", "-lc", "-ic", "-xc": a shell flag word that makes the next word the command to run.
bool isCommandFlag(const QString& word)
{
    return word.size() >= 2 && word.startsWith(QLatin1Char('-')) && !word.startsWith(QStringLiteral("--")) &&
           word.contains(QLatin1Char('c'));
}

QString stripQuotes(QString text)
{
    text.remove(QLatin1Char('\'')).remove(QLatin1Char('"')).remove(QLatin1Char('\\'));
    return text.simplified();
}

void add(QStringList& out, const QString& candidate)
{
    if (!candidate.isEmpty() && !out.contains(candidate))
        out.append(candidate);
}

void expandSegment(const QString& segment, int depth, QStringList& out);

void expandCommand(const QString& command, int depth, QStringList& out)
{
    QString joined = command;
    // A backslash before a line break continues the line in the shell: "git \<newline>push" is git push.
    joined.replace(QStringLiteral("\\\r\n"), QStringLiteral(" "))
        .replace(QStringLiteral("\\\n"), QStringLiteral(" "));
    for (const QString& segment : TeamRules::segments(joined))
        expandSegment(segment, depth, out);
}

void expandSegment(const QString& segment, int depth, QStringList& out)
{
    add(out, segment);
    const QString blanked = segment.simplified();
    add(out, blanked);
    const QString unquoted = stripQuotes(segment);
    add(out, unquoted);
    for (const QString& form : {blanked, unquoted}) {
        QStringList words = form.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        const qsizetype before = words.size();
        while (!words.isEmpty()) {
            if (isAssignment(words.first())) {
                words.removeFirst();
            } else if (launcherWords().contains(baseName(words.first()))) {
                words.removeFirst();
                while (!words.isEmpty() && words.first().startsWith(QLatin1Char('-')))
                    words.removeFirst();
            } else {
                break;
            }
        }
        if (words.isEmpty())
            continue;
        if (words.size() != before)
            add(out, words.join(QLatin1Char(' ')));
        if (words.first().contains(QLatin1Char('/'))) {
            QStringList bare = words;
            bare.first() = baseName(bare.first());
            add(out, bare.join(QLatin1Char(' ')));
        }
        if (words.size() >= 3 && isShellWord(words.at(0)) && isCommandFlag(words.at(1)) &&
            depth < kUnwrapDepth)
            expandCommand(stripQuotes(words.mid(2).join(QLatin1Char(' '))), depth + 1, out);
    }
}

QStringList stringsOf(const QJsonArray& array)
{
    QStringList out;
    for (const QJsonValue& value : array)
        out.append(value.toString());
    return out;
}

} // namespace

const QStringList& TeamRules::shellTools()
{
    static const QStringList tools = {QStringLiteral("Bash"),          QStringLiteral("bash"),
                                      QStringLiteral("shell"),         QStringLiteral("local_shell"),
                                      QStringLiteral("exec_command"),  QStringLiteral("shell_command"),
                                      QStringLiteral("container.exec")};
    return tools;
}

const QStringList& TeamRules::editTools()
{
    static const QStringList tools = {QStringLiteral("Edit"),       QStringLiteral("Write"),
                                      QStringLiteral("MultiEdit"),  QStringLiteral("NotebookEdit"),
                                      QStringLiteral("edit"),       QStringLiteral("create"),
                                      QStringLiteral("write"),      QStringLiteral("str_replace_editor"),
                                      QStringLiteral("apply_patch")};
    return tools;
}

const QStringList& TeamRules::fetchTools()
{
    static const QStringList tools = {QStringLiteral("WebFetch"), QStringLiteral("web_fetch"),
                                      QStringLiteral("fetch")};
    return tools;
}

const QStringList& TeamRules::wrappingShells()
{
    static const QStringList shells = {QStringLiteral("bash"),
                                       QStringLiteral("sh"),
                                       QStringLiteral("zsh"),
                                       QStringLiteral("/bin/bash"),
                                       QStringLiteral("/bin/sh"),
                                       QStringLiteral("/bin/zsh"),
                                       QStringLiteral("/usr/bin/bash"),
                                       QStringLiteral("/usr/bin/zsh"),
                                       QStringLiteral("/opt/homebrew/bin/bash")};
    return shells;
}

const QString& TeamRules::chainCharacters()
{
    static const QString characters = QStringLiteral(";&|\n\r`()><");
    return characters;
}

std::optional<TeamSubjectKind> TeamRules::kind(const QString& tool)
{
    if (shellTools().contains(tool))
        return TeamSubjectKind::run;
    if (editTools().contains(tool))
        return TeamSubjectKind::edit;
    if (fetchTools().contains(tool))
        return TeamSubjectKind::fetch;
    return std::nullopt;
}

std::optional<TeamSubject> TeamRules::subject(const QString& tool, const QJsonObject& input)
{
    const auto toolKind = kind(tool);
    if (!toolKind)
        return std::nullopt;
    TeamSubject result{*toolKind, {}};
    switch (*toolKind) {
    case TeamSubjectKind::run: {
        // Claude Code and Copilot send "command"; Codex's exec_command sends "cmd".
        for (const QString& key : {QStringLiteral("command"), QStringLiteral("cmd")}) {
            const QJsonValue value = input.value(key);
            if (value.isString())
                add(result.candidates, value.toString());
            else if (value.isArray())
                add(result.candidates, command(stringsOf(value.toArray())));
            if (!result.candidates.isEmpty())
                break;
        }
        break;
    }
    case TeamSubjectKind::edit: {
        for (const QString& key :
             {QStringLiteral("file_path"), QStringLiteral("notebook_path"), QStringLiteral("path")})
            add(result.candidates, input.value(key).toString());
        if (tool == QStringLiteral("apply_patch")) {
            for (const QString& key : {QStringLiteral("patch"), QStringLiteral("input")}) {
                for (const QString& path : patchPaths(input.value(key).toString()))
                    add(result.candidates, path);
            }
        }
        break;
    }
    case TeamSubjectKind::fetch:
        for (const QString& key : {QStringLiteral("url"), QStringLiteral("uri")})
            add(result.candidates, input.value(key).toString());
        break;
    }
    return result;
}

QString TeamRules::command(const QStringList& argv)
{
    if (argv.size() >= 3 && wrappingShells().contains(argv.at(0)) &&
        (argv.at(1) == QStringLiteral("-lc") || argv.at(1) == QStringLiteral("-c")))
        return argv.mid(2).join(QLatin1Char(' '));
    return argv.join(QLatin1Char(' '));
}

QStringList TeamRules::patchPaths(const QString& text)
{
    static const QStringList headers = {QStringLiteral("*** Update File:"),
                                        QStringLiteral("*** Delete File:"), QStringLiteral("*** Add File:"),
                                        QStringLiteral("*** Move to:")};
    QStringList paths;
    for (const QString& rawLine : text.split(QLatin1Char('\n'))) {
        const QString line = rawLine.trimmed();
        for (const QString& header : headers) {
            if (line.startsWith(header)) {
                add(paths, line.mid(header.size()).trimmed());
                break;
            }
        }
    }
    return paths;
}

QStringList TeamRules::segments(const QString& command)
{
    QString text = command;
    text.replace(QStringLiteral("$("), QStringLiteral("("));
    QStringList pieces;
    QString current;
    const QString& chain = chainCharacters();
    for (const QChar character : text) {
        if (chain.contains(character)) {
            pieces.append(current);
            current.clear();
        } else {
            current.append(character);
        }
    }
    pieces.append(current);
    QStringList result;
    for (const QString& piece : pieces) {
        const QString trimmed = piece.trimmed();
        if (!trimmed.isEmpty())
            result.append(trimmed);
    }
    return result;
}

bool TeamRules::glob(const QString& pattern, const QString& text)
{
    qsizetype p = 0;
    qsizetype t = 0;
    qsizetype star = -1;
    qsizetype resume = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern.at(p) == QLatin1Char('*')) {
            star = p++;
            resume = t;
        } else if (p < pattern.size() && pattern.at(p) == text.at(t)) {
            ++p;
            ++t;
        } else if (star >= 0) {
            // Let the most recent "*" swallow one more character and try again from there.
            p = star + 1;
            t = ++resume;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern.at(p) == QLatin1Char('*'))
        ++p;
    return p == pattern.size();
}

QStringList TeamRules::denyCandidates(const QString& command)
{
    QStringList out;
    expandCommand(command, 0, out);
    return out;
}

bool TeamRules::neverMatches(const TeamRule& rule, const TeamSubject& subject)
{
    for (const QString& candidate : subject.candidates) {
        if (glob(rule.pattern, candidate))
            return true;
        if (subject.kind != TeamSubjectKind::run)
            continue;
        for (const QString& piece : denyCandidates(candidate)) {
            if (glob(rule.pattern, piece))
                return true;
        }
    }
    return false;
}

bool TeamRules::alwaysMatches(const TeamRule& rule, const TeamSubject& subject)
{
    if (subject.candidates.isEmpty())
        return false;
    for (const QString& candidate : subject.candidates) {
        if (subject.kind == TeamSubjectKind::run) {
            for (const QChar character : chainCharacters()) {
                if (candidate.contains(character))
                    return false;
            }
        }
        if (!glob(rule.pattern, candidate))
            return false;
    }
    return true;
}

TeamDecision TeamRules::decide(const TeamSubject& subject, bool isQuestion, const QList<TeamRule>& rules,
                               const QSet<QString>& switchedOff, bool trusted)
{
    if (isQuestion)
        return TeamDecision::none();
    for (const TeamRule& rule : rules) {
        if (rule.action == TeamAction::never && rule.kind == subject.kind && neverMatches(rule, subject))
            return TeamDecision::deny(rule);
    }
    if (!trusted)
        return TeamDecision::none();
    QList<TeamRule> collected;
    for (const TeamRule& rule : rules) {
        if (rule.action == TeamAction::always && rule.kind == subject.kind && alwaysMatches(rule, subject))
            collected.append(rule);
    }
    if (collected.isEmpty())
        return TeamDecision::none();
    for (const TeamRule& rule : collected) {
        if (switchedOff.contains(rule.identifier))
            return TeamDecision::none();
    }
    return TeamDecision::allow(collected.first());
}

QString TeamRules::verb(TeamSubjectKind kind)
{
    switch (kind) {
    case TeamSubjectKind::run:
        return QStringLiteral("run");
    case TeamSubjectKind::edit:
        return QStringLiteral("edit");
    case TeamSubjectKind::fetch:
        return QStringLiteral("fetch");
    }
    return QStringLiteral("allow");
}

QString TeamRules::phrase(const TeamRule& rule)
{
    const QString action =
        rule.action == TeamAction::never ? QStringLiteral("never") : QStringLiteral("always");
    return action + QLatin1Char(' ') + verb(rule.kind) + QLatin1Char(' ') + rule.pattern;
}

QString TeamRules::reason(const TeamDecision& decision)
{
    if (!decision.rule)
        return {};
    switch (decision.outcome) {
    case TeamDecision::Outcome::deny:
        return QStringLiteral("Denied by your team's rule: ") + phrase(*decision.rule);
    case TeamDecision::Outcome::allow:
        return QStringLiteral("Allowed by your team's rule: ") + phrase(*decision.rule);
    case TeamDecision::Outcome::none:
        break;
    }
    return {};
}

} // namespace norva
