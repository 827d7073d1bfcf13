// Measures the CPU that following a playing track costs: norva-media streaming from mpv, and this
// process running the adapter backend and the music manager (position ticks included), over a
// run of N seconds (60 by default). Prints one table.
//   build/bench/media/bench_media [seconds]
#include "MprisPlayerRig.h"

#include "media/MediaRemoteAdapterBackend.h"
#include "media/MusicManager.h"

#include <QDir>
#include <QGuiApplication>
#include <QTimer>

#include <cstdio>
#include <unistd.h>

using namespace norva;

namespace {

// User plus system CPU seconds of a process, from /proc/<pid>/stat.
double cpuSeconds(qint64 pid)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray stat = file.readAll();
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    // After the name: state(0) ppid(1) ... utime(11) stime(12)
    return (fields.value(11).toLongLong() + fields.value(12).toLongLong()) / double(sysconf(_SC_CLK_TCK));
}

qint64 childNamed(const QByteArray& name)
{
    for (const QString& entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        bool isPid = false;
        const qint64 pid = entry.toLongLong(&isPid);
        if (!isPid)
            continue;
        QFile file(QStringLiteral("/proc/%1/stat").arg(pid));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray stat = file.readAll();
        const QByteArray comm =
            stat.mid(stat.indexOf('(') + 1, stat.lastIndexOf(')') - stat.indexOf('(') - 1);
        const qint64 ppid = stat.mid(stat.lastIndexOf(')') + 2).split(' ').value(1).toLongLong();
        if (comm == name && ppid == getpid())
            return pid;
    }
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    QGuiApplication app(argc, argv);
    const int seconds = argc > 1 ? QByteArray(argv[1]).toInt() : 60;
    if (!test::MprisPlayerRig::available()) {
        std::fprintf(stderr, "mpv with its MPRIS plugin is needed\n");
        return 1;
    }
    test::MprisPlayerRig player;
    if (!player.start())
        return 1;
    const auto command = MediaRemoteAdapterBackend::Locator::locate();
    if (!command) {
        std::fprintf(stderr, "norva-media was not found; build it first\n");
        return 1;
    }
    MusicManager::Backends backends;
    backends.adapter = [&]() -> std::unique_ptr<MediaBackend> {
        return std::make_unique<MediaRemoteAdapterBackend>(systemClock(), *command);
    };
    MusicManager music(systemClock(), nullptr, backends);
    int snapshots = 0;
    int ticks = 0;
    QObject::connect(&music, &MusicManager::snapshotChanged, [&] { ++snapshots; });
    QObject::connect(&music, &MusicManager::positionChanged, [&] { ++ticks; });
    music.followPosition(true); // as the music page does while it is open: the ticks are measured too
    music.start();

    // Let the first lines arrive before the clock starts.
    QTimer::singleShot(2000, &app, [&] {
        const qint64 producer = childNamed("norva-media");
        const double producerStart = cpuSeconds(producer);
        const double selfStart = cpuSeconds(getpid());
        const double playerStart = cpuSeconds(player.playerPid());
        const int snapshotsStart = snapshots;
        QTimer::singleShot(
            seconds * 1000, &app, [&, producer, producerStart, selfStart, playerStart, snapshotsStart] {
                const double producerCpu = cpuSeconds(producer) - producerStart;
                const double selfCpu = cpuSeconds(getpid()) - selfStart;
                const double playerCpu = cpuSeconds(player.playerPid()) - playerStart;
                std::printf("track playing for %d s, title \"%s\"\n", seconds, qPrintable(music.title()));
                std::printf("%-34s %10s %10s\n", "process", "CPU s", "% of core");
                auto row = [seconds](const char* name, double cpu) {
                    std::printf("%-34s %10.2f %10.3f\n", name, cpu, 100.0 * cpu / seconds);
                };
                row("norva-media (producer)", producerCpu);
                row("adapter backend + MusicManager", selfCpu);
                row("mpv (the player, for scale)", playerCpu);
                std::printf("snapshots received: %d, position ticks: %d\n", snapshots - snapshotsStart,
                            ticks);
                music.stop();
                app.quit();
            });
    });
    return app.exec();
}
