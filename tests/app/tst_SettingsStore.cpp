#include "LogCapture.h"
#include "MemoryPreferences.h"
#include "TestMain.h"

#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"
#include "media/MusicSettings.h"
#include "shelf/ShelfSettings.h"

#include <QSignalSpy>
#include <QtTest>

#include <thread>

using namespace norva;
using norva::test::LogCapture;
using norva::test::MemoryPreferences;

class SettingsStoreTest : public QObject {
    Q_OBJECT
private slots:
    void ownWritePublishesExactlyOnceAndIsNotHeardBack()
    {
        MemoryPreferences prefs;
        SettingsStore store(prefs);
        QSignalSpy spy(&store, &SettingsStore::changed);
        store.setOpenOnHover(true);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(prefs.value(SettingsKeys::openOnHover), std::optional<QVariant>(true));
        prefs.outsideChange(SettingsKeys::openOnHover, true); // what the store itself wrote
        QCOMPARE(spy.count(), 1);
    }

    void outsideChangeOfWatchedKeyPublishesOnceNamingTheKey()
    {
        MemoryPreferences prefs;
        SettingsStore store(prefs);
        QSignalSpy spy(&store, &SettingsStore::changed);
        QSignalSpy keys(&store, &SettingsStore::keyChanged);
        prefs.outsideChange(SettingsKeys::peekDelay, 0.2);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(keys.count(), 1);
        QCOMPARE(keys.at(0).at(0).toString(), SettingsKeys::peekDelay);
        QCOMPARE(store.peekDelay(), 0.2);
        prefs.outsideChange(SettingsKeys::peekDelay, 0.2); // the same value again
        QCOMPARE(spy.count(), 1);
        QCOMPARE(keys.count(), 1);
    }

    // A feature's own keys are the store's business only once the feature's settings watch them;
    // keys nobody watches are never told.
    void featureKeysAreToldOnceWatched()
    {
        const QString key = QStringLiteral("sample.feature.v1");
        MemoryPreferences prefs;
        SettingsStore store(prefs);
        QSignalSpy keys(&store, &SettingsStore::keyChanged);
        QSignalSpy changed(&store, &SettingsStore::changed);
        prefs.outsideChange(key, true);
        prefs.outsideChange(SettingsKeys::hasLaunchedBefore, true); // not a setting anyone follows
        QCOMPARE(keys.count(), 0);
        QCOMPARE(changed.count(), 0);
        store.watch({key});
        prefs.outsideChange(key, true); // what the store already saw when it began to watch
        QCOMPARE(keys.count(), 0);
        prefs.outsideChange(key, false);
        QCOMPARE(keys.count(), 1);
        QCOMPARE(keys.at(0).at(0).toString(), key);
        store.write(true, key);
        QCOMPARE(keys.count(), 2);
    }

    void changeFromAnotherThreadPublishesOnTheMainThread()
    {
        MemoryPreferences prefs;
        SettingsStore store(prefs);
        QThread* publishedOn = nullptr;
        connect(&store, &SettingsStore::changed, this, [&] { publishedOn = QThread::currentThread(); });
        std::thread writer([&] { prefs.outsideChange(SettingsKeys::peekOnHover, false); });
        writer.join();
        QTRY_VERIFY(publishedOn != nullptr);
        QCOMPARE(publishedOn, QThread::currentThread());
    }

