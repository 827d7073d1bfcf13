#include "LogCapture.h"
#include "TempHome.h"
#include "TestMain.h"

#include "app/Log.h"

#include <QFile>
#include <QtTest>

using namespace norva;
using norva::test::LogCapture;
using norva::test::TempHome;

namespace {

// The sentences of a log file, without their time stamps.
QStringList sentences(const QString& path)
{
    QStringList lines;
    for (const QByteArray& line : TempHome::read(path).split('\n')) {
        if (!line.isEmpty())
            lines << QString::fromUtf8(line.mid(line.indexOf(' ') + 1));
    }
    return lines;
}

} // namespace

class LogTest : public QObject {
    Q_OBJECT
private slots:
    void cleanup() { closeLogFile(); }

    void aRepeatedLineIsWrittenOncePerStreakAndEveryListenerHearsIt()
    {
        TempHome home;
        const QString path = home.file(QStringLiteral("norva.log"));
        setLogFile(path);
        LogCapture log;
        const QString full =
            QStringLiteral("Norva clipboard: let go of 1 clip past the limit of 50 (Settings: Keep up to)");
        logLine(QStringLiteral("Norva: launched (version 0.1.0)"));
        for (int copy = 0; copy < 2000; ++copy)
            logLine(full);
        logLine(QStringLiteral("Norva shelf: let go of 1 item, the oldest (the shelf holds 100)"));
        logLine(full);
        logLine(full);
        closeLogFile();
        QCOMPARE(log.count(full), 2002);
        QCOMPARE(sentences(path),
                 (QStringList{"Norva: launched (version 0.1.0)", full,
                              "Norva: the line above came 1999 times more",
                              "Norva shelf: let go of 1 item, the oldest (the shelf holds 100)", full,
                              "Norva: the line above came 1 time more"}));
    }

    void aFullLogMovesAsideAndOnlyOnePreviousFileIsKept()
    {
        TempHome home;
        const QString path = home.file(QStringLiteral("norva.log"));
        const qint64 limit = 4096;
        setLogFile(path, limit);
        for (int n = 0; n < 300; ++n)
            logLine(QStringLiteral("Norva agents: line %1 of a busy afternoon").arg(n));
        closeLogFile();
        QVERIFY(QFile(path).size() < limit);
        QVERIFY(QFile(path + QStringLiteral(".1")).size() >= limit);
        QVERIFY(!QFile::exists(path + QStringLiteral(".2")));
        QCOMPARE(sentences(path).last(), QStringLiteral("Norva agents: line 299 of a busy afternoon"));
        const QStringList previous = sentences(path + QStringLiteral(".1"));
        const int firstOfCurrent = sentences(path).first().section(QLatin1Char(' '), 3, 3).toInt();
        QCOMPARE(previous.last().section(QLatin1Char(' '), 3, 3).toInt(), firstOfCurrent - 1);
    }
};

NORVA_TEST(LogTest)
#include "tst_Log.moc"
