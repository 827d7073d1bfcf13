#include "LogCapture.h"
#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "TempHome.h"
#include "TestImages.h"
#include "TestMain.h"

#include "app/SettingsStore.h"
#include "platform/linux/ScreenshotFolderWatcher.h"
#include "shelf/ScreenshotSource.h"
#include "shelf/ShelfManager.h"
#include "shelf/ShelfSettings.h"

#include <QBuffer>
#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

using namespace norva;
using namespace norva::test;

namespace {

class FakeScreenshots final : public ScreenshotSource {
public:
    void start() override { m_started = true; }
    void stop() override {}
    void take(const QString& path) { emit screenshotSaved(path); }
    bool m_started = false;
};

struct Rig {
    TempHome home;
    ManualClock clock;
    MemoryPreferences preferences;
    SettingsStore settings{preferences};
    std::unique_ptr<ShelfManager> shelf;
    QStringList droppedTexts;

    QString data() const { return home.file(QStringLiteral("data")); }
    QString owned() const { return data() + QStringLiteral("/Shelf"); }
    void start(ScreenshotSource* screenshots = nullptr)
    {
        shelf = std::make_unique<ShelfManager>(settings, clock, data());
        shelf->setDroppedTextSink([this](const QString& text) {
            droppedTexts << text;
            return true;
        });
        shelf->setScreenshotSource(screenshots);
        shelf->start();
    }
    void dropAndWait(const ShelfManager::Drop& drop)
    {
        QSignalSpy handled(shelf.get(), &ShelfManager::dropHandled);
        shelf->drop(drop, ShelfManager::DropPlace::notch);
        QVERIFY(handled.wait(5000));
    }
    QStringList paths() const
    {
        QStringList list;
        for (const auto& item : shelf->items())
            list << item.path;
        return list;
    }
    void writeList(const QList<ShelfItem>& items)
    {
        QJsonArray array;
        for (const auto& item : items)
            array.append(item.toJson());
        home.write(QStringLiteral("data/shelf.json"), QJsonDocument(array).toJson());
    }
};

} // namespace

class ShelfManagerTest : public QObject {
    Q_OBJECT

private slots:
    void fileDeletedWhileOnTheShelfIsLeftOutAtTheNextLoad()
    {
        Rig rig;
        const QString kept = rig.home.write(QStringLiteral("Documents/kept.txt"), "k");
        const QString gone = rig.home.write(QStringLiteral("Documents/gone.txt"), "g");
        rig.start();
        QVERIFY(rig.shelf->shelve(kept));
        QVERIFY(rig.shelf->shelve(gone));
        rig.clock.advance(StoredList::kSaveDelay);
        rig.shelf.reset();
        QFile::remove(gone);
        LogCapture log;
        rig.start();
        QCOMPARE(rig.paths(), QStringList{kept});
        QCOMPARE(log.lines(), QStringList{QStringLiteral("Norva shelf: left out ") + gone +
                                          QStringLiteral(" (it is no longer on disk)")});
    }

    void ownFilesThatNoRowListedArePutBack()
    {
        Rig rig;
        const QString orphan =
            rig.home.write(QStringLiteral("data/Shelf/Image 2026-11-17 at 09.00.00.png"), imageBytes(5, 4));
        rig.home.write(QStringLiteral("data/Shelf/.partial-AbCdEf"), "half");
        LogCapture log;
        rig.start();
        QCOMPARE(rig.paths(), QStringList{orphan});
        QVERIFY(log.contains(
            QStringLiteral("Norva shelf: put back Image 2026-11-17 at 09.00.00.png from Shelf, a file of "
                           "the shelf's own that no row listed")));
        QVERIFY(log.contains(
            QStringLiteral("Norva shelf: removed 1 file that a quit left half written in Shelf")));
    }

    void retention_data()
    {
        QTest::addColumn<QString>("keep");
        QTest::addColumn<double>("hoursAgo");
        QTest::addColumn<bool>("kept");
        QTest::newRow("day, 25 hours") << "day" << 25.0 << false;
        QTest::newRow("day, 23 hours") << "day" << 23.0 << true;
        QTest::newRow("week, 25 hours") << "week" << 25.0 << true;
        QTest::newRow("week, 8 days") << "week" << 8.0 * 24 << false;
        QTest::newRow("forever, a year") << "forever" << 365.0 * 24 << true;
    }
    void retention()
    {
        QFETCH(QString, keep);
        QFETCH(double, hoursAgo);
        QFETCH(bool, kept);
        Rig rig;
        rig.settings.write(keep, ShelfSettings::kKeepKey);
        const QString mine = rig.home.write(QStringLiteral("Documents/mine.txt"), "mine");
        const QString own = rig.home.write(QStringLiteral("data/Shelf/Image.png"), imageBytes(5, 4));
        const QDateTime added = rig.clock.now().addSecs(qint64(-hoursAgo * 3600));
        rig.writeList({{QUuid::createUuid(), mine, added, false}, {QUuid::createUuid(), own, added, true}});
        LogCapture log;
        rig.start();
        QCOMPARE(rig.shelf->items().size(), kept ? 2 : 0);
        QCOMPARE(log.contains(QStringLiteral(" (Settings: Keep files on the Shelf)")), !kept);
        if (!kept)
            QCOMPARE(log.lines().last(),
                     QStringLiteral("Norva shelf: let go of 2 items older than a ") +
                         (keep == QLatin1String("day") ? QStringLiteral("day") : QStringLiteral("week")) +
                         QStringLiteral(" (Settings: Keep files on the Shelf)"));
        // A person's own file is never deleted; the shelf's own file goes with its row.
        QVERIFY(QFile::exists(mine));
        QCOMPARE(QFile::exists(own), kept);
    }

