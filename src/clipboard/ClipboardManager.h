#pragma once

#include "app/Clock.h"
#include "clipboard/ClipboardHistory.h"
#include "clipboard/ClipboardItem.h"
#include "clipboard/ClipboardLoad.h"
#include "storage/OwnedFolder.h"
#include "storage/StoredList.h"

#include <QHash>
#include <QImage>
#include <QObject>

#include <functional>
#include <optional>

namespace norva {

class ClipboardSource;
class ClipboardSettings;

// Keeps the history of what the person copies: watches the clipboard, files each new copy
// (private copies never), keeps pictures as PNG files of its own in "ClipboardImages", stores
// the list in "clipboard.json" and puts any clip back on the clipboard. Lives on the main thread.
class ClipboardManager : public QObject {
    Q_OBJECT
public:
    using Item = ClipboardItem;

    // How often the clipboard's change count is read where the desktop does not tell every change.
    static constexpr Seconds kPollInterval{0.5};
    // The longest side of a picture clip's thumbnail, in pixels.
    static constexpr int kThumbnailSide = 160;
    static const QStringList& excludedTypes();
    static const QString kKdePasswordHint; // "x-kde-passwordManagerHint", "secret" marks a secret

    // What copying a clip again came to: whether it went on the clipboard, and what the page says.
    struct CopyOutcome {
        bool copied = false;
        QString message;
    };

    ClipboardManager(ClipboardSource& source, ClipboardSettings& settings, Clock& clock,
                     const QString& dataFolder, QObject* parent = nullptr);
    ~ClipboardManager() override;

    // Watches the clipboard, and loads the stored list off the main thread (loaded() tells when
    // it is in). Copies made meanwhile are filed on top of it.
    void start();
    bool isLoaded() const { return !m_loading; }
    void poll();
    // Files a text dropped on the notch; false (with its log line) when it is not kept.
    bool recordDropped(const QString& text);
    CopyOutcome copy(const QUuid& id);
    void setPinned(const QUuid& id, bool pinned);
    void remove(const QUuid& id);
    // Removes every unpinned clip; returns how many went.
    int clearAllButPinned();

    const QList<Item>& items() const { return m_history.recency(); }
    QList<Item> ordered() const { return m_history.ordered(); }
    QList<Item> search(const QString& query) const { return m_history.search(query); }
    std::optional<QUuid> copiedItemID() const { return m_copiedItemID; }
    bool historyOn() const;
    QString imagePath(const Item& clip) const;
    QString imagesFolder() const { return m_images.url(); }

    // Makes a picture clip's thumbnail off the main thread; thumbnailReady tells when it is cached.
    void requestThumbnail(const QUuid& id);
    std::optional<QImage> thumbnail(const QUuid& id) const;

    // True when the formats mark a copy as private: a password manager's secret, a transient or
    // generated copy, or a promised file.
    static bool isPrivate(const QStringList& formats, const std::function<QByteArray(const QString&)>& data);

    StoredList& storedList() { return m_list; }
    // Saves a waiting change now (at quit). Before the stored list is in, nothing is written over it.
    void flush()
    {
        if (!m_loading)
            m_list.saveNow();
    }

signals:
    void itemsChanged();
    void loaded();
    void copiedItemChanged();
    void historyOnChanged();
    void thumbnailReady(const QUuid& id);
    // A picture copy was filed or dropped after its off-main work (for views that wait on it).
    void imageCopyHandled();

private:
    void finishLoad(const ClipboardLoad::Result& result);
    void logLoad(const ClipboardLoad::Result& result) const;
    void saveLater();
    QString letGoLine(qsizetype count) const;
    void recordFiles(const QStringList& paths);
    void recordImage(const QByteArray& bytes, const QString& format);
    void recordString(const QString& text);
    void file(Item clip);
    void letGo(const QList<Item>& clips);
    void endLetGoStreakIfRoom();
    void deletePicture(const Item& clip);
    void changed();
    QString describe(const Item& clip) const;
    Item newClip(ClipboardKind kind, const std::optional<QString>& app) const;
    void forget(const QUuid& id, const QString& reason);
    static QStringList localFiles(const QByteArray& uriList);

    ClipboardSource& m_source;
    ClipboardSettings& m_settings;
    Clock& m_clock;
    ClipboardHistory m_history;
    StoredList m_list;
    OwnedFolder m_images;
    std::optional<QUuid> m_copiedItemID;
    std::optional<quint64> m_lastChangeCount;
    bool m_lastHistoryOn = true;
    // The limit at which letting go was last said: a full history lets one clip go with every new
    // copy, which is said once until the history has room again or the limit changes.
    std::optional<int> m_letGoToldAt;
    bool m_loading = false;       // the stored list is being read off the main thread
    bool m_saveAfterLoad = false; // a change waits for the stored list before it is saved
    QHash<QUuid, QImage> m_thumbnails;
    ScheduledWork m_pollWork;
};

} // namespace norva
