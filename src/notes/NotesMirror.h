#pragma once

#include "app/Clock.h"
#include "app/QmlInstances.h"
#include "notes/NotesFileOps.h"
#include "notes/QuickNote.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>

#include <QtQmlIntegration/qqmlintegration.h>
#include <optional>

namespace norva {

class QuickNotesStore;
class SettingsStore;

// Writes every quick note as a Markdown file into the folder the person chose, so other tools can
// read them. It renames and removes only files of its own (recognised by the "norva:" id line in
// their front matter); any other file in the folder is never touched. Which file it wrote for each
// note is kept per folder in "notes-mirror.json". Main thread; the file work goes through
// NotesFileOps.
class NotesMirror : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString status READ status NOTIFY statusChanged)
    Q_PROPERTY(bool enabled READ enabled WRITE setEnabled NOTIFY configChanged)
    Q_PROPERTY(QString folder READ folder WRITE setFolder NOTIFY configChanged)

public:
    static NotesMirror* create(QQmlEngine*, QJSEngine*) { return QmlInstances::of<NotesMirror>(); }
    // A burst of edits is written once, this long after the last.
    static constexpr Seconds kSyncDelay{1.0};
    static const QString stateFileName; // "notes-mirror.json"

    struct Config {
        bool enabled = false;
        QString folder;
        bool operator==(const Config&) const = default;
    };
    struct State {
        QMap<QString, QMap<QUuid, QString>> folders; // folder -> note id -> file name written
        QDateTime lastWrite;
        bool operator==(const State&) const = default;
    };

    NotesMirror(Clock& clock, QuickNotesStore& store, NotesFileOps& files, const QString& dataFolder,
                QObject* parent = nullptr);

    static const QString kEnabledKey; // "notesMirror.enabled", off when absent
    static const QString kFolderKey;  // "notesMirror.folder": the folder the notes are written to

    // Follows its two preferences, edits outside Norva included.
    void follow(SettingsStore& settings);
    void setConfig(const Config& config);
    const Config& config() const { return m_config; }
    bool enabled() const { return m_config.enabled; }
    void setEnabled(bool on);
    QString folder() const { return m_config.folder; }
    void setFolder(const QString& folder);

    // Writes what changed now; true when every note is in the folder as it is in Norva.
    bool sync();
    const State& state() const { return m_state; }
    // "No notes saved yet.", "3 saved · 1 updated", or what stopped the mirror and why.
    QString status() const { return m_status; }

    // The plain words for why a file could not be written, from the system's ("the disk is full").
    static QString reason(const QString& systemWords);

signals:
    void statusChanged();
    void configChanged();

private:
    void scheduleSync();
    void loadState();
    void saveState();
    bool isOurs(const QString& path, const QUuid& id) const;
    QString freeName(const QString& base, const QUuid& id, const QSet<QString>& taken) const;
    bool fail(const QString& logLine, const QString& systemWords);
    void setStatus(const QString& status);

    Clock& m_clock;
    QuickNotesStore& m_store;
    NotesFileOps& m_files;
    QString m_statePath;
    QPointer<SettingsStore> m_settings;
    Config m_config;
    State m_state;
    ScheduledWork m_pending;
    QString m_status;
    int m_updatedLastTime = 0;
};

} // namespace norva
