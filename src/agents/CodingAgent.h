#pragma once

#include <QString>

#include <optional>

namespace norva {

// The command-line coding agents whose prompts Norva answers.
enum class CodingAgent { claude, codex, copilot };

namespace CodingAgents {

// The name the person reads: "Claude Code", "Codex", "Copilot CLI".
QString displayName(CodingAgent agent);
// The agent of a prompt, read from its id: "codex-..." and "copilot-..." ids, else Claude Code.
CodingAgent fromPromptId(const QString& id);
// The word used in file names and logs: "claude", "codex", "copilot".
QString word(CodingAgent agent);
// The agent a word names; none for a word that names no agent.
std::optional<CodingAgent> fromWord(const QString& word);

} // namespace CodingAgents
} // namespace norva
