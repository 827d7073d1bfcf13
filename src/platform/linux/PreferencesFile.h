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
// writes the file, unless there are so many that rewriting them with every change would cost:
// then they are moved once to a file of their own beside it. A file that is not text at all is
// set aside before Norva writes a fresh one.
class PreferencesFile final : public PreferencesDatabase {
    Q_OBJECT
public:
    // Past this many bytes of lines it cannot read, the file's unread lines are moved aside at the
    // first change instead of being rewritten with every change.
    static constexpr qsizetype kUnreadAsideBytes = 64 * 1024;

    explicit PreferencesFile(QString path, QObject* parent = nullptr);

    std::optional<QVariant> value(const QString& key) const override;
    void setValue(const QString& key, const std::optional<QVariant>& value) override;

    QString path() const { return m_path; }
    // Re-reads the file now (the watcher calls this); emits changed() when the values differ.
    void reload();

    // The file format, exposed for tests.
    struct Line {
        QString text; // the line as written
        QString key;  // empty for comments, blanks and lines that are not key = value
        // A line that is neither a setting, a comment nor blank.
        bool isUnread() const;
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
    // Called with the lock held, before a change is written.
    bool setAsideUnreadable();
    void setAsideUnreadLines();
    void reportUnreadable();
    void reportUnreadLines();

    enum class Unreadable { none, waiting, told }; // whether "not text" was logged yet

    QString m_path;
    mutable QMutex m_lock;
    Parsed m_parsed;
    bool m_setAside = false; // an unreadable file was already moved out of the way
    Unreadable m_unreadable = Unreadable::none;
    bool m_unreadLinesTold = false; // once a run
    QFileSystemWatcher m_watcher;
};

} // namespace norva
