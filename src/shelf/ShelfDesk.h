#pragma once

#include "app/QmlInstances.h"
#include "app/RowsModel.h"
#include "shelf/ShelfActions.h"
#include "shelf/ShelfManager.h"

#include <QObject>
#include <QUrl>
#include <QVariantList>

#include <QtQmlIntegration/qqmlintegration.h>
#include <functional>
#include <memory>
#include <optional>

namespace norva {

class ClipboardSource;
class FileOpener;

// The shelf page's view model: binds the shelf's rows and the file actions to the page. File work
// runs off the main thread; when it ends, the rows follow and the page shows a short toast.
class ShelfDesk : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(norva::RowsModel* items READ items CONSTANT)
    Q_PROPERTY(int count READ count NOTIFY itemsChanged)
    Q_PROPERTY(QStringList pictureIds READ pictureIds NOTIFY itemsChanged)
    Q_PROPERTY(QString toast READ toast NOTIFY toastChanged)
    Q_PROPERTY(bool toastFailed READ toastFailed NOTIFY toastChanged)
    Q_PROPERTY(int toastMs READ toastMs NOTIFY toastChanged)
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)
    Q_PROPERTY(QString emptyText READ emptyText CONSTANT)
    Q_PROPERTY(bool openOnDrop READ openOnDrop)

public:
    static ShelfDesk* create(QQmlEngine*, QJSEngine*) { return QmlInstances::of<ShelfDesk>(); }
    enum class Action {
        convert,
        openWith,
        airDrop,
        compress,
        reveal,
        remove,
        open,
        copy,
        moveToFolder,
        copyToFolder,
        saveAll,
        clearAll
    };
    // What an action came to: the toast the page shows (if any) and whether it failed.
    struct Outcome {
        std::optional<QString> toast;
        bool failed = false;
    };
    // Runs one piece of file work off the main thread; tests may run it in place.
    using OffMain = std::function<void(QObject* receiver, std::function<Outcome()> work,
                                       std::function<void(Outcome)> done)>;

    // `opener` opens files and folders in the desktop's apps (Platform::makeFileOpener()).
    ShelfDesk(ShelfManager& shelf, ClipboardSource& clipboard, std::shared_ptr<FileOpener> opener,
              QObject* parent = nullptr);

    // `argument`: the format name for convert, the folder for move, copy and save, the program for openWith.
    void perform(Action action, const QList<QUuid>& ids, const QString& argument = {},
                 std::function<void(Outcome)> done = {});

    RowsModel* items() { return &m_items; }
    int count() const { return int(m_shelf.items().size()); }
    // The pictures on the shelf, newest first: what "PDF of pictures" puts together.
    QStringList pictureIds() const;
    // How long a toast stays: a word that it worked, or long enough to read what to do about a failure.
    static constexpr int kToastMs = 3000;
    static constexpr int kAdviceMs = 12000;

    QString toast() const { return m_toast; }
    bool toastFailed() const { return m_toastFailed; }
    int toastMs() const { return m_toastFailed ? kAdviceMs : kToastMs; }
    bool busy() const { return m_running > 0; }
    QString emptyText() const;
    bool openOnDrop() const { return m_shelf.openOnDrop(); }

    Q_INVOKABLE void compress(const QStringList& ids) { perform(Action::compress, uuids(ids)); }
    Q_INVOKABLE void convert(const QStringList& ids, const QString& format)
    {
        perform(Action::convert, uuids(ids), format);
    }
    Q_INVOKABLE void reveal(const QString& id) { perform(Action::reveal, uuids({id})); }
    Q_INVOKABLE void open(const QString& id) { perform(Action::open, uuids({id})); }
    Q_INVOKABLE void remove(const QString& id) { perform(Action::remove, uuids({id})); }
    Q_INVOKABLE void copy(const QStringList& ids) { perform(Action::copy, uuids(ids)); }
    Q_INVOKABLE void moveToFolder(const QStringList& ids, const QUrl& folder)
    {
        perform(Action::moveToFolder, uuids(ids), folder.toLocalFile());
    }
    Q_INVOKABLE void copyToFolder(const QStringList& ids, const QUrl& folder)
    {
        perform(Action::copyToFolder, uuids(ids), folder.toLocalFile());
    }
    Q_INVOKABLE void saveAll(const QUrl& folder) { perform(Action::saveAll, {}, folder.toLocalFile()); }
    Q_INVOKABLE void clearAll() { perform(Action::clearAll, {}); }
    // A drop on the notch (onNotch) or the open panel, as the drop area reads it.
    Q_INVOKABLE void dropped(const QList<QUrl>& urls, const QByteArray& image, bool hasImage,
                             const QString& text, bool hasText, bool onNotch);
    Q_INVOKABLE void dismissToast();

    void setOffMain(OffMain offMain) { m_offMain = std::move(offMain); }

signals:
    void itemsChanged();
    void toastChanged();
    void busyChanged();

private:
    static QList<QUuid> uuids(const QStringList& ids);
    QStringList pathsOf(const QList<QUuid>& ids) const;
    void run(std::function<Outcome()> work, std::function<void(Outcome)> done);
    void finish(const Outcome& outcome, const std::function<void(Outcome)>& done);
    Outcome failed(const QString& logTail, const QString& toast) const;
    QString partialPath() const;
    // Lays the shelf's files over the shown tiles, so an open page keeps the tiles that stay.
    void refreshItems();
    QVariantList itemRows() const;

    ShelfManager& m_shelf;
    ClipboardSource& m_clipboard;
    OffMain m_offMain;
    std::shared_ptr<FileOpener> m_opener; // shared with the file work that may outlive a closing desk
    QString m_toast;
    bool m_toastFailed = false;
    int m_running = 0;
    RowsModel m_items;
};

} // namespace norva
