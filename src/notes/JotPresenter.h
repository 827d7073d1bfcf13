#pragma once

#include "app/Clock.h"
#include "app/QmlInstances.h"
#include "notes/QuickNotesStore.h"
#include "reminders/DueDraft.h"
#include "reminders/RemindersStore.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <QtQmlIntegration/qqmlintegration.h>
#include <optional>

namespace norva {

class SettingsStore;

// The jot sheet: opened from the notch or a hot key, it takes one text and saves it as a new note,
// appends it to a note (NoteTargetResolver) or files it as a to-do with its due read as it is
// typed, then shows a receipt with an undo for a moment and closes. The mode (new, append or todo)
// is remembered in the preferences.
class JotPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool showing READ showing NOTIFY stageChanged)
    Q_PROPERTY(QString stage READ stageWord NOTIFY stageChanged)
    Q_PROPERTY(QString mode READ modeWord WRITE setModeWord NOTIFY modeChanged)
    Q_PROPERTY(QString receiptMessage READ receiptMessage NOTIFY stageChanged)
    Q_PROPERTY(bool receiptUndoable READ receiptUndoable NOTIFY stageChanged)
    Q_PROPERTY(QString receiptGlyph READ receiptGlyph NOTIFY stageChanged)
    Q_PROPERTY(QStringList targets READ targets NOTIFY stageChanged)
    Q_PROPERTY(bool todoChoice READ todoChoice NOTIFY modeChanged)
    Q_PROPERTY(QString draft READ draft WRITE setDraft NOTIFY draftChanged)
    Q_PROPERTY(QString reading READ reading NOTIFY draftChanged)
    Q_PROPERTY(QVariantList readSpans READ readSpans NOTIFY draftChanged)
    Q_PROPERTY(QString message READ message NOTIFY draftChanged)

public:
    static JotPresenter* create(QQmlEngine*, QJSEngine*) { return QmlInstances::of<JotPresenter>(); }
    enum class Stage { idle, writing, saved, closing };
    // How a jotted text is kept; stored as "new", "append" or "todo".
    enum class Mode { newNote, append, todo };
    struct Receipt {
        QString message;
        bool undoable = false;
        QString glyph;
        bool operator==(const Receipt&) const = default;
    };

    // The receipt stays this long before the sheet closes by itself.
    static constexpr Seconds kReceiptStay{2.5};
    // The closing animation's time before the sheet is gone.
    static constexpr Seconds kClosing{0.25};
    static const QString modeKey; // "jot.mode.v1"

    JotPresenter(QuickNotesStore& store, Clock& clock, SettingsStore* settings = nullptr,
                 QObject* parent = nullptr);

    Q_INVOKABLE void open();
    Q_INVOKABLE void close();
    // Keeps the text as the mode says; `target` names the note or category to append to.
    Q_INVOKABLE bool submit(const QString& text, const QString& target = {});
    Q_INVOKABLE void undo();
    // Keeps the due words as part of the to-do's title this time.
    Q_INVOKABLE void dropReading();
    // Lets a line be filed as a to-do; without a store the choice is not offered.
    void setTodos(RemindersStore* todos);

    Stage stage() const { return m_stage; }
    bool showing() const { return m_stage != Stage::idle; }
    QString stageWord() const;
    Mode mode() const;
    void setMode(Mode mode);
    QString modeWord() const;
    void setModeWord(const QString& word);
    const Receipt& receipt() const { return m_receipt; }
    QString receiptMessage() const { return m_receipt.message; }
    bool receiptUndoable() const { return m_receipt.undoable; }
    QString receiptGlyph() const { return m_receipt.glyph; }
    // Names to append to: the notes' first lines, newest first, then the categories.
    QStringList targets() const;
    bool todoChoice() const { return m_todos != nullptr; }
    QString draft() const { return m_due.text(); }
    void setDraft(const QString& text);
    // "Tomorrow 17:00" for the due words of a to-do being typed; empty when none were read.
    QString reading() const;
    QVariantList readSpans() const;
    // Why the to-do was not filed, with the words kept in the sheet; empty otherwise.
    QString message() const { return m_message; }

signals:
    void stageChanged();
    void modeChanged();
    void draftChanged();

private:
    void setStage(Stage stage);
    void showReceipt(Receipt receipt);
    bool fileTodo(const QString& text);
    static QString wordOf(Mode mode);

    QuickNotesStore& m_store;
    Clock& m_clock;
    QPointer<SettingsStore> m_settings;
    Mode m_mode = Mode::newNote;
    Stage m_stage = Stage::idle;
    Receipt m_receipt;
    ScheduledWork m_later;
    // What undo puts back: the note made, or the note's text before the append, or the to-do filed.
    QUuid m_lastNote;
    std::optional<QString> m_textBefore;
    QString m_lastTodo;
    QPointer<RemindersStore> m_todos;
    DueDraft m_due;
    QString m_message;
};

} // namespace norva
