#pragma once

#include "agents/ApprovalsFolder.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace norva {

// An agent's JSON configuration file that Norva merges its hook entries into (".claude/settings.json",
// ".codex/hooks.json"). Norva keeps every entry that is not its own, keeps a one-time backup of the
// person's file, and writes pretty-printed with sorted keys, atomically, so an agent reading the file
// at that moment never sees half of it.
class AgentConfigFile {
public:
    explicit AgentConfigFile(QString path);

    QString path() const { return m_path; }
    // The backup beside the file: "settings.json.norva-backup" for "settings.json".
    QString backupPath() const { return m_path + QStringLiteral(".norva-backup"); }

    // The file as a JSON object; a missing file, or one that is not a JSON object, reads as empty.
    QJsonObject read() const;
    // Backs the file up once, then writes the object whole (temporary file moved into place).
    FileResult write(const QJsonObject& object) const;
    // Writes a JSON document whole, pretty-printed with sorted keys, atomically; folders are made.
    static FileResult writeWhole(const QString& path, const QJsonObject& object);

    // True when an object in the entry's "hooks" array has a "command" that contains the marker.
    static bool entryHasMarker(const QJsonValue& entry, const QString& marker,
                               const QString& commandKey = QStringLiteral("command"));
    // The event's entries without Norva's own (those with the marker), in their order, then `added`
    // when given. Other events and keys of `hooks` are left as they are.
    static void replaceEntries(QJsonObject& hooks, const QString& event, const QString& marker,
                               const std::optional<QJsonObject>& added);
    // The first hook object under `event` whose command contains the marker.
    static std::optional<QJsonObject> findHook(const QJsonObject& hooks, const QString& event,
                                               const QString& marker);

private:
    QString m_path;
};

} // namespace norva
