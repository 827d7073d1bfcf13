#include "shelf/ShelfActivityPublisher.h"

#include "activities/LiveActivityCoordinator.h"
#include "shelf/ShelfManager.h"

#include <QFileInfo>
#include <QImageReader>

namespace norva {

const QString ShelfActivityPublisher::kShelfId = QStringLiteral("shelf");
const QString ShelfActivityPublisher::kScreenshotId = QStringLiteral("screenshot");

ShelfActivityPublisher::ShelfActivityPublisher(ShelfManager& shelf, LiveActivityCoordinator& coordinator,
                                               std::function<void()> openShelf, QObject* parent)
    : QObject(parent), m_coordinator(coordinator), m_openShelf(std::move(openShelf))
{
    connect(&shelf, &ShelfManager::shelfActivity, this, &ShelfActivityPublisher::publishCount);
    connect(&shelf, &ShelfManager::screenshotLanded, this, &ShelfActivityPublisher::publishScreenshot);
    publishCount(int(shelf.items().size()));
}

void ShelfActivityPublisher::publishCount(int count)
{
    if (count <= 0) {
        m_coordinator.remove(kShelfId);
        return;
    }
    LiveActivity activity;
    activity.id = kShelfId;
    activity.priority = kShelfPriority;
    activity.content = ActivityContent::shelf();
    activity.text.title = QStringLiteral("Shelf");
    activity.text.value = QString::number(count);
    activity.text.detail = count == 1 ? QStringLiteral("1 file waits on the shelf")
                                      : QString::number(count) + QStringLiteral(" files wait on the shelf");
    activity.onTap = m_openShelf;
    m_coordinator.upsert(std::move(activity));
}

void ShelfActivityPublisher::publishScreenshot(const QString& path)
{
    // A small picture only: the file is a fresh screenshot of a few megabytes at most.
    QImageReader reader(path);
    const QSize size = reader.size();
    if (size.isValid())
        reader.setScaledSize(size.scaled(kThumbnailSide, kThumbnailSide, Qt::KeepAspectRatio));
    ActivityContent::Screenshot shot;
    const QImage thumbnail = reader.read();
    if (!thumbnail.isNull())
        shot.thumbnail = thumbnail;
    LiveActivity activity;
    activity.id = kScreenshotId;
    activity.priority = kScreenshotPriority;
    activity.content = ActivityContent::screenshot(std::move(shot));
    activity.text.title = QStringLiteral("Screenshot");
    activity.text.detail = QFileInfo(path).fileName();
    activity.onTap = m_openShelf;
    activity.hold = kScreenshotHold;
    m_coordinator.upsert(std::move(activity));
}

} // namespace norva
