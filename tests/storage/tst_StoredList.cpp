#include "LogCapture.h"
#include "ManualClock.h"
#include "TempHome.h"
#include "TestMain.h"

#include "storage/StoredList.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QtTest>

using namespace norva;
using namespace norva::test;

namespace {

const QString kArea = QStringLiteral("Norva test");

std::optional<int> number(const QJsonObject& object)
{
    if (!object.value(QStringLiteral("n")).isDouble())
        return std::nullopt;
    return object.value(QStringLiteral("n")).toInt();
}

QJsonArray numbers(std::initializer_list<int> values)
{
    QJsonArray array;
    for (int value : values)
        array.append(QJsonObject{{QStringLiteral("n"), value}});
    return array;
}

QJsonArray onDisk(const QString& path)
{
    return QJsonDocument::fromJson(TempHome::read(path)).array();
}

} // namespace

class StoredListTest : public QObject {
    Q_OBJECT

private slots:
    void elementsThatDoNotDecodeAreSkipped_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QList<int>>("kept");
        QTest::addColumn<QString>("logged");
        QTest::newRow("all good") << QByteArray(R"([{"n":1},{"n":2}])") << QList<int>{1, 2} << QString();
        QTest::newRow("one without its key")
            << QByteArray(R"([{"n":1},{"m":2},{"n":3}])") << QList<int>{1, 3}
            << QStringLiteral("Norva test: skipped 1 entry of list.json that did not read");
        QTest::newRow("not objects") << QByteArray(R"([1,"two",{"n":3},null])") << QList<int>{3}
                                     << QStringLiteral(
                                            "Norva test: skipped 3 entries of list.json that did not read");
        QTest::newRow("empty list") << QByteArray("[]") << QList<int>{} << QString();
        QTest::newRow("no file yet") << QByteArray() << QList<int>{} << QString();
    }
    void elementsThatDoNotDecodeAreSkipped()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, logged);
        TempHome home;
        ManualClock clock;
        LogCapture log;
        const QString path = home.file(QStringLiteral("list.json"));
        if (!content.isNull())
            home.write(QStringLiteral("list.json"), content);
        StoredList list(path, kArea, clock);
        const QList<int> decoded = list.decode<int>(list.load(), number);
        QTEST(decoded, "kept");
        QCOMPARE(log.lines(), logged.isEmpty() ? QStringList() : QStringList{logged});
        QVERIFY(!list.holdsUnreadable());
    }

    void unreadableFileIsSetAsideOnlyWhenTheListChanges_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("why");
        QTest::newRow("cut short") << QByteArray(R"([{"n":1},{"n")") << QStringLiteral("it is not JSON: ");
        QTest::newRow("an object") << QByteArray(R"({"n":1})") << QStringLiteral("it is not a JSON list");
        QTest::newRow("binary") << QByteArray("\x00\x01\x02garbage", 10)
                                << QStringLiteral("it is not JSON: ");
    }
    void unreadableFileIsSetAsideOnlyWhenTheListChanges()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, why);
        TempHome home;
        ManualClock clock;
        LogCapture log;
        const QString path = home.write(QStringLiteral("list.json"), content);
        QJsonArray held;
        {
            StoredList list(path, kArea, clock);
            list.setSnapshot([&] { return held; });
            QVERIFY(list.load().isEmpty());
            QVERIFY(list.holdsUnreadable());
            QCOMPARE(log.count(QStringLiteral("Norva test: could not read list.json (") + why), 1);
            QCOMPARE(log.count(QStringLiteral("); started without it")), 1);
            // Time passes, nothing is edited: the file stays exactly as it was.
            clock.advance(Seconds(60));
            QCOMPARE(TempHome::read(path), content);

            held = numbers({7});
            list.later();
            clock.advance(StoredList::kSaveDelay);
        }
        const QString aside = path + QStringLiteral(".unreadable-20261118-100100");
        QCOMPARE(TempHome::read(aside), content);
        QVERIFY(log.contains(QStringLiteral(
            "Norva test: kept the unreadable list.json as list.json.unreadable-20261118-100100")));
        QCOMPARE(onDisk(path), numbers({7}));
    }

    // A save that something stands in the way of fails with one line and leaves the file as it was;
    // once the way is clear, the next change saves the list.
    void aBlockedSaveIsDoneAtTheNextChange_data()
    {
        QTest::addColumn<QByteArray>("before"); // list.json before the list loads
        QTest::addColumn<QString>("blocker");   // a file in the way, or a folder when it ends in "/"
        QTest::addColumn<QString>("said");      // the log line; "…" stands for the system's reason
        QTest::newRow("the folder is a file")
            << QByteArray() << "data"
            << "Norva test: could not save list.json (…); the list stays as it is and is saved at its next "
               "change";
        QTest::newRow("the unreadable file's new name is taken")
            << QByteArray("[{\"n\":") << "data/list.json.unreadable-20261118-100000/"
            << "Norva test: could not keep the unreadable list.json (something is already called "
               "list.json.unreadable-20261118-100000); left it as it is and did not save the list";
    }
    void aBlockedSaveIsDoneAtTheNextChange()
    {
        QFETCH(QByteArray, before);
        QFETCH(QString, blocker);
        QFETCH(QString, said);
        TempHome home;
        ManualClock clock;
        LogCapture log;
        const QString path = home.file(QStringLiteral("data/list.json"));
        if (!before.isEmpty())
            home.write(QStringLiteral("data/list.json"), before);
        const QString inTheWay = home.file(blocker);
        const bool folder = blocker.endsWith(QLatin1Char('/'));
        QVERIFY(folder ? QDir().mkpath(inTheWay) : !home.write(blocker, "not a folder").isEmpty());
        StoredList list(path, kArea, clock);
        QJsonArray held = numbers({1});
        list.setSnapshot([&] { return held; });
        list.load();
        log.clear();
        list.later();
        clock.advance(StoredList::kSaveDelay);
        QVERIFY(list.lastSaveFailed());
        QCOMPARE(TempHome::read(path), before);
        QCOMPARE(log.lines().size(), 1);
        QVERIFY2(log.lines().first().startsWith(said.section(QStringLiteral("…"), 0, 0)) &&
                     log.lines().first().endsWith(said.section(QStringLiteral("…"), -1)),
                 qPrintable(log.lines().first()));

        QVERIFY(folder ? QDir(inTheWay).removeRecursively() : QFile::remove(inTheWay));
        held = numbers({1, 2});
        list.later();
        clock.advance(StoredList::kSaveDelay);
        QVERIFY(!list.lastSaveFailed());
        QCOMPARE(onDisk(path), numbers({1, 2}));
    }

    void savesWaitAndABurstIsSavedOnce()
    {
        TempHome home;
        ManualClock clock;
        const QString path = home.file(QStringLiteral("data/list.json"));
        StoredList list(path, kArea, clock);
        int snapshots = 0;
        QJsonArray held;
        list.setSnapshot([&] {
            ++snapshots;
            return held;
        });
        list.load();
        held = numbers({1});
        list.later();
        clock.advance(Seconds(StoredList::kSaveDelay.count() / 2));
        held = numbers({1, 2});
        list.later();
        QVERIFY(!QFile::exists(path));
        clock.advance(Seconds(StoredList::kSaveDelay.count() / 2));
        QCOMPARE(snapshots, 1);
        QCOMPARE(onDisk(path), numbers({1, 2}));
        QVERIFY(!list.isPending());
    }

    void aWaitingSaveIsDoneWhenTheListGoesAway()
    {
        TempHome home;
        ManualClock clock;
        const QString path = home.file(QStringLiteral("list.json"));
        {
            StoredList list(path, kArea, clock);
            list.setSnapshot([] { return numbers({3}); });
            list.later();
        }
        QCOMPARE(onDisk(path), numbers({3}));
    }

    void leftoversOfASaveCutShortAreClearedAtLoad()
    {
        TempHome home;
        ManualClock clock;
        LogCapture log;
        const QString path = home.write(QStringLiteral("list.json"), "[]");
        home.write(QStringLiteral("list.json.Ab12Cd"), "[{\"n\":1},");
        home.write(QStringLiteral("list.json.unreadable-20261118-100000"), "kept by an earlier run");
        home.write(QStringLiteral("list.json.bak"), "a person's own copy");
        StoredList list(path, kArea, clock);
        list.load();
        QVERIFY(!QFile::exists(home.file(QStringLiteral("list.json.Ab12Cd"))));
        QVERIFY(QFile::exists(home.file(QStringLiteral("list.json.unreadable-20261118-100000"))));
        QVERIFY(QFile::exists(home.file(QStringLiteral("list.json.bak"))));
        QVERIFY(log.contains(
            QStringLiteral("Norva test: removed list.json.Ab12Cd, a save that a quit left half written")));
    }
};
NORVA_TEST(StoredListTest)
#include "tst_StoredList.moc"
