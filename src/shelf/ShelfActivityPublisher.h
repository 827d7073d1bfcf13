#pragma once

#include "activities/ActivityKinds.h"

#include <QObject>
#include <QString>

#include <functional>

namespace norva {

class LiveActivityCoordinator;
class ShelfManager;

// Tells the closed notch about the shelf: a lasting "shelf" activity while files wait on it, and a
// short "screenshot" activity with the new screenshot's picture when one lands there.
class ShelfActivityPublisher : public QObject {
    Q_OBJECT
public:
    static const QString kShelfId;      // "shelf"
    static const QString kScreenshotId; // "screenshot"
    // How long a new screenshot shows on the closed notch.
    static constexpr double kScreenshotHold = 4.0;
    static constexpr int kShelfPriority = ActivityKinds::of(ActivityContent::Kind::shelf).priority;
    static constexpr int kScreenshotPriority = ActivityKinds::of(ActivityContent::Kind::screenshot).priority;
    static constexpr int kThumbnailSide = 64;

    // `openShelf` opens the notch on the shelf page when the person clicks the activity.
    ShelfActivityPublisher(ShelfManager& shelf, LiveActivityCoordinator& coordinator,
                           std::function<void()> openShelf = {}, QObject* parent = nullptr);

private:
    void publishCount(int count);
    void publishScreenshot(const QString& path);

    LiveActivityCoordinator& m_coordinator;
    std::function<void()> m_openShelf;
};

} // namespace norva
