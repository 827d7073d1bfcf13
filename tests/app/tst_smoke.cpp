#include "TestMain.h"

#include <QtTest>

class Smoke : public QObject {
    Q_OBJECT
private slots:
    void builds() { QVERIFY(true); }
};
NORVA_TEST(Smoke)
#include "tst_smoke.moc"
