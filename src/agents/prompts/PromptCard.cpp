#include "agents/prompts/PromptCard.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace norva {
namespace {

const QStringList& wrappingShells()
{
    static const QStringList shells = {"bash",          "sh",           "zsh",
                                       "/bin/bash",     "/bin/sh",      "/bin/zsh",
                                       "/usr/bin/bash", "/usr/bin/zsh", "/opt/homebrew/bin/bash"};
    return shells;
}

// An argument list as the person would type it; a wrapping "bash -lc ..." shows only its command.
QString commandLine(const QJsonArray& argv)
{
    QStringList words;
    for (const QJsonValue& word : argv)
        words << word.toString();
    if (words.size() >= 3 && wrappingShells().contains(words.at(0)) &&
        (words.at(1) == QLatin1String("-lc") || words.at(1) == QLatin1String("-c")))
        words = words.mid(2);
    return words.join(QLatin1Char(' '));
}

QString firstText(const QJsonObject& object, const QStringList& keys)
{
    for (const QString& key : keys) {
        const QJsonValue value = object.value(key);
        if (value.isString() && !value.toString().isEmpty())
            return value.toString();
    }
    return {};
}

QJsonObject objectOf(const QJsonValue& value)
{
    if (value.isObject())
        return value.toObject();
    // Some agents send the tool's arguments as JSON text.
    if (value.isString())
        return QJsonDocument::fromJson(value.toString().toUtf8()).object();
    return {};
}

} // namespace

QString PromptCard::subjectOf(const QJsonObject& input)
{
    QString subject;
    const QJsonValue command = input.value(QStringLiteral("command"));
    if (command.isString())
        subject = command.toString();
    else if (command.isArray())
        subject = commandLine(command.toArray());
    if (subject.isEmpty())
        subject = firstText(input, {"file_path", "notebook_path", "path", "url", "query", "pattern"});
    if (subject.isEmpty() && !input.isEmpty())
        subject = QString::fromUtf8(QJsonDocument(input).toJson(QJsonDocument::Compact));
    // Never shortened: the person must see the whole of what would run.
    return subject;
}

QString PromptCard::writesOf(const QJsonObject& input)
{
    if (const QString whole = firstText(input, {"content", "file_text", "new_source", "patch"});
        !whole.isEmpty())
        return whole;
    const auto replacement = [](const QJsonObject& edit) {
        const QString before = edit.value(QStringLiteral("old_string")).toString();
        const QString after = edit.value(QStringLiteral("new_string")).toString();
        if (before.isEmpty() && after.isEmpty())
            return QString();
        return QStringLiteral("Replace:\n") + before + QStringLiteral("\nWith:\n") + after;
    };
    QStringList pieces;
    if (const QString one = replacement(input); !one.isEmpty())
        pieces << one;
    for (const QJsonValue& edit : input.value(QStringLiteral("edits")).toArray()) {
        if (const QString piece = replacement(edit.toObject()); !piece.isEmpty())
            pieces << piece;
    }
    return pieces.join(QStringLiteral("\n\n"));
}

PromptCard::ToolCall PromptCard::toolCallOf(const QJsonObject& payload)
{
    return {firstText(payload, {"tool_name", "toolName"}),
            objectOf(payload.contains(QStringLiteral("tool_input"))
                         ? payload.value(QStringLiteral("tool_input"))
                         : payload.value(QStringLiteral("toolInput")))};
}

std::optional<PromptCard> PromptCard::fromPayload(const QString& id, const QByteArray& payload,
                                                  const QDateTime& arrivedAt)
{
    const QJsonDocument document = QJsonDocument::fromJson(payload);
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject object = document.object();
    PromptCard card;
    card.id = id;
    card.agent = CodingAgents::fromPromptId(id);
    ToolCall call = toolCallOf(object);
    card.tool = std::move(call.tool);
    card.input = std::move(call.input);
    card.transcriptPath = firstText(object, {"transcript_path"});
    card.sessionId = firstText(object, {"session_id", "sessionId"});
    card.cwd = firstText(object, {"cwd"});
    card.isQuestion = card.tool == QLatin1String("AskUserQuestion");
    card.arrivedAt = arrivedAt;
    if (card.isQuestion) {
        for (const QJsonValue& question : card.input.value(QStringLiteral("questions")).toArray()) {
            const QJsonObject asked = question.toObject();
            card.questions << asked.value(QStringLiteral("question")).toString();
            for (const QJsonValue& option : asked.value(QStringLiteral("options")).toArray())
                card.options << (option.isObject()
                                     ? option.toObject().value(QStringLiteral("label")).toString()
                                     : option.toString());
        }
    } else {
        card.subject = subjectOf(card.input);
        card.writes = writesOf(card.input);
    }
    return card;
}

} // namespace norva
