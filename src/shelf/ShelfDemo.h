#pragma once

#include "app/Clock.h"

#include <QObject>
#include <QString>

namespace norva {

class LiveActivityCoordinator;
class ShelfManager;

// The demo's shelf and downloads: a download that fills up on the closed notch, rests when it is
// done and starts again, and files waiting on the shelf. It invents all of it, in the demo's own
// data folder.
class ShelfDemo : public QObject {
    Q_OBJECT
public:
    static const QString kDownloadId; // "download-demo"
    static constexpr Seconds kTick{1.0};
    static constexpr int kDownloadSeconds = 40;
    static constexpr int kDownloadRest = 6; // seconds the finished download stays before it starts again

    ShelfDemo(LiveActivityCoordinator& coordinator, Clock& clock, QObject* parent = nullptr);

    // The download fills up on the closed notch until the demo ends.
    void startDownload();
    // Writes two sample files into `folder` and puts them on the shelf.
    static void shelveSamples(ShelfManager& shelf, const QString& folder);

private:
    void publishDownload();

    LiveActivityCoordinator& m_coordinator;
    Clock& m_clock;
    ScheduledWork m_ticks;
    int m_second = 0;
};

} // namespace norva
