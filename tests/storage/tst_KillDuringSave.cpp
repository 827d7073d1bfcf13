#include "TempHome.h"
#include "TestMain.h"

#include "clipboard/ClipboardItem.h"
#include "shelf/ShelfItem.h"
#include "storage/StoredList.h"
#include "ManualClock.h"

#include <QDir>
#include <QJsonDocument>
#include <QProcess>
#include <QRandomGenerator>
#include <QtTest>

#include <csignal>

using namespace norva;
using namespace norva::test;

// Norva killed in the middle of saving its lists: the list file is the old list or the new one,
// whole, every time; never a mix and never half a file.
class KillDuringSaveTest : public QObject {
    Q_OBJECT

private slots:
    void listIsOldOrNewNeverHalf_data()
    {
        QTest::addColumn<QString>("which");
        QTest::addColumn<QString>("fileName");
        QTest::newRow("clipboard") << QStringLiteral("clipboard") << QStringLiteral("clipboard.json");
        QTest::newRow("shelf") << QStringLiteral("shelf") << QStringLiteral("shelf.json");
    }
    void listIsOldOrNewNeverHalf()
    {
        QFETCH(QString, which);
        QFETCH(QString, fileName);
        constexpr int kItems = 4000;
        constexpr int kKills = 15;
        TempHome home;
        const QString path = home.file(fileName);
        QRandomGenerator random(20261123);
        QSet<QString> seen;
        for (int round = 0; round < kKills; ++round) {
            QProcess saver;
            saver.start(QStringLiteral(SAVE_LOOP), {path, which, QString::number(kItems)});
            QVERIFY(saver.waitForStarted());
            QVERIFY(saver.waitForReadyRead(20000));
            QCOMPARE(saver.readLine().trimmed(), QByteArray("ready"));
            QTest::qWait(int(random.bounded(5, 120)));
            ::kill(pid_t(saver.processId()), SIGKILL);
            QVERIFY(saver.waitForFinished(5000));
            QCOMPARE(saver.exitStatus(), QProcess::CrashExit);

            QJsonParseError error{};
            const QJsonDocument document = QJsonDocument::fromJson(TempHome::read(path), &error);
            QCOMPARE(error.error, QJsonParseError::NoError);
            QVERIFY(document.isArray());
            const QJsonArray array = document.array();
            QCOMPARE(array.size(), kItems);
            // Every element decodes, and all come from one round: "old-..." or "new-...".
            const QString first = which == QLatin1String("shelf")
                                      ? ShelfItem::fromJson(array.first().toObject())->path
                                      : *ClipboardItem::fromJson(array.first().toObject())->text;
            const QString round0 = first.contains(QLatin1String("old-")) ? QStringLiteral("old-") : QStringLiteral("new-");
            seen.insert(round0);
            for (int i = 0; i < array.size(); ++i) {
                const QString name = which == QLatin1String("shelf")
                                         ? ShelfItem::fromJson(array.at(i).toObject()).value_or(ShelfItem{}).path
                                         : ClipboardItem::fromJson(array.at(i).toObject())
                                               .value_or(ClipboardItem{})
                                               .text.value_or(QString());
                QVERIFY2(name.contains(round0 + QString::number(i)), qPrintable(name));
            }
        }
        QVERIFY2(seen.size() == 2 || kKills < 4, "the kills never fell on both rounds");
        // What a kill left beside the list is cleared at the next start, and the list reads.
        ManualClock clock;
        StoredList list(path, QStringLiteral("Norva test"), clock);
        QCOMPARE(list.load().size(), kItems);
        QVERIFY(!list.holdsUnreadable());
        QCOMPARE(QDir(home.path()).entryList({fileName + QStringLiteral(".*")}, QDir::Files | QDir::Hidden), QStringList());
    }
};
NORVA_TEST(KillDuringSaveTest)
#include "tst_KillDuringSave.moc"
