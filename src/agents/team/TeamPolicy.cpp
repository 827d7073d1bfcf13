#include "agents/team/TeamPolicy.h"

#include "agents/ApprovalsFolder.h"
#include "agents/team/TeamDenyResponder.h"
#include "agents/team/TeamEnforcement.h"
#include "agents/team/TeamPlatform.h"
#include "app/CountText.h"
#include "app/Log.h"
#include "app/Paths.h"
#include "app/SettingsStore.h"

#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QJsonArray>
#include <QJsonDocument>

namespace norva {
namespace {

// A folder that did not exist at start (an administrator adds "/etc/norva" later) is not watched;
// a slow re-check picks up what the watch cannot see.
constexpr Seconds kRulesRecheck{60};

std::optional<QByteArray> readFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

} // namespace

TeamPolicy::TeamPolicy(SettingsStore& settings, Clock& clock, QString approvalsFolder, QString userRulesFile,
                       QString managedRulesFile, QObject* parent)
    : QObject(parent), m_settings(settings), m_clock(clock), m_approvalsFolder(std::move(approvalsFolder)),
      m_userRulesFile(std::move(userRulesFile)), m_managedRulesFile(std::move(managedRulesFile)),
      m_ruleRows(QStringLiteral("identifier"), this)
{
    m_responderThread.setObjectName(QStringLiteral("norva.team.denycheck"));
    m_responder = new TeamDenyResponder;
    m_responder->moveToThread(&m_responderThread);
    m_responderThread.start();
    // Only the switched-off set matters here; the listed rules follow it.
    m_settings.follow({switchedOffKey}, this, [this](const QString&) {
        if (!m_rules.isEmpty())
            publishRules();
    });
}

TeamPolicy::~TeamPolicy()
{
    TeamDenyResponder* responder = m_responder;
    QMetaObject::invokeMethod(
        responder, [responder] { delete responder; }, Qt::BlockingQueuedConnection);
    m_responderThread.quit();
    m_responderThread.wait();
}

QString TeamPolicy::defaultUserRulesFile()
{
    return Paths::dataFolder() + QStringLiteral("/team-rules.json");
}

QString TeamPolicy::defaultManagedRulesFile()
{
    return Platform::managedTeamRulesFile();
}

void TeamPolicy::start()
{
    if (m_started)
        return;
    m_started = true;
    reload();
    watchFiles();
    m_recheck = m_clock.every(kRulesRecheck, [this] {
        watchFiles();
        reload();
    });
}

void TeamPolicy::watchFiles()
{
    if (!m_watcher) {
        m_watcher = new QFileSystemWatcher(this);
        connect(m_watcher, &QFileSystemWatcher::fileChanged, this, [this] {
            reload();
            watchFiles(); // a file replaced by a move drops out of the watch
        });
        connect(m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] {
            reload();
            watchFiles();
        });
    }
    QStringList wanted;
    for (const QString& file : {m_managedRulesFile, m_userRulesFile}) {
        if (file.isEmpty())
            continue;
        wanted << file << QFileInfo(file).absolutePath();
    }
    const QStringList watched = m_watcher->files() + m_watcher->directories();
    for (const QString& path : wanted) {
        if (!watched.contains(path) && QFileInfo::exists(path))
            m_watcher->addPath(path);
    }
}

TeamPolicy::Reading TeamPolicy::parse(const QByteArray& json)
{
    Reading reading;
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject() || !document.object().value(QStringLiteral("rules")).isArray()) {
        reading.failure = QStringLiteral("not a JSON object with a \"rules\" array");
        return reading;
    }
    const QJsonArray rules = document.object().value(QStringLiteral("rules")).toArray();
    QSet<QString> seen;
    for (qsizetype index = 0; index < rules.size(); ++index) {
        const QJsonObject object = rules.at(index).toObject();
        const QString id = object.value(QStringLiteral("id")).toString();
        const QString action = object.value(QStringLiteral("action")).toString();
        const QString kind = object.value(QStringLiteral("kind")).toString();
        const QString pattern = object.value(QStringLiteral("pattern")).toString();
        const QString name = id.isEmpty() ? QStringLiteral("number ") + QString::number(index + 1) : id;
        QString why;
        if (id.isEmpty())
            why = QStringLiteral("it has no \"id\"");
        else if (seen.contains(id))
            why = QStringLiteral("its \"id\" is used twice");
        else if (action != QStringLiteral("never") && action != QStringLiteral("always"))
            why = QStringLiteral("its \"action\" is not \"never\" or \"always\"");
        else if (kind != QStringLiteral("run") && kind != QStringLiteral("edit") &&
                 kind != QStringLiteral("fetch"))
            why = QStringLiteral("its \"kind\" is not \"run\", \"edit\" or \"fetch\"");
        else if (pattern.isEmpty())
            why = QStringLiteral("it has no \"pattern\"");
        if (!why.isEmpty()) {
            reading.skipped.append(QStringLiteral("rule ") + name + QStringLiteral(" (") + why +
                                   QLatin1Char(')'));
            continue;
        }
        seen.insert(id);
        TeamRule rule;
        rule.identifier = id;
        rule.action = action == QStringLiteral("never") ? TeamAction::never : TeamAction::always;
        rule.kind = kind == QStringLiteral("run")    ? TeamSubjectKind::run
                    : kind == QStringLiteral("edit") ? TeamSubjectKind::edit
                                                     : TeamSubjectKind::fetch;
        rule.pattern = pattern;
        reading.rules.append(rule);
    }
    return reading;
}

