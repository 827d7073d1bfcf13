#include "QmlViews.h"
#include "TestMain.h"

#include <QtTest>

using namespace norva;

// Each row of the settings window makes the control its kind calls for, through a Loader: a file
// whose components the Loader may not make (Qt 6.4 refuses bound ones) shows rows without controls.
class SettingRowTest : public QObject {
    Q_OBJECT
private slots:
    void eachKindGetsItsControl_data()
    {
        QTest::addColumn<QVariantMap>("row");
        QTest::addColumn<QString>("control");
        const QVariantList options{QVariantMap{{"value", "day"}, {"label", "A day"}}};
        QTest::newRow("toggle") << QVariantMap{{"kind", "toggle"}, {"value", true}} << "SettingSwitch";
        QTest::newRow("number") << QVariantMap{{"kind", "number"}, {"value", 50}, {"lowest", 5},
                                               {"highest", 1000},  {"step", 5},   {"unit", "clips"}}
                                << "SettingNumber";
        QTest::newRow("choice") << QVariantMap{{"kind", "choice"}, {"value", "day"}, {"options", options}}
                                << "SettingChoice";
        QTest::newRow("text") << QVariantMap{{"kind", "text"}, {"value", "~/Notes"}} << "SettingField";
    }
    void eachKindGetsItsControl()
    {
        QFETCH(QVariantMap, row);
        QFETCH(QString, control);
        row.insert(QStringLiteral("label"), QStringLiteral("A setting"));
        row.insert(QStringLiteral("explanation"), QStringLiteral("What it does."));
        QVariantMap colors;
        for (const char* name :
             {"accent", "field", "good", "hover", "line", "onAccent", "text", "textDim", "warn"})
            colors.insert(QString::fromLatin1(name), QStringLiteral("#808080"));
        test::QmlViews views;
        auto item = views.create(QStringLiteral("SettingRow.qml"), {{"row", row}, {"colors", colors}});
        QVERIFY(item);
        QCOMPARE(test::QmlViews::made(item.get(), control).size(), 1);
    }
};

NORVA_TEST(SettingRowTest)
#include "tst_settingRow.moc"
