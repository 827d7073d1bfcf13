#pragma once

#include "app/Clock.h"
#include "shelf/ShelfItem.h"
#include "storage/OwnedFolder.h"
#include "storage/StoredList.h"

#include <QList>
#include <QObject>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

namespace norva {

class ScreenshotSource;
class SettingsStore;
class ShelfSettings;

// Holds the files waiting on the shelf: what was dropped on the notch or the panel and new
// screenshots. Dropped content that has no file of its own (a picture, a link) gets one in the
// shelf's own folder; only those files of Norva's own are ever deleted, never a person's file.
class ShelfManager : public QObject {
    Q_OBJECT
public:
    using Item = ShelfItem;
    enum class DropPlace { notch, panel };

    // What a drop carried. `image` present but empty: a picture was offered and never arrived.
    struct Drop {
        QList<QUrl> urls;
        std::optional<QByteArray> image;
        std::optional<QString> text;
    };

    // The most items the shelf holds; the oldest go first.
    static constexpr int kCapacity = 100;
    // How often items past "Keep files on the Shelf" are looked for while Norva runs.
    static constexpr Seconds kRetentionCheck{15 * 60};
    static const QString kOwnedFolderName; // "Shelf"

    ShelfManager(SettingsStore& settings, Clock& clock, const QString& dataFolder, QObject* parent = nullptr);
    ~ShelfManager() override;

    // A text dropped on the shelf goes to the clipboard history through this.
    void setDroppedTextSink(std::function<bool(const QString&)> sink) { m_textSink = std::move(sink); }
    void setScreenshotSource(ScreenshotSource* source);

    // Loads "shelf.json", puts back the own folder's unlisted files, applies the retention.
    void start();
    void drop(const Drop& drop, DropPlace place);
    // Shelves a file by its path; false (logged) when it is gone or already on the shelf.
    bool shelve(const QString& path, bool isScreenshot = false);
    void remove(const QUuid& id);
    void clearAll();
    // A file moved by the shelf's own action: the row follows it.
    void moved(const QUuid& id, const QString& newPath);
    void applyRetention();

    // Newest first.
    const QList<Item>& items() const { return m_items; }
    const Item* find(const QUuid& id) const;
    const OwnedFolder& ownedFolder() const { return m_owned; }
    // Whether a drop on the closed notch opens the panel on the shelf ("shelf.openOnDrop.v1").
    bool openOnDrop() const;
    void flush() { m_list.saveNow(); }

signals:
    void itemsChanged();
    // The closed notch's shelf activity: how many files wait (0: the activity leaves).
    void shelfActivity(int count);
    void screenshotLanded(const QString& path);
    // A drop's off-main work finished (the picture or link file is written, or not).
    void dropHandled();

private:
    void load();
    void add(Item item);
    void letGo(const QList<int>& indexes);
    void changed();
    void keepDroppedImage(const QByteArray& bytes);
    void keepDroppedLink(const QUrl& url);
    void shelveKept(const std::optional<QString>& path, const QString& failure);

    std::unique_ptr<ShelfSettings> m_settings;
    Clock& m_clock;
    QList<Item> m_items; // before the list file, which saves it one last time when it goes
    StoredList m_list;
    OwnedFolder m_owned;
    std::function<bool(const QString&)> m_textSink;
    ScreenshotSource* m_screenshots = nullptr;
    ScheduledWork m_retentionWork;
};

} // namespace norva
