#include "QmlViews.h"
#include "TestMain.h"

#include <QQmlContext>
#include <QtTest>

using namespace norva;

namespace {

// The music manager as far as following the position goes (the page warns of what else it lacks),
// counting the views that follow it.
class FollowedMusic : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool hasTrack MEMBER hasTrack CONSTANT)
    Q_PROPERTY(double displayElapsed MEMBER elapsed CONSTANT)
public:
    Q_INVOKABLE void followPosition(bool following) { followers += following ? 1 : -1; }
    bool hasTrack = true;
    double elapsed = 42;
    int followers = 0;
};

} // namespace

// The music page follows the song's position only while it exists (the notch is open on it), so
// the position does not tick for a closed notch.
class MusicPageTest : public QObject {
    Q_OBJECT
private slots:
    void pageFollowsThePositionWhileItIsThere()
    {
        test::QmlViews views;
        FollowedMusic music;
        views.engine().rootContext()->setContextProperty(QStringLiteral("music"), &music);
        auto page = views.create(QStringLiteral("MusicPage.qml"), {});
        QVERIFY(page);
        QCOMPARE(music.followers, 1);
        auto second = views.create(QStringLiteral("MusicPage.qml"), {}); // a notch on another display
        QVERIFY(second);
        QCOMPARE(music.followers, 2);
        page.reset();
        QCOMPARE(music.followers, 1);
        second.reset();
        QCOMPARE(music.followers, 0);
    }
};

NORVA_TEST(MusicPageTest)
#include "tst_musicPage.moc"
