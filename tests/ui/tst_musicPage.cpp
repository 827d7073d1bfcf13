#include "QmlViews.h"
#include "SongSource.h"
#include "TestMain.h"

#include "app/QmlInstances.h"
#include "media/MusicManager.h"

#include <QSignalSpy>
#include <QtTest>

using namespace norva;

// The music page follows the song's position only while it exists (the notch is open on it), so
// the position does not tick for a closed notch.
class MusicPageTest : public QObject {
    Q_OBJECT
private slots:
    void pageFollowsThePositionWhileItIsThere()
    {
        test::QmlViews views;
        test::SongSource* player = nullptr;
        MusicManager music(views.clock(), nullptr, test::SongSource::backends(player));
        QmlInstances::offer(&music);
        music.start();
        QVERIFY(player);
        player->play(QStringLiteral("Evening Tide"), QStringLiteral("The Norva Quartet"),
                     views.clock().now());
        QSignalSpy moves(&music, &MusicManager::positionChanged);
        const auto ticksAWhile = [&] {
            moves.clear();
            views.clock().advance(Seconds(MusicManager::positionTick * 4));
            return moves.size();
        };
        QCOMPARE(ticksAWhile(), 0); // nothing shows the position
        auto page = views.create(QStringLiteral("MusicPage.qml"), {});
        QVERIFY(page);
        QVERIFY(ticksAWhile() >= 4);
        auto second = views.create(QStringLiteral("MusicPage.qml"), {}); // a notch on another display
        QVERIFY(second);
        page.reset();
        QVERIFY(ticksAWhile() >= 4); // the other page still shows it
        second.reset();
        QCOMPARE(ticksAWhile(), 0);
    }
};

NORVA_TEST(MusicPageTest)
#include "tst_musicPage.moc"
