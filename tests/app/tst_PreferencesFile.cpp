#include "LogCapture.h"
#include "TempHome.h"
#include "TestMain.h"

#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"
#include "platform/linux/PreferencesFile.h"

#include <QProcess>
#include <QSignalSpy>
#include <QtTest>

using namespace norva;
using norva::test::LogCapture;
using norva::test::TempHome;

namespace {

// Another process changing the preferences the way an editor or a script does: a new file moved
// over the old one.
void writeFromAnotherProcess(const QString& path, const QByteArray& content)
{
    QProcess sh;
    sh.start(QStringLiteral("sh"),
             {QStringLiteral("-c"), QStringLiteral("cat > \"$1.tmp\" && mv \"$1.tmp\" \"$1\""),
              QStringLiteral("sh"), path});
    sh.write(content);
    sh.closeWriteChannel();
    QVERIFY(sh.waitForFinished(5000));
    QCOMPARE(sh.exitCode(), 0);
}

} // namespace

class PreferencesFileTest : public QObject {
    Q_OBJECT
private slots:
    void valuesKeepTheirTypes_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("bool") << QByteArray("a = true") << QVariant(true);
        QTest::newRow("false") << QByteArray("a = false") << QVariant(false);
        QTest::newRow("integer") << QByteArray("a = 45") << QVariant(qint64(45));
        QTest::newRow("negative integer") << QByteArray("a = -3") << QVariant(qint64(-3));
        QTest::newRow("double") << QByteArray("a = 0.3") << QVariant(0.3);
        QTest::newRow("whole double") << QByteArray("a = 45.0") << QVariant(45.0);
        QTest::newRow("exponent") << QByteArray("a = 1e-2") << QVariant(0.01);
        QTest::newRow("text") << QByteArray("a = \"longer\"") << QVariant(QStringLiteral("longer"));
        QTest::newRow("escaped text")
            << QByteArray("a = \"say \\\"hi\\\"\\n\"") << QVariant(QStringLiteral("say \"hi\"\n"));
        QTest::newRow("quoted dotted key") << QByteArray("\"a\" = 1") << QVariant(qint64(1));
        QTest::newRow("comment after") << QByteArray("a = 12 # twelve") << QVariant(qint64(12));
        QTest::newRow("unquoted word") << QByteArray("a = yes") << QVariant(QStringLiteral("yes"));
        QTest::newRow("decimal comma") << QByteArray("a = 0,3") << QVariant(QStringLiteral("0,3"));
    }

    void valuesKeepTheirTypes()
    {
        QFETCH(QByteArray, line);
        QFETCH(QVariant, value);
        const auto parsed = PreferencesFile::parse(line + "\n");
        QVERIFY(parsed.values.contains(QStringLiteral("a")));
        const QVariant read = parsed.values.value(QStringLiteral("a"));
        QCOMPARE(read.typeId(), value.typeId());
        QCOMPARE(read, value);
        // What Norva writes reads back as the same value of the same type.
        const QByteArray written = (PreferencesFile::formatKey(QStringLiteral("a")) + QStringLiteral(" = ") +
                                    PreferencesFile::formatValue(value))
                                       .toUtf8();
        const QVariant again = PreferencesFile::parse(written).values.value(QStringLiteral("a"));
        QCOMPARE(again.typeId(), value.typeId());
        QCOMPARE(again, value);
    }

    void writesAreAtomicAndKeepEveryOtherLine()
    {
        TempHome home;
        const QString path =
            home.write(QStringLiteral("prefs/preferences.toml"),
                       "# mine\n\"openOnHover.v5\" = true\nthis line is broken\nclipboardLimit = 5x0\n");
        PreferencesFile file(path);
        file.setValue(QStringLiteral("keepAwake"), true);
        file.setValue(QStringLiteral("openOnHover.v5"), false);
        const QByteArray text = TempHome::read(path);
        QVERIFY(text.contains("# mine\n"));
        QVERIFY(text.contains("this line is broken\n"));
        QVERIFY(text.contains("clipboardLimit = 5x0\n"));
        QVERIFY(text.contains("\"openOnHover.v5\" = false\n"));
        QVERIFY(text.contains("keepAwake = true\n"));
        QCOMPARE(text.count("openOnHover.v5"), 1);
        file.setValue(QStringLiteral("keepAwake"), std::nullopt);
        QVERIFY(!TempHome::read(path).contains("keepAwake"));
    }

    void handBrokenFileStartsWithDefaultsLogsOncePerKeyAndIsNotRewritten()
    {
        TempHome home;
        const QByteArray broken =
            "\"openOnHover.v5\" = yes please\nclipboardLimit = lots\n\"notch.peekDelay.v1\" = 0.1.2\n"
            "garbage without an equals sign\n";
        const QString path = home.write(QStringLiteral("prefs/preferences.toml"), broken);
        LogCapture log;
        PreferencesFile file(path);
        SettingsStore store(file);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(store.openOnHover(), false);
            QCOMPARE(store.storedInteger(QStringLiteral("clipboardLimit")), std::nullopt);
            QCOMPARE(store.peekDelay(), 0.07);
        }
        QCOMPARE(
            log.count(QStringLiteral(
                "Norva settings: reading openOnHover.v5 failed (it holds \"yes please\", not on or off)")),
            1);
        QCOMPARE(log.count(QStringLiteral("Norva settings: reading clipboardLimit failed")), 1);
        QCOMPARE(log.count(QStringLiteral("Norva settings: reading notch.peekDelay.v1 failed")), 1);
        QCOMPARE(TempHome::read(path), broken);
    }

    void fileThatIsNotTextIsSetAsideBeforeTheFirstWrite_data()
    {
        QTest::addColumn<bool>("startFinishesFirst");
        QTest::addColumn<QStringList>("expected");
        // Changed while starting (the first launch's flag): one line says both.
        QTest::newRow("changed at once")
            << false
            << QStringList{"Norva settings: kept the unreadable preferences file as ",
                           " (it is not text) and started a fresh one"};
        QTest::newRow("changed later")
            << true
            << QStringList{"could not be read (it is not text)",
                           "Norva settings: kept the unreadable preferences file as "};
    }
    void fileThatIsNotTextIsSetAsideBeforeTheFirstWrite()
    {
        QFETCH(bool, startFinishesFirst);
        QFETCH(QStringList, expected);
        TempHome home;
        const QByteArray junk("\x00\xff\xfe binary \x01", 12);
        const QString path = home.write(QStringLiteral("prefs/preferences.toml"), junk);
        LogCapture log;
        PreferencesFile file(path);
        SettingsStore store(file);
        QCOMPARE(store.showMenuBarIcon(), true);
        QCOMPARE(TempHome::read(path), junk);
        if (startFinishesFirst)
            QCoreApplication::processEvents();
        store.setPeekOnHover(false);
        QCoreApplication::processEvents();
        const QStringList lines = log.lines();
        QCOMPARE(lines.size(), startFinishesFirst ? 2 : 1);
        QVERIFY(lines.first().contains(expected.first()));
        QVERIFY(lines.last().contains(expected.last()));
        const QStringList kept = QDir(home.file(QStringLiteral("prefs")))
                                     .entryList({QStringLiteral("preferences.toml.unreadable-*")});
        QCOMPARE(kept.size(), 1);
        QCOMPARE(TempHome::read(home.file(QStringLiteral("prefs/") + kept.first())), junk);
        QCOMPARE(store.peekOnHover(), false);
    }

    void aSaveThatAQuitLeftHalfWrittenIsClearedAtStart()
    {
        TempHome home;
        const QString path = home.write(QStringLiteral("prefs/preferences.toml"), "keepAwake = true\n");
        home.write(QStringLiteral("prefs/preferences.toml.a1B2c3"), "keepAwake = fal");
        home.write(QStringLiteral("prefs/preferences.toml.unreadable-20261118-100000"), "kept");
        home.write(QStringLiteral("prefs/preferences.toml.orig"), "mine");
        LogCapture log;
        PreferencesFile file(path);
        QCOMPARE(
            log.lines(),
            QStringList{QStringLiteral(
                "Norva settings: removed preferences.toml.a1B2c3, a save that a quit left half written")});
        QCOMPARE(QDir(home.file(QStringLiteral("prefs"))).entryList(QDir::Files),
                 (QStringList{"preferences.toml", "preferences.toml.orig",
                              "preferences.toml.unreadable-20261118-100000"}));
        QCOMPARE(file.value(QStringLiteral("keepAwake")), std::optional<QVariant>(true));
    }

    void manyUnreadLinesAreToldOnceAndMovedAsideAtTheFirstChange_data()
    {
        QTest::addColumn<int>("junkLines");
        QTest::addColumn<bool>("movedAside");
        QTest::newRow("a few stay in place") << 3 << false;
        QTest::newRow("a megabyte moves aside") << 20000 << true;
    }
    void manyUnreadLinesAreToldOnceAndMovedAsideAtTheFirstChange()
    {
        QFETCH(int, junkLines);
        QFETCH(bool, movedAside);
        TempHome home;
        QByteArray junk;
        for (int n = 0; n < junkLines; ++n)
            junk +=
                "junk line " + QByteArray::number(n) + " of a file pasted here by mistake, no equals sign\n";
        const QString path =
            home.write(QStringLiteral("prefs/preferences.toml"), "# mine\nkeepAwake = true\n" + junk);
        LogCapture log;
        PreferencesFile file(path);
        file.reload();
        file.setValue(QStringLiteral("clipboardLimit"), qint64(20));
        file.setValue(QStringLiteral("clipboardLimit"), qint64(30));
        QCOMPARE(log.count(QStringLiteral("Norva settings: the preferences file at ") + path +
                           QStringLiteral(" holds ") + QString::number(junkLines) +
                           QStringLiteral(" lines Norva cannot read; they are kept as they are")),
                 1);
        const QStringList aside = QDir(home.file(QStringLiteral("prefs")))
                                      .entryList({QStringLiteral("preferences.toml.unread-lines-*")});
        QCOMPARE(aside.size(), movedAside ? 1 : 0);
        const QByteArray now = TempHome::read(path);
        QVERIFY(now.startsWith("# mine\nkeepAwake = true\n"));
        QVERIFY(now.contains("clipboardLimit = 30\n"));
        if (movedAside) {
            QCOMPARE(TempHome::read(home.file(QStringLiteral("prefs/") + aside.first())), junk);
            QVERIFY(!now.contains("junk line"));
            QCOMPARE(log.count(QStringLiteral(" it cannot read from the preferences file to ") +
                               aside.first() +
                               QStringLiteral(", so they are not rewritten with every change")),
                     1);
        } else {
            QVERIFY(now.contains(junk));
        }
    }

    void anotherProcessChangingAWatchedKeyPublishesOnce()
    {
        TempHome home;
        const QString path = home.file(QStringLiteral("prefs/preferences.toml"));
        PreferencesFile file(path);
        SettingsStore store(file);
        store.setPeekDelay(0.3);
        QSignalSpy spy(&store, &SettingsStore::changed);
        // Our own write reaches the watcher too, and must not publish a second time.
        QTest::qWait(200);
        QCOMPARE(spy.count(), 0);

        writeFromAnotherProcess(path, TempHome::read(path) + "\"openOnHover.v5\" = true\n");
        QTRY_COMPARE(spy.count(), 1);
        QCOMPARE(store.openOnHover(), true);
        QCOMPARE(store.peekDelay(), 0.3);

        // A key Norva does not watch publishes nothing.
        writeFromAnotherProcess(path, TempHome::read(path) + "someoneElses = 1\n");
        QTRY_COMPARE(file.value(QStringLiteral("someoneElses")), std::optional<QVariant>(qint64(1)));
        QTest::qWait(100);
        QCOMPARE(spy.count(), 1);

        // And a second outside change still arrives after the file was replaced.
        writeFromAnotherProcess(path, "\"notch.peekDelay.v1\" = 0.2\n");
        QTRY_COMPARE(store.peekDelay(), 0.2);
        QCOMPARE(spy.count(), 2);
        QCOMPARE(store.openOnHover(), false);
    }
};

NORVA_TEST(PreferencesFileTest)
#include "tst_PreferencesFile.moc"