    void unreadableValuesFallBackAndLogOnce_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QString>("expectation");
        QTest::newRow("keepPaused 45")
            << MusicSettings::kKeepPausedKey << QVariant(qint64(45)) << "10, 30, 60 or 0 seconds";
        QTest::newRow("flag holding text")
            << SettingsKeys::openOnHover << QVariant(QStringLiteral("yes")) << "on or off";
        QTest::newRow("number holding text")
            << SettingsKeys::openHoverDelay << QVariant(QStringLiteral("0,3")) << "a number";
        QTest::newRow("motion") << SettingsKeys::notchMotion << QVariant(true) << "full or reduced";
        QTest::newRow("shelf keep") << ShelfSettings::kKeepKey << QVariant(QStringLiteral("month"))
                                    << "forever, a day or a week";
        QTest::newRow("not finite") << SettingsKeys::peekDelay << QVariant(qQNaN()) << "a number";
    }

    void unreadableValuesFallBackAndLogOnce()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, stored);
        QFETCH(QString, expectation);
        MemoryPreferences prefs;
        prefs.setValue(key, stored);
        SettingsStore store(prefs);
        LogCapture log;
        MemoryPreferences empty;
        SettingsStore defaults(empty);
        const MusicSettings music(store);
        const ShelfSettings shelf(store);
        for (int i = 0; i < 5; ++i) {
            // Every getter reads its key; reading many times still logs once.
            QCOMPARE(music.keepPaused(), MusicSettings::keepPausedIn(defaults));
            QCOMPARE(store.openOnHover(), defaults.openOnHover());
            QCOMPARE(store.openHoverDelay(), defaults.openHoverDelay());
            QCOMPARE(store.motion(), defaults.motion());
            QCOMPARE(shelf.keep(), ShelfKeep::forever);
            QCOMPARE(store.peekDelay(), defaults.peekDelay());
        }
        const QString line = QStringLiteral("Norva settings: reading ") + key;
        QCOMPARE(log.count(line), 1);
        QVERIFY2(
            log.lines().join('\n').contains(
                QStringLiteral(", not ") + expectation +
                QStringLiteral("); the default applies until the setting is changed, and the stored value is "
                               "left as it is")),
            qPrintable(log.lines().join('\n')));
        QCOMPARE(prefs.value(key)->toString(), stored.toString()); // never overwritten by a read
    }

    void keepPausedFollowsOlderKeyWhenUnreadable()
    {
        MemoryPreferences prefs;
        prefs.setValue(MusicSettings::kKeepPausedKey, qint64(45));
        prefs.setValue(MusicSettings::kAutoHidePausedKey, false);
        SettingsStore store(prefs);
        const MusicSettings music(store);
        LogCapture log;
        QCOMPARE(music.keepPaused(), KeepPaused::never);
        prefs.setValue(MusicSettings::kAutoHidePausedKey, true);
        QCOMPARE(music.keepPaused(), KeepPaused::thirtySeconds);
        prefs.setValue(MusicSettings::kKeepPausedKey, qint64(60));
        QCOMPARE(music.keepPaused(), KeepPaused::sixtySeconds);
    }

    void clampedNumbers_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<double>("reads");
        QTest::newRow("peek above") << SettingsKeys::peekDelay << QVariant(0.7) << 0.5;
        QTest::newRow("peek below") << SettingsKeys::peekDelay << QVariant(0.013) << 0.02;
        QTest::newRow("peek absent") << SettingsKeys::peekDelay << QVariant() << 0.07;
        QTest::newRow("peek integer") << SettingsKeys::peekDelay << QVariant(qint64(0)) << 0.02;
        QTest::newRow("hover absent") << SettingsKeys::openHoverDelay << QVariant() << 0.12;
        QTest::newRow("hover low") << SettingsKeys::openHoverDelay << QVariant(0.01) << 0.09;
        QTest::newRow("hover high") << SettingsKeys::openHoverDelay << QVariant(qint64(3)) << 1.5;
        QTest::newRow("hover infinite") << SettingsKeys::openHoverDelay << QVariant(qInf()) << 0.12;
    }

    void clampedNumbers()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, stored);
        QFETCH(double, reads);
        MemoryPreferences prefs;
        if (stored.isValid())
            prefs.setValue(key, stored);
        SettingsStore store(prefs);
        const double value = key == SettingsKeys::peekDelay ? store.peekDelay() : store.openHoverDelay();
        QVERIFY2(qAbs(value - reads) < 1e-9, qPrintable(QString::number(value, 'g', 17)));
    }

    void hoverDelayFromSlider_data()
    {
        QTest::addColumn<double>("fraction");
        QTest::addColumn<double>("seconds");
        QTest::newRow("zero") << 0.0 << 0.09;
        QTest::newRow("half") << 0.5 << 0.8; // 0.705 + 0.09 = 0.795 → 0.80
        QTest::newRow("one") << 1.0 << 1.5;
        QTest::newRow("above one is capped") << 3.0 << 1.5;
        QTest::newRow("negative clamps") << -1.0 << 0.09;
        QTest::newRow("not finite") << qQNaN() << 0.12;
        QTest::newRow("infinite") << qInf() << 0.12;
        QTest::newRow("a tenth") << 0.1 << 0.23;
    }

    void hoverDelayFromSlider()
    {
        QFETCH(double, fraction);
        QFETCH(double, seconds);
        QVERIFY2(qAbs(SettingsStore::hoverDelay(fraction) - seconds) < 1e-9,
                 qPrintable(QString::number(SettingsStore::hoverDelay(fraction), 'g', 17)));
    }

    void displayChoice_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QVariant>("older");
        QTest::addColumn<QString>("reads");
        QTest::newRow("absent, older on") << QVariant() << QVariant(true) << "all";
        QTest::newRow("absent, older off") << QVariant() << QVariant(false) << "builtIn";
        QTest::newRow("absent, both absent") << QVariant() << QVariant() << "builtIn";
        QTest::newRow("all wins over older") << QVariant(QStringLiteral("all")) << QVariant(false) << "all";
        QTest::newRow("builtIn") << QVariant(QStringLiteral("builtIn")) << QVariant(true) << "builtIn";
        QTest::newRow("one display") << QVariant(QStringLiteral("display:HDMI-1|Dell")) << QVariant(true)
                                     << "display:HDMI-1|Dell";
        QTest::newRow("display without bar")
            << QVariant(QStringLiteral("display:HDMI-1")) << QVariant(true) << "all";
        QTest::newRow("display with both empty")
            << QVariant(QStringLiteral("display:|")) << QVariant(true) << "all";
        QTest::newRow("display name only")
            << QVariant(QStringLiteral("display:|Dell")) << QVariant(false) << "display:|Dell";
        QTest::newRow("empty text") << QVariant(QString()) << QVariant(true) << "all";
        QTest::newRow("other text") << QVariant(QStringLiteral("left")) << QVariant(false) << "builtIn";
    }

    void displayChoice()
    {
        QFETCH(QVariant, stored);
        QFETCH(QVariant, older);
        MemoryPreferences prefs;
        if (stored.isValid())
            prefs.setValue(SettingsKeys::displayChoice, stored);
        if (older.isValid())
            prefs.setValue(SettingsKeys::showOnAllDisplays, older);
        SettingsStore store(prefs);
        QTEST(store.displayChoice().raw(), "reads");
        // The older key is never rewritten or deleted by reading.
        QCOMPARE(prefs.value(SettingsKeys::showOnAllDisplays).has_value(), older.isValid());
    }

    void clampHelper_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<double>("lower");
        QTest::addColumn<double>("upper");
        QTest::addColumn<double>("step");
        QTest::addColumn<double>("expected");
        QTest::newRow("snaps from lower") << 0.26 << 0.15 << 1.0 << 0.05 << 0.25;
        QTest::newRow("stays in range") << 0.999 << 0.15 << 1.0 << 0.05 << 1.0;
        QTest::newRow("hundredths") << 0.0449 << 0.02 << 0.5 << 0.01 << 0.04;
        QTest::newRow("whole steps") << 7.4 << 0.0 << 10.0 << 1.0 << 7.0;
    }

    void clampHelper()
    {
        QFETCH(double, value);
        QFETCH(double, lower);
        QFETCH(double, upper);
        QFETCH(double, step);
        QFETCH(double, expected);
        QVERIFY(qAbs(SettingsStore::clamp(value, lower, upper, step) - expected) < 1e-9);
    }

    void theWatchedKeysAreTheStoresOwnOnceEach()
    {
        QVERIFY(!SettingsStore::watchedKeys().contains(SettingsKeys::hasLaunchedBefore));
        QCOMPARE(
            SettingsStore::watchedKeys().size(),
            QSet<QString>(SettingsStore::watchedKeys().begin(), SettingsStore::watchedKeys().end()).size());
    }
};

NORVA_TEST(SettingsStoreTest)
#include "tst_SettingsStore.moc"
