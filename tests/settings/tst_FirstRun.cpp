#include "MemoryPreferences.h"
#include "TempHome.h"
#include "TestMain.h"

#include "app/SettingsStore.h"
#include "settings/FirstRunGuide.h"
#include "settings/WhatsNew.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QSignalSpy>
#include <QtTest>

using namespace norva;

namespace {

FirstRunGuide::Setup setup(bool firstLaunch, const QString& version = QStringLiteral("0.2.0"))
{
    return {firstLaunch, version, QStringLiteral("~/.local/share/calendars"), true};
}

// Every file under the folder with its size and time, to tell whether anything was written.
QStringList filesUnder(const QString& folder)
{
    QStringList seen;
    QDirIterator it(folder, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo file(it.next());
        seen << file.filePath() + QLatin1Char(' ') + QString::number(file.size()) + QLatin1Char(' ') +
                    QString::number(file.lastModified().toMSecsSinceEpoch());
    }
    seen.sort();
    return seen;
}

} // namespace

class FirstRunTest : public QObject {
    Q_OBJECT
private slots:
    void theIntroductionShowsOnceAndCanBeSkipped()
    {
        test::MemoryPreferences preferences;
        SettingsStore store(preferences);
        FirstRunGuide first(store, setup(true));
        QVERIFY(first.showing());
        QVERIFY(!first.whatsNewShowing()); // the introduction says it all
        first.next();
        QCOMPARE(first.step(), 1);
        QSignalSpy wants(&first, &FirstRunGuide::wantsNotchChanged);
        first.skip();
        QVERIFY(!first.showing());
        QCOMPARE(wants.value(0).value(0).toBool(), false);

        // The next launch (start-up has written "hasLaunchedBefore" meanwhile) shows neither.
        FirstRunGuide later(store, setup(false));
        QVERIFY(!later.showing());
        QVERIFY(!later.whatsNewShowing());
    }

    void walkingToTheLastStepEndsTheIntroduction()
    {
        test::MemoryPreferences preferences;
        SettingsStore store(preferences);
        FirstRunGuide guide(store, setup(true));
        QStringList titles;
        for (int i = 0; i < guide.stepCount() && guide.showing(); ++i) {
            titles << guide.current().value(QStringLiteral("title")).toString();
            guide.next();
        }
        QVERIFY(!guide.showing());
        QCOMPARE(titles.size(), guide.stepCount());
        QCOMPARE(titles.removeDuplicates(), 0);
    }

    void whatsNewShowsOnceAfterAnUpdate()
    {
        test::MemoryPreferences preferences;
        SettingsStore store(preferences);
        preferences.setValue(FirstRunGuide::lastSeenVersionKey, QStringLiteral("0.0.9"));
        FirstRunGuide updated(store, setup(false, QStringLiteral("0.1.0")));
        QVERIFY(updated.whatsNewShowing());
        QVERIFY(!updated.whatsNew().isEmpty());
        updated.dismissWhatsNew();
        QCOMPARE(preferences.value(FirstRunGuide::lastSeenVersionKey).value_or(QVariant()),
                 QVariant(QStringLiteral("0.1.0")));
        FirstRunGuide again(store, setup(false, QStringLiteral("0.1.0")));
        QVERIFY(!again.whatsNewShowing());
    }

    void whatsNewLines_data()
    {
        QTest::addColumn<QString>("lastSeen");
        QTest::addColumn<QString>("current");
        QTest::addColumn<QStringList>("lines");
        const auto row = [](const char* name, const char* lastSeen, const char* current, QStringList lines) {
            QTest::newRow(name) << QString::fromLatin1(lastSeen) << QString::fromLatin1(current) << lines;
        };
        row("two releases since", "1.0.0", "1.2.0", {"c", "b"});
        row("one since", "1.1.0", "1.2.0", {"c"});
        row("seen already", "1.2.0", "1.2.0", {});
        row("from before the card", "", "1.1.0", {"b"});
        row("a release written ahead", "1.0.0", "1.1.0", {"b"});
        row("a downgrade", "1.2.0", "1.1.0", {});
    }
    void whatsNewLines()
    {
        QFETCH(QString, lastSeen);
        QFETCH(QString, current);
        QFETCH(QStringList, lines);
        const QList<WhatsNew::Release> releases = {{"1.2.0", {"c"}}, {"1.1.0", {"b"}}, {"1.0.0", {"a"}}};
        QCOMPARE(WhatsNew::linesSince(lastSeen, current, releases), lines);
    }

    // The tour shows samples held in the guide: the person's folders stay as they were, and the only
    // preference written is Norva's note of the version it introduced.
    void theTourWritesNothingOfThePersonsOwn()
    {
        test::TempHome home;
        home.write(QStringLiteral(".local/share/calendars/personal/a.ics"),
                   "BEGIN:VCALENDAR\r\nEND:VCALENDAR\r\n");
        home.write(QStringLiteral(".local/share/Norva/clipboard.json"), "[]");
        const QStringList before = filesUnder(home.path());
        test::MemoryPreferences preferences;
        SettingsStore store(preferences);
        FirstRunGuide guide(store, setup(true));
        for (int i = 0; i < guide.stepCount(); ++i)
            guide.next();
        guide.startTour(2);
        guide.back();
        guide.skip();
        QCOMPARE(filesUnder(home.path()), before);
        QCOMPARE(preferences.keys(), QStringList{FirstRunGuide::lastSeenVersionKey});
    }

    void theDemoNotesNothing()
    {
        test::MemoryPreferences preferences;
        SettingsStore store(preferences);
        FirstRunGuide guide(store, {true, QStringLiteral("0.1.0"), QString(), false});
        guide.skip();
        QVERIFY(preferences.keys().isEmpty());
    }
};

NORVA_TEST(FirstRunTest)
#include "tst_FirstRun.moc"
