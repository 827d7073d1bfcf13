#include "TestMain.h"

#include "app/Clock.h"

#include <QElapsedTimer>
#include <QtTest>

using namespace norva;

// A few smoke tests of the real timers; everything else drives the manual clock.
class SystemClockTest : public QObject {
    Q_OBJECT
private slots:
    void delayedWorkRunsOnceAfterItsDelay()
    {
        QElapsedTimer timer;
        timer.start();
        int runs = 0;
        qint64 ranAfter = 0;
        ScheduledWork work = systemClock().after(Seconds(0.05), [&] {
            ++runs;
            ranAfter = timer.elapsed();
        });
        QTRY_COMPARE(runs, 1);
        QVERIFY(ranAfter >= 45);
        QTest::qWait(100);
        QCOMPARE(runs, 1);
        QVERIFY(!work.isArmed());
    }

    void cancelledWorkNeverRuns()
    {
        int runs = 0;
        {
            ScheduledWork work = systemClock().after(Seconds(0.02), [&] { ++runs; });
        }
        ScheduledWork repeating = systemClock().every(Seconds(0.01), [&] { ++runs; });
        repeating.cancel();
        QTest::qWait(80);
        QCOMPARE(runs, 0);
    }

    void repeatingWorkRepeatsUntilCancelled()
    {
        int runs = 0;
        ScheduledWork work = systemClock().every(Seconds(0.01), [&] { ++runs; });
        QTRY_VERIFY(runs >= 3);
        work.cancel();
        const int stoppedAt = runs;
        QTest::qWait(60);
        QCOMPARE(runs, stoppedAt);
    }
};

NORVA_TEST(SystemClockTest)
#include "tst_SystemClock.moc"
