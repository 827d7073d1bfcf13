#include "LogCapture.h"
#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "TempHome.h"
#include "TestMain.h"

#include "activities/ActivityKinds.h"
#include "shell/Features.h"
#include "shell/Shell.h"

#include <QDirIterator>
#include <QtTest>

#include <set>

using namespace norva;

namespace {

// A feature that writes what happens to it into a shared journal.
class JournalFeature : public FeatureModule {
    Q_OBJECT
public:
    JournalFeature(Shell& shell, QStringList& journal, QString name, QList<FeaturePage> pages = {})
        : m_journal(journal), m_name(std::move(name)), m_pages(std::move(pages))
    {
        // A feature publishes from its constructor on: the coordinator must already be there.
        m_journal << m_name + QStringLiteral(" made, ") +
                         QString::number(shell.activities().activities().size());
    }
    void start() override { m_journal << m_name + QStringLiteral(" started"); }
    void stop() override { m_journal << m_name + QStringLiteral(" stopped"); }
    QList<FeaturePage> pages() const override { return m_pages; }
    QList<QObject*> qmlObjects() const override { return {const_cast<JournalFeature*>(this)}; }

private:
    QStringList& m_journal;
    QString m_name;
    QList<FeaturePage> m_pages;
};

class OtherFeature : public JournalFeature {
    Q_OBJECT
public:
    using JournalFeature::JournalFeature;
};

QStringList idsOf(const QList<FeaturePage>& pages)
{
    QStringList ids;
    for (const FeaturePage& page : pages)
        ids << page.id;
    return ids;
}

// The kinds of the live activities, as the closed face names them.
std::multiset<QString> liveKinds(const LiveActivityCoordinator& coordinator)
{
    std::multiset<QString> kinds;
    for (const LiveActivity& activity : coordinator.activities())
        kinds.insert(QString::fromLatin1(ActivityKinds::of(activity.content.kind()).word));
    return kinds;
}

} // namespace

class ShellTest : public QObject {
    Q_OBJECT
private slots:
    void featuresStartInTheOrderAddedAndStopInReverse()
    {
        test::ManualClock clock;
        QStringList journal;
        {
            Shell shell(std::make_unique<test::MemoryPreferences>(), clock, {});
            shell.add<JournalFeature>(journal, QStringLiteral("first"));
            shell.add<OtherFeature>(journal, QStringLiteral("second"));
            QVERIFY(shell.find<OtherFeature>());
            shell.start();
        }
        QCOMPARE(journal, (QStringList{"first made, 0", "second made, 0", "first started", "second started",
                                       "second stopped", "first stopped"}));
    }

    void pagesTakeTheirPlaceInThePager()
    {
        test::ManualClock clock;
        QStringList journal;
        Shell shell(std::make_unique<test::MemoryPreferences>(), clock, {});
        const FeaturePage weather{"weather", "Weather", "WeatherPage.qml", "", 70};
        shell.add<JournalFeature>(journal, QStringLiteral("late"), QList<FeaturePage>{weather});
        shell.add<OtherFeature>(journal, QStringLiteral("early"),
                                QList<FeaturePage>{{"sample", "Sample", "SamplePage.qml", "", 15}});
        const QList<FeaturePage> pages = shell.pages();
        QCOMPARE(idsOf(pages), (QStringList{"sample", "weather"}));
        QCOMPARE(pages.at(1), weather);
    }

    void qmlSeesTheShellsObjectsAndEveryFeatures()
    {
        test::ManualClock clock;
        QStringList journal;
        Shell shell(std::make_unique<test::MemoryPreferences>(), clock, {});
        auto& feature = shell.add<JournalFeature>(journal, QStringLiteral("sample"));
        const QList<QObject*> expected{&shell.settings(), &shell.activities(), &shell.closedFace(), &feature};
        QCOMPARE(shell.qmlObjects(), expected);
    }

    // Each demo scene, with every real feature: what is live at the start, and every kind the
    // closed face shows over the first 20 s, as the person would see it.
    void eachDemoSceneShowsItsSamples_data()
    {
        using Kinds = std::multiset<QString>;
        QTest::addColumn<QString>("scene");
        QTest::addColumn<Kinds>("live");
        QTest::addColumn<Kinds>("seen");
        const Kinds everyday{"download", "shelf", "timer"};
        QTest::newRow("--demo") << "" << everyday << Kinds{"download", "shelf", "timer", "volume"};
        QTest::newRow("all") << "all" << everyday << Kinds{"download", "shelf", "timer", "volume"};
        QTest::newRow("one") << "one" << Kinds{"timer"} << Kinds{"timer"};
        QTest::newRow("two") << "two" << Kinds{"download", "timer"} << Kinds{"download", "timer"};
        QTest::newRow("three") << "three" << everyday << everyday;
        // A waiting agent outranks the timer: the three prompts take turns over it.
        QTest::newRow("prompts") << "prompts" << Kinds{"agentPrompt", "agentPrompt", "agentPrompt", "timer"}
                                 << Kinds{"agentPrompt"};
    }

    void eachDemoSceneShowsItsSamples()
    {
        QFETCH(QString, scene);
        QFETCH(std::multiset<QString>, live);
        QFETCH(std::multiset<QString>, seen);
        test::TempHome home;
        test::ManualClock clock(QDateTime::currentDateTimeUtc());
        {
            Shell shell(std::make_unique<test::MemoryPreferences>(), clock, {true, scene});
            addFeatures(shell);
            shell.start();
            QTRY_COMPARE(liveKinds(shell.activities()), live); // the prompts come from a folder scan
            std::set<QString> shown;
            for (int step = 0; step < 40; ++step) {
                shown.insert(shell.closedFace().kind());
                clock.advance(Seconds(0.5));
            }
            QCOMPARE(std::multiset<QString>(shown.begin(), shown.end()), seen);
        }
        // The demo reads and writes nothing of the person's: their home stays as it was. Without a
        // session bus, libdbus starts one itself and notes it under ~/.dbus: that is not Norva's.
        QStringList written;
        QDirIterator files(home.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString file = files.next();
            if (!file.startsWith(home.path() + QStringLiteral("/.dbus/")))
                written << file;
        }
        QCOMPARE(written, QStringList());
    }

    void anUnknownDemoSceneShowsEverySampleAndSaysSo()
    {
        test::TempHome home;
        test::LogCapture log;
        test::ManualClock clock;
        Shell shell(std::make_unique<test::MemoryPreferences>(), clock, {true, QStringLiteral("pinned")});
        addFeatures(shell);
        shell.start();
        QCOMPARE(liveKinds(shell.activities()), (std::multiset<QString>{"download", "shelf", "timer"}));
        QVERIFY(log.contains("Norva: the demo scene pinned is unknown (showing all the samples)"));
    }
};

NORVA_TEST(ShellTest)
#include "tst_Shell.moc"
