#include "MemoryPreferences.h"
#include "TempHome.h"
#include "TestMain.h"

#include "app/SettingsStore.h"
#include "settings/SettingsCatalog.h"
#include "settings/SettingsWindowModel.h"

#include <QSignalSpy>
#include <QtTest>

using namespace norva;
using Kind = SettingDescription::Kind;

namespace {

SettingsChecks quietChecks()
{
    return SettingsChecks({[](const QString&) { return QString(); }, [] { return false; },
                           [] { return QString(); },
                           [](const QString&) { return QStringLiteral("/nowhere"); }});
}

// A value of the setting other than the one it reads as now, and what the preferences then hold.
QVariant otherThan(const SettingDescription& row, const QVariant& now)
{
    switch (row.kind) {
    case Kind::toggle:
        return !now.toBool();
    case Kind::number:
        return now.toDouble() == row.highest ? QVariant(row.lowest) : QVariant(row.highest);
    case Kind::choice:
        for (const SettingOption& option : row.options) {
            if (option.value.isValid() && option.value != now)
                return option.value;
        }
        return {};
    case Kind::text:
    case Kind::folder:
        return now.toString() + QStringLiteral("/elsewhere");
    }
    return {};
}

QVariant stored(const SettingDescription& row, const QVariant& value)
{
    if (row.kind == Kind::number)
        return row.storesWholeNumbers() ? QVariant(qint64(value.toDouble())) : QVariant(value.toDouble());
    return value;
}

} // namespace

// Each settings group writes its own keys through the window and shows what another program (or a
// person with an editor) writes into the preferences.
class SettingsWindowTest : public QObject {
    Q_OBJECT
private slots:
    void everyGroupHasSettingsAndEverySettingAGroup()
    {
        QSet<QString> groups;
        for (const auto& group : SettingsCatalog::groups()) {
            groups << group.id;
            QVERIFY2(!SettingsCatalog::inGroup(group.id).isEmpty(), qPrintable(group.id));
        }
        QSet<QString> keys;
        for (const SettingDescription& row : SettingsCatalog::settings()) {
            QVERIFY2(groups.contains(row.group), qPrintable(row.key));
            QVERIFY2(!row.explanation.isEmpty() && !row.explanation.contains(QLatin1Char('\n')),
                     qPrintable(row.key));
            QVERIFY2(!keys.contains(row.key), qPrintable(row.key + QStringLiteral(" is listed twice")));
            keys << row.key;
        }
    }

    void eachSettingWritesItsKeyAndFollowsOutsideEdits_data()
    {
        QTest::addColumn<QString>("key");
        for (const SettingDescription& row : SettingsCatalog::settings()) {
            if (row.key != SettingsCatalog::launchAtLoginKey) // a file, not a key: below
                QTest::newRow(qPrintable(row.group + QLatin1Char('/') + row.key)) << row.key;
        }
    }
    void eachSettingWritesItsKeyAndFollowsOutsideEdits()
    {
        QFETCH(QString, key);
        const SettingDescription& row = *SettingsCatalog::find(key);
        test::MemoryPreferences preferences;
        SettingsStore store(preferences);
        SettingsWindowModel model(store, quietChecks(), {});
        model.setSection(row.group);

        const QVariant before = model.value(key);
        const QVariant wanted = otherThan(row, before);
        QVERIFY(wanted.isValid());
        model.setValue(key, wanted);
        QCOMPARE(preferences.value(key).value_or(QVariant()), stored(row, wanted));
        QCOMPARE(model.value(key), stored(row, wanted));

        // Another program writes the key back: the window's row shows it.
        QSignalSpy rowsChanged(&model, &SettingsWindowModel::rowsChanged);
        const QVariant original = stored(row, before);
        preferences.outsideChange(key, original.isValid() ? std::optional<QVariant>(original) : std::nullopt);
        QCOMPARE(rowsChanged.count(), 1);
        bool found = false;
        for (const QVariant& shown : model.rows()->rows()) {
            if (shown.toMap().value(QStringLiteral("key")) == key) {
                found = true;
                QCOMPARE(shown.toMap().value(QStringLiteral("value")), model.value(key));
            }
        }
        QVERIFY(found);
        QCOMPARE(model.value(key), before);
    }

