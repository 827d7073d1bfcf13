#include "agents/TeamDenyResponder.h"

#include "agents/ApprovalsFolderWatch.h"
#include "agents/PromptCard.h"
#include "agents/TeamEnforcement.h"
#include "agents/TeamRules.h"
#include "app/AtomicFile.h"
#include "app/Log.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace norva {
namespace {

const QString kCheckPrefix = QStringLiteral("denycheck-");
const QString kCheckSuffix = QStringLiteral(".json");
const QString kAnswerPrefix = QStringLiteral("denyresp-");
// A payload is a tool call; anything far bigger is not one of ours and is answered empty.
constexpr qint64 kLargestPayload = 4 * 1024 * 1024;

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
    static const QStringList agents = {QStringLiteral("claude"), QStringLiteral("codex"),
                                       QStringLiteral("copilot")};
    static const QStringList phases = {QStringLiteral("pre"), QStringLiteral("perm")};
    bool numeric = false;
    parts.at(3).toLongLong(&numeric);
    if (!agents.contains(parts.at(1)) || !phases.contains(parts.at(2)) || !numeric)
        return std::nullopt;
    return CheckKey{parts.at(1), parts.at(2), parts.at(3)};
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
    const auto dialect = key.phase == QStringLiteral("pre") ? TeamEnforcement::Dialect::preToolUse
                                                            : TeamEnforcement::Dialect::permissionRequest;
    logLine(QStringLiteral("Norva team: denied ") + key.agent + QStringLiteral("'s ") + tool +
            QStringLiteral(" call (") + TeamRules::phrase(*decision.rule) + QLatin1Char(')'));
    return TeamEnforcement::denyJSON(key.agent, dialect, *decision.rule);
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
    const QDir folder(m_folder);
    const QStringList names =
        folder.entryList({kCheckPrefix + QLatin1Char('*') + kCheckSuffix}, QDir::Files | QDir::System);
    QSet<QString> present;
    int written = 0;
    for (const QString& name : names) {
        const auto key = parseName(name);
        if (!key)
            continue;
        present.insert(key->key());
        const QString answerPath = folder.filePath(kAnswerPrefix + key->key());
        if (m_answered.contains(key->key()) || QFile::exists(answerPath))
            continue;
        QFile check(folder.filePath(name));
        QByteArray payload;
        // A check that is a link or cannot be read is answered empty: the hook then lets the call pass.
        if (!check.symLinkTarget().isEmpty() || check.size() > kLargestPayload ||
            !check.open(QIODevice::ReadOnly))
            payload.clear();
        else
            payload = check.readAll();
        if (writeAnswer(answerPath, answerFor(*key, payload, rules))) {
            m_answered.insert(key->key());
            ++written;
        }
    }
    m_answered.intersect(present);
    return written;
}

bool TeamDenyResponder::writeAnswer(const QString& path, const QByteArray& body)
{
    if (const auto failure = writeFileAtomically(path, body)) {
        logLine(QStringLiteral("Norva team: the answer ") + path + QStringLiteral(" could not be written (") +
                *failure + QStringLiteral("); the hook lets the call pass"));
        return false;
    }
    return true;
}

} // namespace norva
