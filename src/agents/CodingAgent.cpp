#include "agents/CodingAgent.h"

namespace norva::CodingAgents {

QString displayName(CodingAgent agent)
{
    switch (agent) {
    case CodingAgent::claude:
        return QStringLiteral("Claude Code");
    case CodingAgent::codex:
        return QStringLiteral("Codex");
    case CodingAgent::copilot:
        return QStringLiteral("Copilot CLI");
    }
    return {};
}

CodingAgent fromPromptId(const QString& id)
{
    if (id.startsWith(QStringLiteral("codex-")))
        return CodingAgent::codex;
    if (id.startsWith(QStringLiteral("copilot-")))
        return CodingAgent::copilot;
    return CodingAgent::claude;
}

QString word(CodingAgent agent)
{
    switch (agent) {
    case CodingAgent::claude:
        return QStringLiteral("claude");
    case CodingAgent::codex:
        return QStringLiteral("codex");
    case CodingAgent::copilot:
        return QStringLiteral("copilot");
    }
    return {};
}

std::optional<CodingAgent> fromWord(const QString& text)
{
    for (const CodingAgent agent : {CodingAgent::claude, CodingAgent::codex, CodingAgent::copilot}) {
        if (word(agent) == text)
            return agent;
    }
    return std::nullopt;
}

} // namespace norva::CodingAgents
