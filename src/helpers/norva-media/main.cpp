// norva-media: reads what MPRIS players on the session bus play and speaks Norva's now-playing
// adapter protocol.
//   norva-media stream [--micros] [--debounce=MS]   JSON lines, one per change
//   norva-media send N                              0 play, 1 pause, 2 toggle, 4 next, 5 previous
//   norva-media seek MICROS                         moves the playing player to that position
#include "MprisCommands.h"
#include "MprisProducer.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace {

int usage()
{
    std::fprintf(stderr, "usage: norva-media stream [--micros] [--debounce=MS] | send N | seek MICROS\n");
    return 2;
}

// Norva holds the other end of standard input: when it goes away the pipe closes and the
// producer ends with it instead of lingering.
void endWithParent(QCoreApplication& app)
{
    struct stat info {};
    if (fstat(STDIN_FILENO, &info) != 0 || !S_ISFIFO(info.st_mode))
        return;
    auto* notifier = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, &app);
    QObject::connect(notifier, &QSocketNotifier::activated, &app, [&app, notifier] {
        char buffer[256];
        if (read(STDIN_FILENO, buffer, sizeof buffer) <= 0) {
            notifier->setEnabled(false);
            app.quit();
        }
    });
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    std::signal(SIGPIPE, SIG_DFL);
    const QStringList arguments = app.arguments().mid(1);
    if (arguments.isEmpty())
        return usage();
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        std::fprintf(stderr, "norva-media: the session bus cannot be reached\n");
        return 1;
    }
    const QString verb = arguments.first();
    if (verb == QLatin1String("send") || verb == QLatin1String("seek")) {
        bool ok = false;
        const qint64 number = arguments.value(1).toLongLong(&ok);
        if (!ok)
            return usage();
        return verb == QLatin1String("send") ? norva::media::sendCommand(bus, int(number))
                                             : norva::media::seekTo(bus, number);
    }
    if (verb != QLatin1String("stream"))
        return usage();
    norva::media::MprisProducer::Options options;
    for (const QString& argument : arguments.mid(1)) {
        if (argument == QLatin1String("--micros"))
            options.micros = true;
        else if (argument.startsWith(QLatin1String("--debounce=")))
            options.debounceMs = qMax(0, argument.section(QLatin1Char('='), 1).toInt());
    }
    norva::media::MprisProducer producer(bus, options);
    if (!producer.start())
        return 1;
    endWithParent(app);
    return app.exec();
}
