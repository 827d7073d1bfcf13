#include "agents/hooks/AgentConfigFile.h"

#include "app/AtomicFile.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

namespace norva {

AgentConfigFile::AgentConfigFile(QString path) : m_path(std::move(path)) {}

QJsonObject AgentConfigFile::read() const
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    return document.isObject() ? document.object() : QJsonObject();
}

FileResult AgentConfigFile::write(const QJsonObject& object) const
{
    // The backup is made once, so it always holds the person's file from before Norva first touched it.
    if (QFileInfo::exists(m_path) && !QFileInfo::exists(backupPath()) && !QFile::copy(m_path, backupPath()))
        return FileResult::failed(QStringLiteral("the backup could not be made"));
    // A file that is not a JSON object is rewritten from scratch; its text is set aside first.
    if (QFileInfo::exists(m_path)) {
        QFile current(m_path);
        if (current.open(QIODevice::ReadOnly) && !QJsonDocument::fromJson(current.readAll()).isObject()) {
            const QString aside = m_path + QStringLiteral(".norva-unreadable");
            QFile::remove(aside);
            QFile::copy(m_path, aside);
        }
    }
    return writeWhole(m_path, object);
}

FileResult AgentConfigFile::writeWhole(const QString& path, const QJsonObject& object)
{
    // QJsonObject keeps its keys sorted, so Indented gives pretty-printed, sorted-key output.
    if (const auto failure = writeFileAtomically(path, QJsonDocument(object).toJson(QJsonDocument::Indented)))
        return FileResult::failed(*failure);
    return FileResult::done();
}

bool AgentConfigFile::entryHasMarker(const QJsonValue& entry, const QString& marker,
                                     const QString& commandKey)
{
    const QJsonArray hooks = entry.toObject().value(QStringLiteral("hooks")).toArray();
    for (const QJsonValue& hook : hooks) {
        const QJsonValue command = hook.toObject().value(commandKey);
        if (command.isString() && command.toString().contains(marker))
            return true;
    }
    return false;
}

void AgentConfigFile::replaceEntries(QJsonObject& hooks, const QString& event, const QString& marker,
                                     const std::optional<QJsonObject>& added)
{
    QJsonArray kept;
    bool removed = false;
    for (const QJsonValue& entry : hooks.value(event).toArray()) {
        if (entryHasMarker(entry, marker))
            removed = true;
        else
            kept.append(entry);
    }
    if (added)
        kept.append(*added);
    if (kept.isEmpty() && removed)
        hooks.remove(event); // an event that held only Norva's entry goes, rather than lingering as []
    else if (!kept.isEmpty())
        hooks.insert(event, kept);
}

std::optional<QJsonObject> AgentConfigFile::findHook(const QJsonObject& hooks, const QString& event,
                                                     const QString& marker)
{
    for (const QJsonValue& entry : hooks.value(event).toArray()) {
        for (const QJsonValue& hook : entry.toObject().value(QStringLiteral("hooks")).toArray()) {
            const QJsonValue command = hook.toObject().value(QStringLiteral("command"));
            if (command.isString() && command.toString().contains(marker))
                return hook.toObject();
        }
    }
    return std::nullopt;
}

} // namespace norva