    void retentionIsCheckedWhileNorvaRuns()
    {
        Rig rig;
        ShelfSettings(rig.settings).setKeep(ShelfKeep::day);
        const QString file = rig.home.write(QStringLiteral("Documents/a.txt"), "a");
        rig.start();
        rig.shelf->shelve(file);
        rig.clock.advance(Seconds(23 * 3600));
        QCOMPARE(rig.shelf->items().size(), 1);
        rig.clock.advance(Seconds(1 * 3600 + ShelfManager::kRetentionCheck.count()));
        QCOMPARE(rig.shelf->items().size(), 0);
        QVERIFY(QFile::exists(file));
        // A shorter time chosen while files wait lets the older ones go at once.
        ShelfSettings(rig.settings).setKeep(ShelfKeep::week);
        rig.shelf->shelve(file);
        rig.clock.advance(Seconds(2 * 24 * 3600));
        QCOMPARE(rig.shelf->items().size(), 1);
        rig.preferences.outsideChange(ShelfSettings::kKeepKey, QStringLiteral("day"));
        QTRY_COMPARE(rig.shelf->items().size(), 0);
    }

    void droppedFilesAreShelvedByPath()
    {
        Rig rig;
        const QString a = rig.home.write(QStringLiteral("Downloads/a.pdf"), "a");
        rig.start();
        QSignalSpy activity(rig.shelf.get(), &ShelfManager::shelfActivity);
        LogCapture log;
        rig.shelf->drop({{QUrl::fromLocalFile(a),
                          QUrl::fromLocalFile(rig.home.file(QStringLiteral("Downloads/moved.pdf")))},
                         std::nullopt,
                         std::nullopt},
                        ShelfManager::DropPlace::panel);
        QCOMPARE(rig.paths(), QStringList{a});
        QCOMPARE(log.lines(), QStringList{QStringLiteral("Norva shelf: a file was not shelved (") +
                                          rig.home.file(QStringLiteral("Downloads/moved.pdf")) +
                                          QStringLiteral(" is no longer where it was dropped from)")});
        QCOMPARE(activity.last().first().toInt(), 1);
        // The same file dropped again is not a second row.
        QVERIFY(!rig.shelf->shelve(a));
        QCOMPARE(rig.shelf->items().size(), 1);
    }

    void pictureFromABrowserBecomesAPngNamedByTheDropsMoment()
    {
        Rig rig;
        rig.start();
        rig.clock.advance(Seconds(3723)); // 11:02:03 UTC
        rig.dropAndWait({{QUrl(QStringLiteral("https://example.org/cat.jpg"))},
                         imageBytes(5, 4, "JPEG"),
                         QStringLiteral("cat")});
        const QString name =
            QStringLiteral("Image ") +
            rig.clock.now().toLocalTime().toString(QStringLiteral("yyyy-MM-dd 'at' HH.mm.ss")) +
            QStringLiteral(".png");
        QCOMPARE(rig.paths(), QStringList{rig.owned() + QLatin1Char('/') + name});
        QImage kept;
        QVERIFY(kept.load(rig.paths().first(), "PNG"));
        QCOMPARE(kept.size(), QSize(5, 4));
        QVERIFY(rig.droppedTexts.isEmpty());
        // A second picture in the same second gets a name of its own.
        rig.dropAndWait({{}, imageBytes(5, 4), std::nullopt});
        QCOMPARE(QFileInfo(rig.paths().first()).fileName(), name.chopped(4) + QStringLiteral(" 2.png"));
    }

