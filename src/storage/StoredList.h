#pragma once

#include "app/Clock.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace norva {

// One JSON list file of Norva's own ("clipboard.json", "shelf.json"): read leniently at start,
// saved a moment after each change (so a burst of changes costs one write), always atomically.
// A file that cannot be read is never overwritten: the list starts empty, and the file is set
// aside only when the person next changes the list.
class StoredList {
public:
    // The wait between a change and its save, so a burst of copies writes the file once.
    static constexpr Seconds kSaveDelay{0.5};

    // The words a list's log lines use where its area says things its own way (the notes).
    struct Wording {
        QString notAList = QStringLiteral("it is not a JSON list");
        // %1 the file's name, %2 the name it was set aside under
        QString setAside = QStringLiteral(": kept the unreadable %1 as %2");
        QString stamp = QStringLiteral("yyyyMMdd-HHmmss");
    };

    // `area` opens every log line ("Norva clipboard"); `snapshot` gives the list to save.
    StoredList(QString path, QString area, Clock& clock, Seconds saveDelay = kSaveDelay);
    ~StoredList(); // a save still waiting is done now, so a quit loses nothing
    StoredList(const StoredList&) = delete;
    StoredList& operator=(const StoredList&) = delete;

    void setSnapshot(std::function<QJsonArray()> snapshot) { m_snapshot = std::move(snapshot); }
    void setWording(Wording wording) { m_wording = std::move(wording); }
    // Told after every save that ran, good or failed (lastSaveFailure() says which).
    void setOnSaved(std::function<void()> onSaved) { m_onSaved = std::move(onSaved); }
    // The file holds more than the list shows (elements that did not decode): it is set aside,
    // as an unreadable one is, before the list is first saved over it.
    void keepFileBeforeNextSave() { m_unreadable = true; }

    // What reading the file found: its elements, or why it could not be read, and the names of
    // the half-written saves cleared beside it.
    struct Read {
        QJsonArray elements;
        QString failure; // empty when the file was read or is missing
        QStringList cleared;
    };
    // Reads the file without touching the list's state or the log, so it may run off the main thread.
    // `notAList` is the reason given for JSON that is not a list (empty: Wording's own).
    static Read read(const QString& path, const QString& notAList = {});
    // Takes a reading on the main thread: logs what it found, and remembers an unreadable file so
    // it is set aside before the first save.
    void take(const Read& read);

    // Reads the file now: a missing file is an empty list; one that cannot be read logs
    // ": could not read" and gives an empty list, and the file stays as it is for now.
    // Also clears what a quit left half written beside it.
    QJsonArray load();

    // Decodes each element; one that does not decode is skipped and counted in `skipped`.
    template <typename T>
    static QList<T> decodeAll(const QJsonArray& elements,
                              const std::function<std::optional<T>(const QJsonObject&)>& one, int& skipped)
    {
        QList<T> decoded;
        decoded.reserve(elements.size());
        for (const auto& element : elements) {
            std::optional<T> value = element.isObject() ? one(element.toObject()) : std::nullopt;
            if (value)
                decoded.append(std::move(*value));
            else
                ++skipped;
        }
        return decoded;
    }
    // Decodes each element; one that does not decode is skipped (and counted in the log).
    template <typename T>
    QList<T> decode(const QJsonArray& elements,
                    const std::function<std::optional<T>(const QJsonObject&)>& one) const
    {
        int skipped = 0;
        QList<T> decoded = decodeAll(elements, one, skipped);
        if (skipped > 0)
            reportSkipped(skipped);
        return decoded;
    }
    // ": skipped 3 entries of clipboard.json that did not read"
    void reportSkipped(int count) const;

    // Schedules a save of the snapshot; changes until it runs are saved together.
    void later();
    // Runs a waiting save at once; true when the file holds the list afterwards.
    bool saveNow();

    bool isPending() const { return m_pending.isArmed(); }
    // True after a failed save until the next good one: the list on screen is not on disk yet.
    bool lastSaveFailed() const { return m_lastSaveFailure.has_value(); }
    // Why the last save failed, in the system's words; none after a good save.
    const std::optional<QString>& lastSaveFailure() const { return m_lastSaveFailure; }
    // The name the unreadable file was last set aside under; empty when none was.
    QString setAsideName() const { return m_setAsideName; }
    // True while the file on disk could not be read and has not been set aside yet.
    bool holdsUnreadable() const { return m_unreadable; }
    QString path() const { return m_path; }
    QString fileName() const;

private:
    bool setAsideUnreadable();
    bool save();

    QString m_path;
    QString m_area;
    Clock& m_clock;
    Seconds m_saveDelay;
    std::function<QJsonArray()> m_snapshot;
    ScheduledWork m_pending;
    Wording m_wording;
    std::function<void()> m_onSaved;
    bool m_unreadable = false;
    std::optional<QString> m_lastSaveFailure;
    QString m_setAsideName;
};

} // namespace norva
