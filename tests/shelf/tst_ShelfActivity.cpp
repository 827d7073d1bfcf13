#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "TempHome.h"
#include "TestMain.h"

#include "activities/ClosedFaceModel.h"
#include "activities/LiveActivityCoordinator.h"
#include "app/SettingsStore.h"
#include "shelf/ScreenshotSource.h"
#include "shelf/ShelfActivityPublisher.h"
#include "shelf/ShelfManager.h"

#include <QBuffer>
#include <QImage>
#include <QtTest>

using namespace norva;
using namespace norva::test;

namespace {

class Shots final : public ScreenshotSource {
public:
    void start() override {}
    void stop() override {}
    void take(const QString& path) { emit screenshotSaved(path); }
};

} // namespace

// The shelf on the closed notch, through the real live-activity coordinator.
class ShelfActivityTest : public QObject {
    Q_OBJECT

private slots:
    void shelfActivityFollowsTheFilesAndScreenshotsShowBriefly()
    {
        TempHome home;
        ManualClock clock;
        MemoryPreferences preferences;
        SettingsStore settings(preferences);
        LiveActivityCoordinator coordinator(clock);
        ShelfManager shelf(settings, clock, home.file(QStringLiteral("data")));
        Shots shots;
        shelf.setScreenshotSource(&shots);
        shelf.start();
        int opened = 0;
        ShelfActivityPublisher publisher(shelf, coordinator, [&] { ++opened; });
        QVERIFY(!coordinator.find(ShelfActivityPublisher::kShelfId));

        const QString a = home.write(QStringLiteral("a.txt"), "a");
        shelf.shelve(a);
        const LiveActivity* live = coordinator.find(ShelfActivityPublisher::kShelfId);
        QVERIFY(live);
        QCOMPARE(live->content.kind(), ActivityContent::Kind::shelf);
        QCOMPARE(live->text.detail, QStringLiteral("1 file waits on the shelf"));
        QVERIFY(!live->isTransient());
        live->onTap();
        QCOMPARE(opened, 1);

        QImage image(320, 200, QImage::Format_RGB32);
        image.fill(Qt::gray);
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "PNG");
        shots.take(home.write(QStringLiteral("Pictures/Screenshots/shot.png"), png));
        QCOMPARE(coordinator.find(ShelfActivityPublisher::kShelfId)->text.value, QStringLiteral("2"));
        const LiveActivity* shot = coordinator.find(ShelfActivityPublisher::kScreenshotId);
        QVERIFY(shot);
        QCOMPARE(shot->content.kind(), ActivityContent::Kind::screenshot);
        QCOMPARE(shot->content.payload<ActivityContent::Screenshot>()->thumbnail->width(),
                 ShelfActivityPublisher::kThumbnailSide);
        // The closed notch draws the thumbnail itself, not a glyph.
        ClosedFaceModel face(coordinator);
        QCOMPARE(face.activityId(), ShelfActivityPublisher::kScreenshotId);
        QVERIFY(face.picture().startsWith(QStringLiteral("data:image/png;base64,")));
        QImage drawn;
        QVERIFY(drawn.loadFromData(
            QByteArray::fromBase64(face.picture().mid(face.picture().indexOf(',') + 1).toLatin1()), "PNG"));
        QCOMPARE(drawn.size(), QSize(ShelfActivityPublisher::kThumbnailSide, 40));
        clock.advance(Seconds(ShelfActivityPublisher::kScreenshotHold + 0.1));
        QVERIFY(!coordinator.find(ShelfActivityPublisher::kScreenshotId));

        shelf.clearAll();
        QVERIFY(!coordinator.find(ShelfActivityPublisher::kShelfId));
    }
};
NORVA_TEST(ShelfActivityTest)
#include "tst_ShelfActivity.moc"