    void dropsThatDoNotMakeAFile_data()
    {
        QTest::addColumn<QByteArray>("image");
        QTest::addColumn<QString>("logged");
        QTest::newRow("never loaded") << QByteArray() << "Norva shelf: a dropped image never loaded";
        QTest::newRow("not a picture")
            << QByteArray("<html>")
            << "Norva shelf: a dropped image was not kept (it would not convert to PNG)";
    }
    void dropsThatDoNotMakeAFile()
    {
        QFETCH(QByteArray, image);
        QFETCH(QString, logged);
        Rig rig;
        rig.start();
        LogCapture log;
        QSignalSpy handled(rig.shelf.get(), &ShelfManager::dropHandled);
        rig.shelf->drop({{}, image, std::nullopt}, ShelfManager::DropPlace::notch);
        QTRY_VERIFY(log.contains(logged));
        QCOMPARE(rig.shelf->items().size(), 0);
        QCOMPARE(QDir(rig.owned()).entryList(QDir::Files | QDir::Hidden), QStringList());
    }

    void pictureThatCannotBeWrittenIsNotKept()
    {
        Rig rig;
        rig.start();
        QVERIFY(QDir(rig.owned()).removeRecursively());
        rig.home.write(QStringLiteral("data/Shelf"), "a file where the folder was");
        LogCapture log;
        rig.dropAndWait({{}, imageBytes(5, 4), std::nullopt});
        QCOMPARE(log.count(
                     QStringLiteral("Norva shelf: a dropped image was not kept (could not write its file: ")),
                 1);
        QCOMPARE(rig.shelf->items().size(), 0);
    }

    void fileLinksThatDoNotResolveGiveWayToTheDropsOwnItems()
    {
        Rig rig;
        rig.start();
        LogCapture log;
        rig.dropAndWait({{QUrl::fromLocalFile(QStringLiteral("/tmp/gone-1.png")),
                          QUrl::fromLocalFile(QStringLiteral("/tmp/gone-2.png"))},
                         imageBytes(5, 4),
                         std::nullopt});
        QCOMPARE(log.lines().first(),
                 QStringLiteral(
                     "Norva shelf: the drag named 2 file link(s); the drop's own items were read instead"));
        QCOMPARE(rig.shelf->items().size(), 1);
        QVERIFY(rig.paths().first().startsWith(rig.owned() + QStringLiteral("/Image ")));
    }

    void droppedLinkIsAWeblocAndTextGoesToTheClipboard()
    {
        Rig rig;
        rig.start();
        rig.dropAndWait(
            {{QUrl(QStringLiteral("https://norva.app/docs/shelf?a=1&b=2"))}, std::nullopt, std::nullopt});
        QCOMPARE(rig.paths(), QStringList{rig.owned() + QStringLiteral("/norva.app shelf.webloc")});
        const QByteArray webloc = TempHome::read(rig.paths().first());
        QVERIFY(
            webloc.contains("<key>URL</key>\n\t<string>https://norva.app/docs/shelf?a=1&amp;b=2</string>"));

        rig.shelf->drop({{}, std::nullopt, QStringLiteral("a note")}, ShelfManager::DropPlace::notch);
        QCOMPARE(rig.droppedTexts, QStringList{QStringLiteral("a note")});
        QCOMPARE(rig.shelf->items().size(), 1);
    }

    void overCapacityTheOldestGoButNotAPersonsFile()
    {
        Rig rig;
        rig.start();
        rig.dropAndWait({{}, imageBytes(5, 4), std::nullopt});
        const QString ownOldest = rig.paths().first();
        const QString mine = rig.home.write(QStringLiteral("Documents/second-oldest.txt"), "x");
        rig.clock.advance(Seconds(1));
        rig.shelf->shelve(mine);
        for (int i = 0; i < ShelfManager::kCapacity - 2; ++i) {
            rig.clock.advance(Seconds(1));
            rig.shelf->shelve(rig.home.write(QStringLiteral("Documents/f%1.txt").arg(i), "f"));
        }
        QCOMPARE(rig.shelf->items().size(), ShelfManager::kCapacity);
        LogCapture log;
        rig.shelf->shelve(rig.home.write(QStringLiteral("Documents/one-more.txt"), "f"));
        rig.shelf->shelve(rig.home.write(QStringLiteral("Documents/two-more.txt"), "f"));
        QCOMPARE(rig.shelf->items().size(), ShelfManager::kCapacity);
        QCOMPARE(
            log.lines(),
            (QStringList{QStringLiteral("Norva shelf: let go of 1 item, the oldest (the shelf holds 100)"),
                         QStringLiteral("Norva shelf: let go of 1 item, the oldest (the shelf holds 100)")}));
        QVERIFY(!rig.paths().contains(ownOldest));
        QVERIFY(!rig.paths().contains(mine));
        QVERIFY(!QFile::exists(ownOldest));
        QVERIFY(QFile::exists(mine));
    }

