#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "TestMain.h"

#include "shell/Shell.h"

#include <QtTest>

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
    QList<QmlObject> qmlObjects() const override { return {{m_name, const_cast<JournalFeature*>(this)}}; }

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
        QStringList names;
        for (const QmlObject& object : shell.qmlObjects()) {
            QVERIFY(object.object);
            names << object.name;
        }
        QCOMPARE(names, (QStringList{"settings", "activities", "closedFace", "sample"}));
        QCOMPARE(shell.qmlObjects().last().object, &feature);
    }
};

NORVA_TEST(ShellTest)
#include "tst_Shell.moc"
