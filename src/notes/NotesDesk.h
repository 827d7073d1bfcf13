#pragma once

#include "app/Clock.h"
#include "app/QmlInstances.h"
#include "app/RowsModel.h"
#include "notes/QuickNotesStore.h"

#include <QDate>
#include <QHash>
#include <QObject>
#include <QVariantList>

#include <QtQmlIntegration/qqmlintegration.h>
#include <optional>

namespace norva {

// The notes page: the list of notes with their day and a preview, a filter, the editor of the
// chosen note, categories, and a note being made that is not saved until it has words
// (PendingNote). Rows are cached per note by its text, its time and the day, so an unchanged note
// is not drawn again when another changes.
class NotesDesk : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(norva::RowsModel* rows READ rows CONSTANT)
    Q_PROPERTY(QStringList categories READ categories NOTIFY rowsChanged)
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)
    Q_PROPERTY(QString selectedId READ selectedId NOTIFY selectionChanged)
    Q_PROPERTY(QString editorText READ editorText NOTIFY selectionChanged)
    Q_PROPERTY(QString editorCategory READ editorCategory NOTIFY selectionChanged)
    Q_PROPERTY(QString failureText READ failureText NOTIFY failureChanged)
    Q_PROPERTY(QString emptyText READ emptyText CONSTANT)

public:
    static NotesDesk* create(QQmlEngine*, QJSEngine*) { return QmlInstances::of<NotesDesk>(); }
    struct Row {
        QString id;
        QString name;
        QString day;
        QString preview;
        QString category;
        bool isPending = false;
        bool operator==(const Row&) const = default;
    };
    struct PendingNote {
        QUuid id;
        QString category;
    };

    NotesDesk(QuickNotesStore& store, Clock& clock, QObject* parent = nullptr);

    RowsModel* rows() { return &m_rowModel; }
    const QList<Row>& rowList() const { return m_rows; }
    QStringList categories() const { return m_store.categories(); }
    QString filter() const { return m_filter; }
    void setFilter(const QString& filter);
    QString selectedId() const;
    QString editorText() const;
    QString editorCategory() const;
    QString failureText() const;
    QString emptyText() const { return QStringLiteral("Notes you jot from the notch will be here."); }
    // How many rows were built rather than taken from the cache, since the desk was made.
    int rowsBuilt() const { return m_rowsBuilt; }

    // Begins a note in the category (or the general one); it joins the notes with its first words.
    Q_INVOKABLE void newNote(const QString& category = {});
    Q_INVOKABLE void select(const QString& id);
    Q_INVOKABLE void edit(const QString& text);
    Q_INVOKABLE void setCategory(const QString& category);
    Q_INVOKABLE void removeSelected();
    // Brings back the note removed last.
    Q_INVOKABLE void undoRemove();

    // "Today", "Yesterday", or the date ("18 Nov"), counted in local days.
    static QString dayText(const QDateTime& updated, const QDate& today);
    // The words after the first line, on one line, cut short.
    static QString preview(const QString& text);

signals:
    void rowsChanged();
    void filterChanged();
    void selectionChanged();
    void failureChanged();

private:
    struct CachedRow {
        QString text;
        QDateTime updatedAt;
        QString category;
        QDate day;
        Row row;
    };
    void rebuild();
    Row rowFor(const QuickNote& note, const QDate& today);
    bool matches(const QuickNote& note) const;

    QuickNotesStore& m_store;
    Clock& m_clock;
    QString m_filter;
    QUuid m_selected;
    std::optional<PendingNote> m_pending;
    std::optional<std::pair<QuickNote, int>> m_removed;
    QHash<QUuid, CachedRow> m_cache;
    QList<Row> m_rows;
    RowsModel m_rowModel{QStringLiteral("id"), this};
    QDate m_dayTurnAfter; // the day whose end rebuilds the rows, as their day words change then
    ScheduledWork m_dayTurn;
    int m_rowsBuilt = 0;
};

} // namespace norva
