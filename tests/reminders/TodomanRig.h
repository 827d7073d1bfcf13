#pragma once

#include "ManualClock.h"
#include "TempHome.h"

#include "reminders/RemindersStore.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QSignalSpy>
#include <QtTest>

namespace norva::test {

// A temporary home with calendar folders at ~/cals that todoman is set up to use, for tests that
// check Norva and todoman see the same to-dos.
struct TodomanRig {
    TempHome home;
    QString root = home.file(QStringLiteral("cals"));

    TodomanRig()
    {
        home.write(QStringLiteral(".config/todoman/config.py"),
                   "path = \"~/cals/*\"\ndate_format = \"%Y-%m-%d\"\ntime_format = \"%H:%M\"\n"
                   "default_list = \"work\"\n");
        QDir().mkpath(root + QStringLiteral("/work"));
        QDir().mkpath(root + QStringLiteral("/home"));
    }

    // Runs todoman with these arguments; its standard output.
    QByteArray todoman(const QStringList& arguments) const
    {
        QProcess process;
        process.setWorkingDirectory(home.path());
        process.start(QStringLiteral("todoman"), arguments);
        if (!process.waitForFinished(30000) || process.exitCode() != 0)
            qWarning() << "todoman" << arguments << process.readAllStandardError();
        return process.readAllStandardOutput();
    }
    // todoman's own list of every to-do (done ones too) as JSON objects.
    QJsonArray todomanList() const
    {
        return QJsonDocument::fromJson(todoman({QStringLiteral("--porcelain"), QStringLiteral("list"),
                                                QStringLiteral("--status"), QStringLiteral("ANY")}))
            .array();
    }
    static bool hasTodoman() { return !QStandardPaths::findExecutable(QStringLiteral("todoman")).isEmpty(); }
};

// Waits until the store has read the folders again after a change by another program: the folder
// event arms the watch's settle on the manual clock, which the test then lets pass.
inline bool settleStore(ManualClock& clock, QSignalSpy& changed)
{
    const int before = changed.count();
    if (!QTest::qWaitFor([&] { return clock.pendingCount() > 0; }, 5000))
        return false;
    clock.advance(Seconds(0.05));
    return QTest::qWaitFor([&] { return changed.count() > before; }, 5000);
}

} // namespace norva::test
