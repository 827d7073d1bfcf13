#include "LogCapture.h"
#include "ManualClock.h"
#include "SmallDisk.h"
#include "TempHome.h"
#include "TestMain.h"

#include "notes/QuickNotesStore.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

using namespace norva;
using norva::test::ManualClock;

namespace {

QByteArray noteJson(const QString& id, const QString& text)
{
    return QStringLiteral(
               R"({"id":"%1","text":"%2","category":"","updatedAt":"2026-11-18T09:00:00.000Z","createdAt":"2026-11-18T09:00:00.000Z"})")
        .arg(id, text)
        .toUtf8();
}

struct StoreRig {
    test::TempHome folder;
    ManualClock clock;
    std::unique_ptr<QuickNotesStore> store;
    QString file() const { return folder.file(QStringLiteral("notes.json")); }
    void write(const QByteArray& bytes) const { folder.write(QStringLiteral("notes.json"), bytes); }
    void open()
    {
        store = std::make_unique<QuickNotesStore>(clock, folder.path());
        store->load();
    }
    QByteArray onDisk() const { return test::TempHome::read(file()); }
    QStringList asideFiles() const
    {
        return QDir(folder.path()).entryList({QStringLiteral("notes.json.unreadable-*")});
    }
};

const QString kFirst = QStringLiteral("0b0c2f16-6f3e-4f3b-9d0b-2d6f1a0e0001");
const QString kSecond = QStringLiteral("0b0c2f16-6f3e-4f3b-9d0b-2d6f1a0e0002");

} // namespace

class QuickNotesStoreTest : public QObject {
    Q_OBJECT
private slots:
    void notesAreSavedAndReadBack()
    {
        StoreRig rig;
        rig.open();
        const QUuid id = rig.store->add(QStringLiteral("Buy oat milk\nand bread"), QStringLiteral("Errands"));
        rig.clock.advance(QuickNotesStore::kSaveDelay);
        const QJsonArray saved = QJsonDocument::fromJson(rig.onDisk()).array();
        QCOMPARE(saved.size(), 1);
        QCOMPARE(saved[0].toObject().keys(),
                 (QStringList{"category", "createdAt", "id", "text", "updatedAt"}));
        rig.open();
        QCOMPARE(rig.store->notes().size(), 1);
        QCOMPARE(rig.store->find(id)->text, QStringLiteral("Buy oat milk\nand bread"));
        QCOMPARE(rig.store->categories(), QStringList{QStringLiteral("Errands")});
    }

    void oneDamagedNoteKeepsTheOthersAndTheFileUntouched_data()
    {
        QTest::addColumn<QByteArray>("damaged");
        QTest::newRow("not an object") << QByteArray("42");
        QTest::newRow("no id") << QByteArray(R"({"text":"lost"})");
        QTest::newRow("text is a number")
            << QByteArray(R"({"id":"0b0c2f16-6f3e-4f3b-9d0b-2d6f1a0e0009","text":7})");
    }
    void oneDamagedNoteKeepsTheOthersAndTheFileUntouched()
    {
        QFETCH(QByteArray, damaged);
        StoreRig rig;
        const QByteArray file =
            "[" + noteJson(kFirst, "one") + "," + damaged + "," + noteJson(kSecond, "two") + "]";
        rig.write(file);
        test::LogCapture log;
        rig.open();
        QCOMPARE(rig.store->notes().size(), 2);
        QVERIFY(log.contains(QStringLiteral("(some notes are damaged)")));
        QCOMPARE(rig.store->failure()->message, QuickNotesStore::damagedNotesText());
        QCOMPARE(rig.onDisk(), file);

        // The first save keeps the whole file aside, with the damaged note in it.
        rig.store->add(QStringLiteral("three"));
        QVERIFY(rig.store->saveNow());
        QCOMPARE(rig.asideFiles(), QStringList{QStringLiteral("notes.json.unreadable-2026-11-18-100000")});
        QCOMPARE(test::TempHome::read(rig.folder.file(rig.asideFiles().first())), file);
        QVERIFY(log.contains(QStringLiteral(
            "Norva Notes: set the unreadable notes.json aside as notes.json.unreadable-2026-11-18-100000")));
        QCOMPARE(rig.store->failure()->kind, QuickNotesStore::FailureKind::setAside);
        QCOMPARE(rig.store->failure()->message, QuickNotesStore::setAsideText());

        // Found again at the next start, and told.
        rig.open();
        QCOMPARE(rig.store->notes().size(), 3);
        QCOMPARE(rig.store->failure()->message, QuickNotesStore::setAsideText());
        QVERIFY(log.contains(QStringLiteral(": its notes are not in Norva until it is dealt with")));
    }