void TeamPolicy::reload()
{
    // The managed copy wins whenever it exists, even when it cannot be read: a person must not be
    // able to lift the administrator's rules by spoiling that file.
    const bool managed = !m_managedRulesFile.isEmpty() && QFileInfo::exists(m_managedRulesFile);
    const QString path = managed ? m_managedRulesFile : m_userRulesFile;
    if (!QFileInfo::exists(path)) {
        m_lastFailure.clear();
        apply({}, QString());
        return;
    }
    const auto bytes = readFile(path);
    const Reading reading =
        bytes ? parse(*bytes) : Reading{{}, QStringLiteral("the file could not be read"), {}};
    if (!reading.failure.isEmpty()) {
        const QString line = QStringLiteral("Norva team: the rules in ") + path +
                             QStringLiteral(" were not read (") + reading.failure +
                             QStringLiteral("); the rules in force stay as they were");
        if (line != m_lastFailure)
            logLine(line);
        m_lastFailure = line;
        return;
    }
    m_lastFailure.clear();
    if (reading.rules != m_rules || path != m_source) {
        for (const QString& skipped : reading.skipped)
            logLine(QStringLiteral("Norva team: skipped ") + skipped + QStringLiteral(" in ") + path);
    }
    apply(reading.rules, path);
}

void TeamPolicy::apply(const QList<TeamRule>& rules, const QString& source)
{
    const bool hadNever = hasNeverRules();
    if (rules == m_rules && source == m_source)
        return;
    m_rules = rules;
    m_source = source;
    const bool needed = hasNeverRules();
    int never = 0;
    for (const TeamRule& rule : rules)
        never += rule.action == TeamAction::never ? 1 : 0;
    if (rules.isEmpty())
        logLine(QStringLiteral("Norva team: no team rules in force"));
    else
        logLine(QStringLiteral("Norva team: ") +
                countText(rules.size(), QStringLiteral("rule"), QStringLiteral("rules")) +
                QStringLiteral(" in force from ") + source + QStringLiteral(" (") + QString::number(never) +
                QStringLiteral(" never, ") + QString::number(rules.size() - never) +
                QStringLiteral(" always)"));

    ApprovalsFolder(m_approvalsFolder).ensure(); // private to the person, never through a link
    TeamEnforcement::writeFlags(m_approvalsFolder, m_rules);
    TeamDenyResponder* responder = m_responder;
    const QString folder = m_approvalsFolder;
    const QList<TeamRule> current = m_rules;
    // Blocking, so that a check written the moment the rules change is answered by the new rules.
    QMetaObject::invokeMethod(
        responder,
        [responder, folder, current, needed] {
            responder->setRules(current);
            if (needed && !responder->isStarted())
                responder->start(folder);
            else if (needed)
                responder->answerAll();
            else
                responder->stop();
        },
        Qt::BlockingQueuedConnection);
    publishRules();
    if (needed != hadNever)
        emit hooksNeededChanged(needed);
}

bool TeamPolicy::hasNeverRules() const
{
    return TeamEnforcement::hasNeverRule(m_rules);
}

QSet<QString> TeamPolicy::switchedOff() const
{
    const QString stored =
        m_settings.storedText(switchedOffKey, QStringLiteral("a list of rule names")).value_or(QString());
    QSet<QString> result;
    for (const QJsonValue& value : QJsonDocument::fromJson(stored.toUtf8()).array())
        result.insert(value.toString());
    return result;
}

void TeamPolicy::setAlwaysRuleOn(const QString& identifier, bool on)
{
    QSet<QString> off = switchedOff();
    if (on == !off.contains(identifier))
        return;
    if (on)
        off.remove(identifier);
    else
        off.insert(identifier);
    QStringList sorted(off.cbegin(), off.cend());
    sorted.sort();
    m_settings.write(
        QString::fromUtf8(QJsonDocument(QJsonArray::fromStringList(sorted)).toJson(QJsonDocument::Compact)),
        switchedOffKey);
    publishRules();
}

void TeamPolicy::publishRules()
{
    m_ruleRows.setRows(rulesForView());
    emit rulesChanged();
}

QVariantList TeamPolicy::rulesForView() const
{
    const QSet<QString> off = switchedOff();
    QVariantList list;
    for (const TeamRule& rule : m_rules) {
        list.append(QVariantMap{{QStringLiteral("identifier"), rule.identifier},
                                {QStringLiteral("phrase"), TeamRules::phrase(rule)},
                                {QStringLiteral("never"), rule.action == TeamAction::never},
                                {QStringLiteral("on"), !off.contains(rule.identifier)}});
    }
    return list;
}

TeamDecision TeamPolicy::decidePrompt(const QString& tool, const QJsonObject& input, bool isQuestion) const
{
    const auto subject = TeamRules::subject(tool, input);
    if (!subject)
        return TeamDecision::none();
    return TeamRules::decide(*subject, isQuestion, m_rules, switchedOff(), true);
}

std::optional<TeamVerdict> TeamPolicy::answerFor(const QString& agent, const QString& tool,
                                                 const QJsonObject& input, bool isQuestion) const
{
    const TeamDecision decision = decidePrompt(tool, input, isQuestion);
    if (decision.outcome == TeamDecision::Outcome::none)
        return std::nullopt;
    const bool allowed = decision.outcome == TeamDecision::Outcome::allow;
    logLine(QStringLiteral("Norva team: ") +
            (allowed ? QStringLiteral("allowed ") : QStringLiteral("denied ")) + agent +
            QStringLiteral("'s ") + tool + QStringLiteral(" call (") + TeamRules::phrase(*decision.rule) +
            QLatin1Char(')'));
    return TeamVerdict{allowed, TeamRules::reason(decision)};
}

} // namespace norva