    void numbersAreClampedToTheirRange_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<double>("typed");
        QTest::addColumn<QVariant>("kept");
        QTest::newRow("hover delay too long") << QStringLiteral("openHoverDelay") << 9.0 << QVariant(1.5);
        QTest::newRow("peek delay between steps")
            << QStringLiteral("notch.peekDelay.v1") << 0.013 << QVariant(0.02);
        QTest::newRow("clips, whole") << QStringLiteral("clipboardLimit") << 52.0 << QVariant(qint64(50));
        QTest::newRow("meeting lead below one")
            << QStringLiteral("meetings.leadMinutes.v1") << -3.0 << QVariant(qint64(1));
    }
    void numbersAreClampedToTheirRange()
    {
        QFETCH(QString, key);
        QFETCH(double, typed);
        QFETCH(QVariant, kept);
        test::MemoryPreferences preferences;
        SettingsStore store(preferences);
        SettingsWindowModel model(store, quietChecks(), {});
        model.setValue(key, typed);
        QCOMPARE(preferences.value(key).value_or(QVariant()), kept);
    }

    void theDesktopsUnitIsTheAbsentKey()
    {
        test::MemoryPreferences preferences;
        SettingsStore store(preferences);
        SettingsWindowModel model(store, quietChecks(), {});
        model.setValue(QStringLiteral("weather.unit.v1"), QStringLiteral("fahrenheit"));
        model.setValue(QStringLiteral("weather.unit.v1"), QVariant());
        QVERIFY(!preferences.value(QStringLiteral("weather.unit.v1")));
    }

    void theSectionIsRememberedAndAnUnknownOneFallsBack()
    {
        test::MemoryPreferences preferences;
        SettingsStore store(preferences);
        SettingsWindowModel model(store, quietChecks(), {});
        model.setSection(QStringLiteral("music"));
        QCOMPARE(preferences.value(QStringLiteral("settings.window.section.v1")).value_or(QVariant()),
                 QVariant(QStringLiteral("music")));
        preferences.outsideChange(QStringLiteral("settings.window.section.v1"),
                                  QStringLiteral("from-the-future"));
        QCOMPARE(model.section(), QStringLiteral("general"));
    }

    void aChosenDisplayThatIsAwayStaysOnOffer()
    {
        test::MemoryPreferences preferences;
        SettingsStore store(preferences);
        preferences.setValue(QStringLiteral("displayChoice.v1"), QStringLiteral("display:HDMI-1|Studio"));
        SettingsWindowModel model(store, quietChecks(), [] {
            return QList<DisplayInfo>{{"eDP-1", "Built-in display", true, false},
                                      {"HDMI-2", "DELL U2720Q", false, true}};
        });
        model.setSection(QStringLiteral("notch"));
        QStringList labels;
        for (const QVariant& shown : model.rows()->rows()) {
            if (shown.toMap().value(QStringLiteral("key")) == QStringLiteral("displayChoice.v1")) {
                QCOMPARE(shown.toMap().value(QStringLiteral("value")).toString(),
                         QStringLiteral("display:HDMI-1|Studio"));
                for (const QVariant& option : shown.toMap().value(QStringLiteral("options")).toList())
                    labels << option.toMap().value(QStringLiteral("label")).toString();
            }
        }
        QCOMPARE(labels, (QStringList{"Built-in", "All displays", "Built-in display", "DELL U2720Q, primary",
                                      "Studio (away)"}));
    }

    void launchAtLoginIsTheAutostartEntry()
    {
        test::TempHome home;
        test::MemoryPreferences preferences;
        SettingsStore store(preferences);
        SettingsWindowModel model(store, quietChecks(), {});
        model.setValue(SettingsCatalog::launchAtLoginKey, true);
        QVERIFY(QFile::exists(home.file(QStringLiteral(".config/autostart/norva.desktop"))));
        QCOMPARE(model.value(SettingsCatalog::launchAtLoginKey), QVariant(true));
        QVERIFY(!preferences.value(SettingsCatalog::launchAtLoginKey));
    }
};

NORVA_TEST(SettingsWindowTest)
#include "tst_SettingsWindow.moc"
