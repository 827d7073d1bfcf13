#pragma once

#include "agents/CodingAgent.h"

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace norva {

// One waiting prompt of a coding agent, as read from its "pending-ID.json": a permission to run a
// tool, or a question ("AskUserQuestion") that the agent asks in its own picker.
struct PromptCard {
    QString id;
    CodingAgent agent = CodingAgent::claude;
    bool isQuestion = false;
    QString tool;
    QJsonObject input;
    QString transcriptPath;
    QString sessionId;
    QString cwd;
    // What the tool acts on, as the card shows it: the command, the file, the address or the query.
    QString subject;
    // For a file edit: what will be written (the new content, or each replaced text and its
    // replacement, or the patch), whole; empty for other tools.
    QString writes;
    // For a question: each question's text, and its options.
    QStringList questions;
    QStringList options;
    QDateTime arrivedAt;

    bool operator==(const PromptCard&) const = default;

    // The tool and its arguments as the agents name them: "tool_name"/"tool_input" (Claude Code,
    // Codex) or "toolName"/"toolInput" (Copilot, whose arguments may come as JSON text).
    struct ToolCall {
        QString tool;
        QJsonObject input;
    };
    static ToolCall toolCallOf(const QJsonObject& payload);

    // Reads a pending file's payload; none when it is not a JSON object.
    static std::optional<PromptCard> fromPayload(const QString& id, const QByteArray& payload,
                                                 const QDateTime& arrivedAt);
    // The subject of a tool call: "command" (a text, or an argument list), a file path, a URL or a query.
    static QString subjectOf(const QJsonObject& input);
    // What an edit tool will write: "content", "file_text", "new_source", a patch, or the
    // "old_string"/"new_string" pairs of an edit (one pair, or the "edits" list).
    static QString writesOf(const QJsonObject& input);
};

} // namespace norva
