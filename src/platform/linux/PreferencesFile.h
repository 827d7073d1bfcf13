#pragma once

#include "app/PreferencesDatabase.h"

#include <QFileSystemWatcher>
#include <QHash>
#include <QMutex>
#include <QStringList>

namespace norva {

// The preferences on Linux: a small TOML file, one `"key" = value` per line, where a value keeps
// its type (true/false, 45, 0.3, "text"). Written atomically and watched, so an edit by another
// process or by hand reaches Norva at once. Lines Norva cannot read are kept as they are when it
// writes the file; a file that is not text at all is set aside before Norva writes a fresh one.
class PreferencesFile final : public PreferencesDatabase {
    Q_OBJECT
public:
    explicit PreferencesFile(QString path, QObject* parent = nullptr);

    std::optional<QVariant> value(const QString& key) const override;
    void setValue(const QString& key, const std::optional<QVariant>& value) override;

    QString path() const { return m_path; }
    // Re-reads the file now (the watcher calls this); emits changed() when the values differ.
    void reload();

    // The file format, exposed for tests.
    struct Line {
        QString text;          // the line as written
        QString key;           // empty for comments, blanks and lines that are not key = value
    };
    struct Parsed {
        QList<Line> lines;
        QHash<QString, QVariant> values;
        bool readable = true; // false when the bytes are not text
    };
    static Parsed parse(const QByteArray& bytes);
    static QString formatValue(const QVariant& value);
    static QString formatKey(const QString& key);

private:
    void watch();
    bool save();

    QString m_path;
    mutable QMutex m_lock;
    Parsed m_parsed;
    bool m_setAside = false; // an unreadable file was already moved out of the way
    QFileSystemWatcher m_watcher;
};

} // namespace norva
