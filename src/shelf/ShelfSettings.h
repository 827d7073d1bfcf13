#pragma once

#include <QObject>
#include <QString>

// "forever" is a case of the shelf's retention here, not Qt's loop keyword.
#undef forever

namespace norva {

class SettingsStore;

// How long a file stays on the shelf.
enum class ShelfKeep { forever, day, week };

// The shelf's own preferences, read and written through the settings store: whether new
// screenshots land on the shelf, whether a drop opens the shelf, and how long files stay.
class ShelfSettings : public QObject {
    Q_OBJECT
public:
    static const QString kScreenshotsKey; // "autoShelfScreenshots", on when absent
    static const QString kOpenOnDropKey;  // "shelf.openOnDrop.v1", on when absent
    static const QString kKeepKey;        // "shelf.keep.v1": "forever", "day" or "week"

    explicit ShelfSettings(SettingsStore& store, QObject* parent = nullptr);

    bool screenshots() const;
    void setScreenshots(bool on);
    bool openOnDrop() const;
    ShelfKeep keep() const;
    void setKeep(ShelfKeep keep);

signals:
    void keepChanged();

private:
    SettingsStore& m_store;
};

} // namespace norva
