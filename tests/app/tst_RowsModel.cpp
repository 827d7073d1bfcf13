#include "TableRows.h"
#include "TestMain.h"

#include "app/RowsModel.h"

#include <QAbstractItemModelTester>
#include <QtTest>

using namespace norva;

namespace {

// "a b* c" is three rows keyed a, b and c; a star marks a row whose other values changed.
QVariantList rowsOf(const QString& spec, const QString& keyField)
{
    QVariantList rows;
    for (const QString& word : spec.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        QString key = word;
        key.remove(QLatin1Char('*'));
        QVariantMap row{{QStringLiteral("value"), word}};
        if (!keyField.isEmpty())
            row.insert(keyField, key);
        rows << row;
    }
    return rows;
}

// What a view heard from the model, one word per signal: "insert 0-1", "remove 2-2", "move 3>0",
// "change 1", "reset".
QStringList heard(RowsModel& model, const std::function<void()>& change)
{
    QStringList events;
    QObject::connect(&model, &QAbstractItemModel::rowsInserted, &model,
                     [&](const QModelIndex&, int first, int last) {
                         events << QStringLiteral("insert %1-%2").arg(first).arg(last);
                     });
    QObject::connect(&model, &QAbstractItemModel::rowsRemoved, &model,
                     [&](const QModelIndex&, int first, int last) {
                         events << QStringLiteral("remove %1-%2").arg(first).arg(last);
                     });
    QObject::connect(&model, &QAbstractItemModel::rowsMoved, &model,
                     [&](const QModelIndex&, int from, int, const QModelIndex&, int to) {
                         events << QStringLiteral("move %1>%2").arg(from).arg(to);
                     });
    QObject::connect(&model, &QAbstractItemModel::dataChanged, &model,
                     [&](const QModelIndex& top, const QModelIndex&) {
                         events << QStringLiteral("change %1").arg(top.row());
                     });
    QObject::connect(&model, &QAbstractItemModel::modelReset, &model,
                     [&] { events << QStringLiteral("reset"); });
    change();
    QObject::disconnect(&model, nullptr, &model, nullptr);
    return events;
}

} // namespace

class RowsModelTest : public QObject {
    Q_OBJECT
private slots:
    void aNewListIsLaidOverTheShownRowsByKey_data()
    {
        QTest::addColumn<QString>("keyField");
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("events");
        using test::textRow;
        textRow("the same list says nothing", {"id", "a b c", "a b c", ""});
        textRow("a changed row is its own change", {"id", "a b c", "a b* c", "change 1"});
        textRow("a new clip on top", {"id", "a b c", "n a b c", "insert 0-0"});
        textRow("a copied clip moves to the top", {"id", "a b c", "c a b", "move 2>0"});
        textRow("gone rows go in runs", {"id", "a b c d e", "a e", "remove 1-3"});
        textRow("remove, insert and move at once",
                {"id", "a b c d", "d n a*", "remove 1-2; move 1>0; insert 1-1; change 2"});
        textRow("from empty", {"id", "", "a b", "insert 0-1"});
        textRow("to empty", {"id", "a b", "", "remove 0-1"});
        textRow("keys twice cannot be told apart", {"id", "a b", "a a", "reset"});
        textRow("by position: changed, then the tail", {"", "a b c", "a x", "remove 2-2; change 1"});
        textRow("by position: a longer list", {"", "a", "a b c", "insert 1-2"});
    }
    void aNewListIsLaidOverTheShownRowsByKey()
    {
        QFETCH(QString, keyField);
        QFETCH(QString, before);
        QFETCH(QString, after);
        QFETCH(QString, events);
        RowsModel model(keyField);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.setRows(rowsOf(before, keyField));
        QSignalSpy counted(&model, &RowsModel::countChanged);
        QCOMPARE(heard(model, [&] { model.setRows(rowsOf(after, keyField)); }).join(QStringLiteral("; ")),
                 events);
        QCOMPARE(model.rows(), rowsOf(after, keyField));
        QCOMPARE(counted.size(), rowsOf(before, keyField).size() == model.rows().size() ? 0 : 1);
        for (int row = 0; row < model.count(); ++row)
            QCOMPARE(model.data(model.index(row), Qt::UserRole), model.rows().at(row));
    }

    void aReorderingTooLargeToMoveRowByRowResetsTheView()
    {
        RowsModel model;
        QStringList keys;
        for (int i = 0; i < 200; ++i)
            keys << QString::number(i);
        model.setRows(rowsOf(keys.join(' '), QStringLiteral("id")));
        std::reverse(keys.begin(), keys.end());
        const QStringList events =
            heard(model, [&] { model.setRows(rowsOf(keys.join(' '), QStringLiteral("id"))); });
        QVERIFY(events.contains(QStringLiteral("reset")));
        QCOMPARE(model.get(0).value(QStringLiteral("id")).toString(), QStringLiteral("199"));
    }
};

NORVA_TEST(RowsModelTest)
#include "tst_RowsModel.moc"
