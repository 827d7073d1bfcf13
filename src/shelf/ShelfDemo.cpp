#include "shelf/ShelfDemo.h"

#include "activities/ActivityKinds.h"
#include "activities/LiveActivityCoordinator.h"
#include "app/AtomicFile.h"
#include "shelf/ShelfManager.h"

#include <QDir>
#include <QImage>

namespace norva {
namespace {

constexpr double kDownloadMegabytes = 431.0;
const QString kDownloadName = QStringLiteral("sample-photos.zip");

} // namespace

const QString ShelfDemo::kDownloadId = QStringLiteral("download-demo");

ShelfDemo::ShelfDemo(LiveActivityCoordinator& coordinator, Clock& clock, QObject* parent)
    : QObject(parent), m_coordinator(coordinator), m_clock(clock)
{}

void ShelfDemo::startDownload()
{
    publishDownload();
    m_ticks = m_clock.every(kTick, [this] {
        m_second = (m_second + 1) % (kDownloadSeconds + kDownloadRest);
        publishDownload();
    });
}

void ShelfDemo::publishDownload()
{
    using State = ActivityContent::DownloadState;
    const bool finished = m_second >= kDownloadSeconds;
    const double fraction = finished ? 1.0 : double(m_second) / kDownloadSeconds;
    LiveActivity download;
    download.id = kDownloadId;
    download.priority = ActivityKinds::of(ActivityContent::Kind::download).priority;
    download.content = ActivityContent::download(finished ? State::finished : State::running);
    download.text.title = kDownloadName;
    download.text.progress = fraction;
    download.text.value = finished ? QStringLiteral("Done") : QString::number(qRound(fraction * 100)) + '%';
    download.text.detail = finished ? kDownloadName + QStringLiteral(" · 431 MB")
                                    : QStringLiteral("%1 MB of %2 MB · %3 s left")
                                          .arg(qRound(fraction * kDownloadMegabytes))
                                          .arg(kDownloadMegabytes)
                                          .arg(kDownloadSeconds - m_second);
    m_coordinator.upsert(std::move(download));
}

void ShelfDemo::shelveSamples(ShelfManager& shelf, const QString& folder)
{
    const QDir samples(folder);
    const QString notes = samples.filePath(QStringLiteral("trip-plan.txt"));
    if (!writeFileAtomically(notes,
                             QByteArrayLiteral("Train at 9:12, platform 4.\nPick up the keys from Ana.\n")))
        shelf.shelve(notes);
    QImage picture(320, 200, QImage::Format_RGB32);
    picture.fill(QColor(0x2f, 0x6f, 0x9f));
    const QString photo = samples.filePath(QStringLiteral("sample-photo.png"));
    if (picture.save(photo))
        shelf.shelve(photo);
}

} // namespace norva