    void aFileThatIsNotAListIsKeptUntouched_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("an object") << QByteArray(R"({"notes":[]})");
        QTest::newRow("not JSON") << QByteArray("milk, bread");
    }
    void aFileThatIsNotAListIsKeptUntouched()
    {
        QFETCH(QByteArray, content);
        StoreRig rig;
        rig.write(content);
        test::LogCapture log;
        rig.open();
        QVERIFY(rig.store->notes().isEmpty());
        QCOMPARE(rig.store->failure()->message, QuickNotesStore::unreadableFileText());
        QVERIFY(log.contains(QStringLiteral("Norva Notes: could not read notes.json")));
        rig.clock.advance(Seconds(60));
        QCOMPARE(rig.onDisk(), content); // nothing saved over it while nothing changed
        rig.store->add(QStringLiteral("new"));
        rig.clock.advance(QuickNotesStore::kSaveDelay);
        QCOMPARE(rig.asideFiles().size(), 1);
        QCOMPARE(test::TempHome::read(rig.folder.file(rig.asideFiles().first())), content);
    }

    void aFailedSaveKeepsTheNotesAndSaysWhy()
    {
        ManualClock clock;
        test::SmallDisk disk(QStringLiteral("size=16k"));
        if (!disk.isMounted())
            QSKIP("no small disk could be mounted here (mounting needs root)");
        QuickNotesStore store(clock, disk.path());
        store.load();
        const QUuid id =
            store.add(QString(64 * 1024, QLatin1Char('x')), {}, QuickNotesStore::Surface::jotSheet);
        QVERIFY(!store.saveNow());
        QCOMPARE(store.failure()->kind, QuickNotesStore::FailureKind::unsaved);
        QCOMPARE(store.failure()->surface, QuickNotesStore::Surface::jotSheet);
        QCOMPARE(
            store.failure()->message,
            QStringLiteral("Norva couldn't save your notes: the disk is full. They stay here until it can."));
        QCOMPARE(store.find(id)->text.size(), 64 * 1024);
        QVERIFY(store.setText(id, QStringLiteral("shorter")));
        QVERIFY(store.saveNow());
        QVERIFY(!store.failure());
    }

    void appendAddsALineAndRemoveCanBeUndone()
    {
        StoreRig rig;
        rig.open();
        const QUuid a = rig.store->add(QStringLiteral("first"));
        const QUuid b = rig.store->add(QStringLiteral("second"));
        rig.clock.advance(Seconds(5));
        QVERIFY(rig.store->append(a, QStringLiteral("more")));
        QCOMPARE(rig.store->find(a)->text, QStringLiteral("first\nmore"));
        QCOMPARE(rig.store->find(a)->updatedAt, rig.clock.now());
        const auto removed = rig.store->remove(a);
        QVERIFY(removed);
        QCOMPARE(rig.store->notes().first().id, b);
        rig.store->putBack(removed->first, removed->second);
        QCOMPARE(rig.store->notes().first().id, a);
    }
};

NORVA_TEST(QuickNotesStoreTest)
#include "tst_QuickNotesStore.moc"
