#include <QtTest>
class Smoke : public QObject { Q_OBJECT private slots: void ok() { QVERIFY(true); } };
QTEST_GUILESS_MAIN(Smoke)
#include "tst_smoke.moc"
