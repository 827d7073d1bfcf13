#include "QmlViews.h"
#include "SongSource.h"
#include "TestMain.h"

#include "app/QmlInstances.h"
#include "app/SettingsKeys.h"
#include "media/MusicManager.h"
#include "media/SongPeek.h"

#include <QJSValue>
#include <QtTest>

using namespace norva;

namespace {

QVariantMap musicFace(const QString& left, const QString& right)
{
    return {{"active", left != "music"},
            {"activityId", left == "music" ? "" : "agent-prompt-1"},
            {"leftPiece", left},
            {"rightPiece", right},
            {"musicLeft", "artAndRing"},
            {"musicRight", "equaliser"},
            {"title", ""},
            {"detail", ""},
            {"hasDetail", false},
            {"detailOpen", false},
            {"tone", "accent"},
            {"progress", -1},
            {"liveCount", left == "music" ? 0 : 1},
            {"shownPosition", -1},
            {"pinned", false},
            {"value", ""},
            {"glyph", "?"},
            {"glyphStyle", "character"},
            {"symbol", "agentPrompt"},
            {"kind", "agentPrompt"}};
}

// The face as the QML sees the model: its values, and glyphOf() for a face drawn without an activity.
QJSValue faceObject(QJSEngine& engine, const QVariantMap& values)
{
    QJSValue face = engine.toScriptValue(values);
    face.setProperty(QStringLiteral("glyphOf"),
                     engine.evaluate(QStringLiteral("(function () { return '?' })")));
    return face;
}

QObject* timerIn(QObject* root)
{
    for (QObject* child : root->findChildren<QObject*>()) {
        if (QByteArray(child->metaObject()->className()).startsWith("QQmlTimer"))
            return child;
    }
    return nullptr;
}

} // namespace

// The closed notch while music plays: the song's title and artist under the ears only while the
// notch peeks or a new song has its moment, and level bars that cost repaints only while it plays.
class ClosedMusicTest : public QObject {
    Q_OBJECT
private slots:
    void songLine_data()
    {
        QTest::addColumn<bool>("songPeeking");
        QTest::addColumn<QString>("notchState");
        QTest::addColumn<QString>("leftPiece");
        QTest::addColumn<bool>("shown");
        QTest::newRow("a new song's moment") << true << "closed"
                                             << "music" << true;
        QTest::newRow("the notch peeking") << false << "peek"
                                           << "music" << true;
        QTest::newRow("at rest") << false << "closed"
                                 << "music" << false;
        QTest::newRow("an activity holds the ears") << true << "closed"
                                                    << "mark" << false;
    }
    void songLine()
    {
        QFETCH(bool, songPeeking);
        QFETCH(QString, notchState);
        QFETCH(QString, leftPiece);
        QFETCH(bool, shown);
        test::QmlViews views;
        const QString title = QStringLiteral("<b>Evening</b> Tide");
        views.shell().settings().write(QStringLiteral("reduced"), SettingsKeys::notchMotion);
        test::SongSource* player = nullptr;
        MusicManager music(views.clock(), nullptr, test::SongSource::backends(player));
        QmlInstances::offer(&music);
        music.start();
        QVERIFY(player);
        player->play(title, QStringLiteral("The Norva Quartet"), views.clock().now());
        if (!songPeeking)
            views.clock().advance(SongPeek::duration + Seconds(1));
        QCOMPARE(music.songPeeking(), songPeeking);
        const QVariantMap notch{{"stateName", notchState}, {"closedHeight", 32}};
        const QString right = leftPiece == "music" ? QStringLiteral("music") : QStringLiteral("value");
        auto face = views.create(
            QStringLiteral("ClosedFace.qml"),
            {{"face", QVariant::fromValue(faceObject(views.engine(), musicFace(leftPiece, right)))},
             {"notch", notch}});
        QVERIFY(face);

        QQuickItem* titleText = nullptr;
        for (QQuickItem* text : test::QmlViews::texts(face.get())) {
            if (text->property("text").toString() == title)
                titleText = text;
        }
        QVERIFY(titleText); // drawn as given, never read as markup
        QCOMPARE(titleText->property("textFormat").toInt(), 0);
        QCOMPARE(titleText->isVisible(), shown);
        QCOMPARE(face->implicitHeight() > 32, shown); // the notch grows to hold the line
    }

    void barsMoveOnlyWhilePlaying_data()
    {
        QTest::addColumn<bool>("playing");
        QTest::addColumn<bool>("reduced");
        QTest::addColumn<bool>("moving");
        QTest::newRow("playing") << true << false << true;
        QTest::newRow("paused") << false << false << false;
        QTest::newRow("playing, motion reduced") << true << true << false;
    }
    void barsMoveOnlyWhilePlaying()
    {
        QFETCH(bool, playing);
        QFETCH(bool, reduced);
        QFETCH(bool, moving);
        test::QmlViews views;
        auto bars =
            views.create(QStringLiteral("EqualiserBars.qml"), {{"playing", playing}, {"reduced", reduced}});
        QVERIFY(bars);
        QObject* timer = timerIn(bars.get());
        QVERIFY(timer);
        QCOMPARE(timer->property("running").toBool(), moving); // still bars wake nothing
        // Paused, the mark is four low bars of one height; playing, they stand at different heights.
        QList<qreal> heights;
        for (QQuickItem* row : bars->childItems()) {
            for (QQuickItem* bar : row->childItems()) {
                if (QByteArray(bar->metaObject()->className()).startsWith("QQuickRectangle"))
                    heights << bar->height();
            }
        }
        QCOMPARE(heights.size(), 4);
        QCOMPARE(QSet<qreal>(heights.begin(), heights.end()).size() == 1, !playing);
    }
};

NORVA_TEST(ClosedMusicTest)
#include "tst_closedMusic.moc"
