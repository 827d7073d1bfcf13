#pragma once

#include "app/Clock.h"
#include "notes/QuickNotesStore.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <optional>

namespace norva {

class SettingsStore;

// The jot sheet: opened from the notch or a hot key, it takes one text and saves it as a new note
// or appends it to a note (NoteTargetResolver), then shows a receipt with an undo for a moment and
// closes. The mode (new or append) is remembered in the preferences.
class JotPresenter : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool showing READ showing NOTIFY stageChanged)
    Q_PROPERTY(QString stage READ stageWord NOTIFY stageChanged)
    Q_PROPERTY(QString mode READ modeWord WRITE setModeWord NOTIFY modeChanged)
    Q_PROPERTY(QString receiptMessage READ receiptMessage NOTIFY stageChanged)
    Q_PROPERTY(bool receiptUndoable READ receiptUndoable NOTIFY stageChanged)
    Q_PROPERTY(QString receiptGlyph READ receiptGlyph NOTIFY stageChanged)
    Q_PROPERTY(QStringList targets READ targets NOTIFY stageChanged)
    Q_PROPERTY(bool todoChoice READ todoChoice CONSTANT)

public:
    enum class Stage { idle, writing, saved, closing };
    // How a jotted text is kept; stored as "new" or "append".
    enum class Mode { newNote, append };
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

    JotPresenter(QuickNotesStore& store, Clock& clock, SettingsStore* settings = nullptr, QObject* parent = nullptr);

    Q_INVOKABLE void open();
    Q_INVOKABLE void close();
    // Keeps the text as the mode says; `target` names the note or category to append to.
    Q_INVOKABLE bool submit(const QString& text, const QString& target = {});
    Q_INVOKABLE void undo();

    Stage stage() const { return m_stage; }
    bool showing() const { return m_stage != Stage::idle; }
    QString stageWord() const;
    Mode mode() const;
    void setMode(Mode mode);
    QString modeWord() const { return mode() == Mode::append ? QStringLiteral("append") : QStringLiteral("new"); }
    void setModeWord(const QString& word) { setMode(word == QLatin1String("append") ? Mode::append : Mode::newNote); }
    const Receipt& receipt() const { return m_receipt; }
    QString receiptMessage() const { return m_receipt.message; }
    bool receiptUndoable() const { return m_receipt.undoable; }
    QString receiptGlyph() const { return m_receipt.glyph; }
    // Names to append to: the notes' first lines, newest first, then the categories.
    QStringList targets() const;
    // Filing a line as a to-do needs the to-do store, which is not there yet.
    bool todoChoice() const { return false; }

signals:
    void stageChanged();
    void modeChanged();

private:
    void setStage(Stage stage);
    void showReceipt(Receipt receipt);

    QuickNotesStore& m_store;
    Clock& m_clock;
    QPointer<SettingsStore> m_settings;
    Mode m_mode = Mode::newNote;
    Stage m_stage = Stage::idle;
    Receipt m_receipt;
    ScheduledWork m_later;
    // What undo puts back: the note made, or the note's text before the append.
    QUuid m_lastNote;
    std::optional<QString> m_textBefore;
};

} // namespace norva
