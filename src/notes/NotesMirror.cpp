#include "notes/NotesMirror.h"

#include "app/AtomicFile.h"
#include "app/Log.h"
#include "app/SettingsStore.h"
#include "notes/FileTrouble.h"
#include "notes/MarkdownNote.h"
#include "notes/QuickNotesStore.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QUrl>

namespace norva {
namespace {

const QString kArea = QStringLiteral("Norva notes: ");
const QString kSafe = QStringLiteral(". Your notes are still safe in Norva.");
const QString kSuffix = QStringLiteral(".md");

QString pathIn(const QString& folder, const QString& name)
{
    return QDir(folder).filePath(name);
}

} // namespace

const QString NotesMirror::stateFileName = QStringLiteral("notes-mirror.json");

NotesMirror::NotesMirror(Clock& clock, QuickNotesStore& store, NotesFileOps& files, const QString& dataFolder,
                         QObject* parent)
    : QObject(parent), m_clock(clock), m_store(store), m_files(files),
      m_statePath(pathIn(dataFolder, stateFileName))
{
    loadState();
    connect(&m_store, &QuickNotesStore::notesChanged, this, &NotesMirror::scheduleSync);
    setStatus(QStringLiteral("No notes saved yet."));
}

QString NotesMirror::reason(const QString& systemWords)
{
    return plainFileTrouble(systemWords);
}

const QString NotesMirror::kEnabledKey = QStringLiteral("notesMirror.enabled");
const QString NotesMirror::kFolderKey = QStringLiteral("notesMirror.folder");

void NotesMirror::follow(SettingsStore& settings)
{
    m_settings = &settings;
    const auto read = [this] {
        if (m_settings)
            setConfig({m_settings->flag(kEnabledKey, false),
                       m_settings->storedText(kFolderKey).value_or(QString())});
    };
    settings.follow({kEnabledKey, kFolderKey}, this, [read](const QString&) { read(); });
    read();
}

void NotesMirror::setConfig(const Config& config)
{
    if (config == m_config)
        return;
    m_config = config;
    emit configChanged();
    scheduleSync();
}

void NotesMirror::setEnabled(bool on)
{
    if (m_settings)
        m_settings->write(on, kEnabledKey);
    setConfig({on, m_config.folder});
}

void NotesMirror::setFolder(const QString& folder)
{
    QString local = folder.trimmed();
    if (local.startsWith(QLatin1String("file://")))
        local = QUrl(local).toLocalFile();
    else if (local == QLatin1String("~") || local.startsWith(QLatin1String("~/")))
        local = QDir::homePath() + local.mid(1);
    if (m_settings)
        m_settings->write(local, kFolderKey);
    setConfig({m_config.enabled, local});
}

void NotesMirror::scheduleSync()
{
    if (!m_config.enabled || m_config.folder.isEmpty() || m_pending.isArmed())
        return;
    m_pending = m_clock.after(kSyncDelay, [this] { sync(); });
}

bool NotesMirror::sync()
{
    m_pending.cancel();
    if (!m_config.enabled || m_config.folder.isEmpty())
        return false;
    const QString folder = QDir::cleanPath(m_config.folder);
    if (!m_files.folderExists(folder))
        return fail(QStringLiteral("did not write the notes to ") + folder,
                    QStringLiteral("No such file or directory"));

    QMap<QUuid, QString>& written = m_state.folders[folder];
    QMap<QUuid, QString> now;
    QSet<QString> taken;
    int updated = 0;
    bool allWritten = true;
    std::optional<QString> trouble;
    for (const QuickNote& note : m_store.notes()) {
        const QString name = freeName(MarkdownNote::baseName(note), note.id, taken);
        taken.insert(name);
        const QString path = pathIn(folder, name);
        const QString before = written.value(note.id);
        // The note's name changed: its old file moves along, when it is still ours.
        if (!before.isEmpty() && before != name && isOurs(pathIn(folder, before), note.id) &&
            !m_files.exists(path)) {
            if (const auto why = m_files.move(pathIn(folder, before), path)) {
                logLine(kArea + QStringLiteral("could not move ") + before + QStringLiteral(" to ") + name +
                        QStringLiteral(" (") + *why + QStringLiteral(")"));
                trouble = *why;
                allWritten = false;
                now.insert(note.id, before);
                continue;
            }
        }
        const QByteArray bytes = MarkdownNote::render(note);
        if (m_files.read(path) != bytes) {
            if (const auto why = m_files.write(path, bytes)) {
                logLine(kArea + QStringLiteral("could not write ") + name + QStringLiteral(" (") + *why +
                        QStringLiteral(")"));
                trouble = *why;
                allWritten = false;
                if (!before.isEmpty())
                    now.insert(note.id, before);
                continue;
            }
            ++updated;
            m_state.lastWrite = m_clock.now();
        }
        now.insert(note.id, name);
    }
    // Notes that left Norva take their files along, and so do the files of a name left behind.
    for (auto it = written.cbegin(); it != written.cend(); ++it) {
        if (now.value(it.key()) == it.value() || taken.contains(it.value()))
            continue;
        const QString old = pathIn(folder, it.value());
        if (!isOurs(old, it.key()))
            continue;
        if (const auto why = m_files.remove(old)) {
            logLine(kArea + QStringLiteral("could not remove the old file ") + it.value() +
                    QStringLiteral(" (") + *why + QStringLiteral(")"));
            trouble = *why;
            allWritten = false;
        }
    }
    written = now;
    m_updatedLastTime = updated;
    saveState();
    if (trouble)
        return fail({}, *trouble);
    if (m_state.lastWrite.isValid())
        setStatus(QString::number(written.size()) + QStringLiteral(" saved · ") + QString::number(updated) +
                  QStringLiteral(" updated"));
    return allWritten;
}

// A name for the note's file that no other note and no file of someone else's holds.
QString NotesMirror::freeName(const QString& base, const QUuid& id, const QSet<QString>& taken) const
{
    const QString folder = QDir::cleanPath(m_config.folder);
    for (int n = 1;; ++n) {
        const QString name = (n == 1 ? base : base + QLatin1Char(' ') + QString::number(n)) + kSuffix;
        if (taken.contains(name))
            continue;
        const QString path = pathIn(folder, name);
        if (!m_files.exists(path) || isOurs(path, id))
            return name;
    }
}

bool NotesMirror::isOurs(const QString& path, const QUuid& id) const
{
    const std::optional<QByteArray> content = m_files.read(path);
    return content && MarkdownNote::ownerID(*content) == id;
}

bool NotesMirror::fail(const QString& line, const QString& systemWords)
{
    const QString plain = reason(systemWords);
    if (!line.isEmpty())
        logLine(kArea + line + QStringLiteral(" (") + plain + QStringLiteral(")"));
    setStatus(QStringLiteral("Not mirrored: ") + plain + kSafe);
    return false;
}

void NotesMirror::setStatus(const QString& status)
{
    if (status == m_status)
        return;
    m_status = status;
    emit statusChanged();
}

void NotesMirror::loadState()
{
    QFile file(m_statePath);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QJsonObject json = QJsonDocument::fromJson(file.readAll()).object();
    const QJsonObject folders = json.value(QStringLiteral("folders")).toObject();
    for (auto folder = folders.begin(); folder != folders.end(); ++folder) {
        const QJsonObject files = folder.value().toObject();
        QMap<QUuid, QString>& map = m_state.folders[folder.key()];
        for (auto it = files.begin(); it != files.end(); ++it) {
            const QUuid id = QUuid::fromString(it.key());
            // Only a plain name in that folder: a map edited to point elsewhere is ignored.
            const QString name = it.value().toString();
            if (!id.isNull() && !name.isEmpty() && !name.contains(QLatin1Char('/')))
                map.insert(id, name);
        }
    }
    m_state.lastWrite =
        QDateTime::fromString(json.value(QStringLiteral("lastWrite")).toString(), Qt::ISODateWithMs);
}

void NotesMirror::saveState()
{
    QJsonObject folders;
    for (auto folder = m_state.folders.cbegin(); folder != m_state.folders.cend(); ++folder) {
        QJsonObject files;
        for (auto it = folder->cbegin(); it != folder->cend(); ++it)
            files.insert(it.key().toString(QUuid::WithoutBraces), it.value());
        folders.insert(folder.key(), files);
    }
    QJsonObject json{{QStringLiteral("folders"), folders}};
    if (m_state.lastWrite.isValid())
        json.insert(QStringLiteral("lastWrite"), m_state.lastWrite.toUTC().toString(Qt::ISODateWithMs));
    if (const auto why = writeFileAtomically(m_statePath, QJsonDocument(json).toJson(QJsonDocument::Compact)))
        logLine(kArea + QStringLiteral("could not save the folder map: ") + *why);
}

} // namespace norva
