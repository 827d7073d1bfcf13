#include "agents/team/TeamDenyResponder.h"

#include "agents/ApprovalsFolder.h"
#include "agents/ApprovalsFolderWatch.h"
#include "agents/prompts/PromptCard.h"
#include "agents/team/TeamEnforcement.h"
#include "agents/team/TeamRules.h"
#include "app/Log.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace norva {
namespace {

const QString kCheckPrefix = QStringLiteral("denycheck-");
const QString kCheckSuffix = QStringLiteral(".json");
const QString kAnswerPrefix = QStringLiteral("denyresp-");
const QString kPrePhase = QStringLiteral("pre");
const QString kPermPhase = QStringLiteral("perm");

} // namespace

TeamDenyResponder::TeamDenyResponder(QObject* parent) : QObject(parent) {}

bool TeamDenyResponder::start(const QString& approvalsFolder)
{
    stop();
    m_watch = new ApprovalsFolderWatch(approvalsFolder, this);
    if (!m_watch->start()) {
        logLine(QStringLiteral("Norva team: never-allow checks in ") + approvalsFolder +
                QStringLiteral(" can't be answered (the folder could not be watched); hooks let calls pass"));
        delete m_watch;
        m_watch = nullptr;
        return false;
    }
    m_folder = approvalsFolder;
    connect(m_watch, &ApprovalsFolderWatch::changed, this, [this] { answerAll(); });
    answerAll();
    return true;
}

void TeamDenyResponder::stop()
{
    delete m_watch;
    m_watch = nullptr;
    m_folder.clear();
    m_answered.clear();
}

void TeamDenyResponder::setRules(const QList<TeamRule>& rules)
{
    QList<TeamRule> never;
    for (const TeamRule& rule : rules) {
        if (rule.action == TeamAction::never)
            never.append(rule);
    }
    QMutexLocker lock(&m_rulesLock);
    m_rules = never;
}

std::optional<TeamDenyResponder::CheckKey> TeamDenyResponder::parseName(const QString& fileName)
{
    if (!fileName.startsWith(kCheckPrefix) || !fileName.endsWith(kCheckSuffix))
        return std::nullopt;
    const QStringList parts = fileName.chopped(kCheckSuffix.size()).split(QLatin1Char('-'));
    if (parts.size() != 4)
        return std::nullopt;
    const auto agent = CodingAgents::fromWord(parts.at(1));
    const bool pre = parts.at(2) == kPrePhase;
    bool numeric = false;
    parts.at(3).toLongLong(&numeric);
    if (!agent || !(pre || parts.at(2) == kPermPhase) || !numeric)
        return std::nullopt;
    return CheckKey{*agent, pre ? HookPhase::preToolUse : HookPhase::permissionRequest, parts.at(3)};
}

QString TeamDenyResponder::CheckKey::key() const
{
    return CodingAgents::word(agent) + QLatin1Char('-') +
           (phase == HookPhase::preToolUse ? kPrePhase : kPermPhase) + QLatin1Char('-') + pid;
}

QByteArray TeamDenyResponder::answerFor(const CheckKey& key, const QByteArray& payload,
                                        const QList<TeamRule>& rules)
{
    const PromptCard::ToolCall call = PromptCard::toolCallOf(QJsonDocument::fromJson(payload).object());
    const QString& tool = call.tool;
    const auto subject = TeamRules::subject(tool, call.input);
    if (!subject)
        return {};
    const TeamDecision decision = TeamRules::decide(*subject, false, rules, {}, false);
    if (decision.outcome != TeamDecision::Outcome::deny)
        return {};
    logLine(QStringLiteral("Norva team: denied ") + CodingAgents::word(key.agent) + QStringLiteral("'s ") +
            tool + QStringLiteral(" call (") + TeamRules::phrase(*decision.rule) + QLatin1Char(')'));
    return TeamEnforcement::denyJSON(key.agent, key.phase, *decision.rule);
}

int TeamDenyResponder::answerAll()
{
    if (m_folder.isEmpty())
        return 0;
    QList<TeamRule> rules;
    {
        QMutexLocker lock(&m_rulesLock);
        rules = m_rules;
    }
    // Every read and write goes through ApprovalsFolder: a link planted under a check's or an
    // answer's name is never followed.
    const ApprovalsFolder folder(m_folder);
    QSet<QString> present;
    int written = 0;
    for (const QString& name : folder.names()) { // a check planted as a link is answered too, empty
        const auto key = parseName(name);
        if (!key)
            continue;
        present.insert(key->key());
        const QString answerName = kAnswerPrefix + key->key();
        if (m_answered.contains(key->key()) || folder.exists(answerName))
            continue;
        // A check that cannot be read is answered empty: the hook then lets the call pass.
        const QByteArray payload = folder.read(name).value_or(QByteArray());
        if (writeAnswer(folder, answerName, answerFor(*key, payload, rules))) {
            m_answered.insert(key->key());
            ++written;
        }
    }
    m_answered.intersect(present);
    return written;
}

bool TeamDenyResponder::writeAnswer(const ApprovalsFolder& folder, const QString& name,
                                    const QByteArray& body)
{
    if (const FileResult written = folder.write(name, body); !written) {
        logLine(QStringLiteral("Norva team: the answer ") + folder.filePath(name) +
                QStringLiteral(" could not be written (") + written.error +
                QStringLiteral("); the hook lets the call pass"));
        return false;
    }
    return true;
}

} // namespace norva