    void screenshotsLandOnTheShelfWhenTheSettingIsOn()
    {
        Rig rig;
        FakeScreenshots screenshots;
        rig.start(&screenshots);
        QVERIFY(screenshots.m_started);
        QSignalSpy landed(rig.shelf.get(), &ShelfManager::screenshotLanded);
        const QString shot =
            rig.home.write(QStringLiteral("Pictures/Screenshots/Screenshot 1.png"), imageBytes(5, 4));
        screenshots.take(shot);
        QCOMPARE(rig.shelf->items().size(), 1);
        QVERIFY(rig.shelf->items().first().isScreenshot);
        QCOMPARE(landed.size(), 1);
        rig.settings.write(false, ShelfSettings::kScreenshotsKey);
        screenshots.take(
            rig.home.write(QStringLiteral("Pictures/Screenshots/Screenshot 2.png"), imageBytes(5, 4)));
        QCOMPARE(rig.shelf->items().size(), 1);
    }

    void screenshotsFolderWatcherTellsOfNewPicturesOnly()
    {
        TempHome home;
        ManualClock clock;
        home.write(QStringLiteral("config/user-dirs.dirs"), "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
        qputenv("XDG_CONFIG_HOME", home.file(QStringLiteral("config")).toUtf8());
        QCOMPARE(ScreenshotFolderWatcher::defaultFolder(), home.file(QStringLiteral("Bilder/Screenshots")));
        home.write(QStringLiteral("Bilder/Screenshots/old.png"), imageBytes(5, 4));
        ScreenshotFolderWatcher watcher(clock);
        QSignalSpy saved(&watcher, &ScreenshotSource::screenshotSaved);
        watcher.start();
        home.write(QStringLiteral("Bilder/Screenshots/notes.txt"), "not a picture");
        home.write(QStringLiteral("Bilder/Screenshots/being-written.png"), "");
        const QString fresh =
            home.write(QStringLiteral("Bilder/Screenshots/Screenshot from 2026-11-23.png"), imageBytes(5, 4));
        QTRY_VERIFY(clock.pendingCount() > 0);
        clock.advance(ScreenshotFolderWatcher::kSettle);
        QCOMPARE(saved.size(), 1);
        QCOMPARE(saved.first().first().toString(), fresh);
        // The picture that was still empty is told of once it is written.
        home.write(QStringLiteral("Bilder/Screenshots/being-written.png"), imageBytes(5, 4));
        QVERIFY(clock.pendingCount() > 0);
        clock.advance(ScreenshotFolderWatcher::kSettle);
        QCOMPARE(saved.size(), 2);
        QCOMPARE(saved.last().first().toString(),
                 home.file(QStringLiteral("Bilder/Screenshots/being-written.png")));
    }

    // The screenshots folder, and even the Pictures folder, may come after Norva started: the watch
    // waits on the nearest folder that exists and moves down as each one appears.
    void screenshotsFolderThatDoesNotExistYet_data()
    {
        QTest::addColumn<bool>("picturesFirst");
        QTest::addColumn<bool>("pictureWithTheFolder");
        QTest::newRow("Pictures is there") << true << false;
        QTest::newRow("neither is there, made one at a time") << false << false;
        QTest::newRow("both made at once with the first screenshot") << false << true;
    }
    void screenshotsFolderThatDoesNotExistYet()
    {
        QFETCH(bool, picturesFirst);
        QFETCH(bool, pictureWithTheFolder);
        TempHome home;
        ManualClock clock;
        if (picturesFirst)
            QDir().mkpath(home.file(QStringLiteral("Pictures")));
        ScreenshotFolderWatcher watcher(clock);
        QCOMPARE(watcher.folder(), home.file(QStringLiteral("Pictures/Screenshots")));
        QSignalSpy saved(&watcher, &ScreenshotSource::screenshotSaved);
        watcher.start();
        const auto settle = [&] {
            QTRY_VERIFY(clock.pendingCount() > 0);
            clock.advance(ScreenshotFolderWatcher::kSettle);
        };
        if (pictureWithTheFolder) {
            home.write(QStringLiteral("Pictures/Screenshots/first.png"), imageBytes(5, 4));
            settle();
            QCOMPARE(saved.size(), 1);
        } else {
            if (!picturesFirst) {
                QDir().mkpath(home.file(QStringLiteral("Pictures")));
                settle();
            }
            QDir().mkpath(home.file(QStringLiteral("Pictures/Screenshots")));
            settle();
            QCOMPARE(saved.size(), 0);
        }
        home.write(QStringLiteral("Pictures/Screenshots/second.png"), imageBytes(5, 4));
        settle();
        QCOMPARE(saved.size(), pictureWithTheFolder ? 2 : 1);
        QCOMPARE(saved.last().first().toString(),
                 home.file(QStringLiteral("Pictures/Screenshots/second.png")));
    }
};
NORVA_TEST(ShelfManagerTest)
#include "tst_ShelfManager.moc"
