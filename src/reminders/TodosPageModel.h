#pragma once

#include "app/Clock.h"
#include "app/QmlInstances.h"
#include "app/RowsModel.h"
#include "reminders/DueDraft.h"
#include "reminders/RemindersStore.h"

#include <QObject>
#include <QVariantList>
#include <QtQmlIntegration/qqmlintegration.h>

namespace norva {

class SettingsStore;

// The to-do page and tile as QML sees them: the smart lists and the person's lists, the rows of
// the chosen one, the trash, and the add field's live reading of the due words.
class TodosPageModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString access READ access NOTIFY changed)
    Q_PROPERTY(QString folder READ folder NOTIFY changed)
    Q_PROPERTY(bool readOnly READ readOnly CONSTANT)
    Q_PROPERTY(norva::RowsModel* views READ views CONSTANT)
    Q_PROPERTY(QVariantList lists READ lists NOTIFY listsChanged)
    Q_PROPERTY(QString currentView READ currentView WRITE setCurrentView NOTIFY changed)
    Q_PROPERTY(QString currentTitle READ currentTitle NOTIFY changed)
    Q_PROPERTY(bool currentIsList READ currentIsList NOTIFY changed)
    Q_PROPERTY(norva::RowsModel* rows READ rows CONSTANT)
    Q_PROPERTY(norva::RowsModel* tileRows READ tileRows CONSTANT)
    Q_PROPERTY(QStringList dueTitles READ dueTitles NOTIFY changed)
    Q_PROPERTY(int dueCount READ dueCount NOTIFY changed)
    Q_PROPERTY(bool showCompleted READ showCompleted WRITE setShowCompleted NOTIFY changed)
    Q_PROPERTY(norva::RowsModel* trash READ trash CONSTANT)
    Q_PROPERTY(QString message READ message NOTIFY messageChanged)
    Q_PROPERTY(QString draft READ draft WRITE setDraft NOTIFY draftChanged)
    Q_PROPERTY(QString reading READ reading NOTIFY draftChanged)
    Q_PROPERTY(QVariantList readSpans READ readSpans NOTIFY draftChanged)

public:
    static TodosPageModel* create(QQmlEngine*, QJSEngine*) { return QmlInstances::of<TodosPageModel>(); }
    TodosPageModel(RemindersStore& store, Clock& clock, SettingsStore* settings = nullptr,
                   QObject* parent = nullptr);

    QString access() const;
    QString folder() const { return m_store.root(); }
    bool readOnly() const { return m_store.isReadOnly(); }
    RowsModel* views() { return &m_views; }
    // The person's lists, for a row's "move to" choices.
    const QVariantList& lists() const { return m_lists; }
    QString currentView() const { return m_view; }
    void setCurrentView(const QString& view);
    QString currentTitle() const;
    bool currentIsList() const;
    RowsModel* rows() { return &m_rows; }
    // The first few of today's and overdue open to-dos, for the tile on the panel's first page.
    static constexpr int kTileRows = 3;
    RowsModel* tileRows() { return &m_tileRows; }
    // All of today's and overdue open to-dos: how many, and their titles for the focus timer to offer.
    int dueCount() const { return static_cast<int>(m_dueTitles.size()); }
    QStringList dueTitles() const { return m_dueTitles; }
    bool showCompleted() const { return m_showCompleted; }
    void setShowCompleted(bool on);
    RowsModel* trash() { return &m_trash; }
    QString message() const { return m_message; }

    QString draft() const { return m_draft.text(); }
    void setDraft(const QString& text);
    // "Tomorrow 17:00" for what the due words say, empty when they say nothing (or were dropped).
    QString reading() const { return m_draft.readingText(); }
    // Where the words read stand in the draft: [{start, length}], for highlighting.
    QVariantList readSpans() const { return m_draft.spans(); }

    // Files the draft (each line a to-do); answers whether it was filed, the words stay otherwise.
    Q_INVOKABLE bool add();
    // Keeps the due words as part of the title this time.
    Q_INVOKABLE void dropReading();
    Q_INVOKABLE void toggle(const QString& id);
    Q_INVOKABLE void rename(const QString& id, const QString& title);
    Q_INVOKABLE void trashTask(const QString& id);
    Q_INVOKABLE void moveToList(const QString& id, const QString& listId);
    // The row at `from` is dropped at `to` in the shown rows: their order becomes the manual order.
    Q_INVOKABLE void reorder(int from, int to);
    Q_INVOKABLE void clearCompleted();
    Q_INVOKABLE void restore(int index);
    Q_INVOKABLE bool createList(const QString& name);
    Q_INVOKABLE void deleteList(const QString& listId);
    Q_INVOKABLE void clearMessage();

    // The reading of a draft, as the add field shows it (public for tests).
    std::optional<due::Reading> readingOf(const QString& text) const;
    static QString dueText(const Reminder& reminder, const QDateTime& now);

signals:
    void changed();
    void listsChanged();
    void draftChanged();
    void messageChanged();

private:
    TodoView view() const;
    void say(const QString& message);
    // Lays what the store holds now over the lists shown, then says the page changed; again when
    // the day turns or the next timed to-do falls due, as their due words change then.
    void refresh();
    QVariantList rowsOf(const QList<Reminder>& reminders, const QDateTime& now) const;
    QVariantList trashRows(const QDateTime& now) const;
    QVariantList viewRows() const;
    QVariantMap rowOf(const Reminder& reminder, const QDateTime& now) const;

    RemindersStore& m_store;
    Clock& m_clock;
    SettingsStore* m_settings;
    QString m_view = QStringLiteral("today");
    bool m_showCompleted = false;
    QString m_message;
    DueDraft m_draft;
    RowsModel m_views{QStringLiteral("id"), this};
    RowsModel m_rows{QStringLiteral("id"), this};
    RowsModel m_tileRows{QStringLiteral("id"), this};
    RowsModel m_trash{QStringLiteral("id"), this};
    QVariantList m_lists;
    QStringList m_dueTitles;
    ScheduledWork m_nextTurn;
};

} // namespace norva
