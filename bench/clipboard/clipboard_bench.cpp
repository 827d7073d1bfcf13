// Prints the clipboard history's figures: search over 10,000 clips, loading (and saving) a
// 10,000-clip history, and with --idle N the CPU that watching the clipboard takes over N seconds.
#include "app/Clock.h"
#include "app/SettingsStore.h"
#include "clipboard/ClipboardHistory.h"
#include "clipboard/ClipboardManager.h"
#include "clipboard/ClipboardPlatform.h"
#include "clipboard/ClipboardSettings.h"
#include "platform/linux/PreferencesFile.h"
#include "storage/StoredList.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QMimeData>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <sys/resource.h>

using namespace norva;

namespace {

constexpr int kClips = 10000;
constexpr int kRuns = 30;

const QStringList kWords{"meeting", "invoice", "deploy", "café",   "Straße", "release",  "quarterly",
                         "report",  "lunch",   "norva",  "rebase", "kernel", "function", "return",
                         "colour",  "shelf",   "notch",  "ticket", "alpha",  "beta",     "gamma",
                         "delta",   "sigma",   "Zürich", "Kraków", "naïve",  "résumé"};

QList<ClipboardItem> clips(int count)
{
    QRandomGenerator random(20261123);
    QList<ClipboardItem> list;
    const QDateTime start(QDate(2026, 11, 1), QTime(9, 0), Qt::UTC);
    for (int i = 0; i < count; ++i) {
        QStringList words;
        const int length = 4 + int(random.bounded(40));
        for (int w = 0; w < length; ++w)
            words << kWords.at(int(random.bounded(kWords.size())));
        words << QString::number(i);
        ClipboardItem clip;
        clip.id = QUuid::createUuid();
        clip.text = words.join(QLatin1Char(' '));
        clip.kind = ClipboardHistory::classify(*clip.text);
        clip.date = start.addSecs(i * 37);
        clip.contentHash = ClipboardHistory::stableHash(clip.text->toUtf8());
        clip.app = i % 3 == 0 ? std::optional<QString>(QStringLiteral("Firefox")) : std::nullopt;
        clip.pinned = i % 500 == 0;
        list.append(clip);
    }
    return list;
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

long peakKilobytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// A clipboard that never changes, for the load figures (no display needed).
class StillClipboard final : public ClipboardSource {
public:
    quint64 changeCount() const override { return 0; }
    QStringList formats() const override { return {}; }
    QByteArray data(const QString&) const override { return {}; }
    QString text() const override { return {}; }
    std::optional<QString> frontmostApplication() const override { return std::nullopt; }
    bool put(std::unique_ptr<QMimeData>) override { return false; }
};

void searchFigures()
{
    ClipboardHistory history;
    history.replaceAll(clips(kClips));
    std::printf("%-44s %10s\n", "clipboard: search over 10,000 clips", "median ms");
    QElapsedTimer timer;
    timer.start();
    const auto first = history.search(QStringLiteral("cafe"));
    std::printf("  %-42s %10.2f  (%lld found)\n", "first search (builds the word keys)",
                timer.nsecsElapsed() / 1e6, static_cast<long long>(first.size()));
    for (const QString& query :
         {QStringLiteral("invoice"), QStringLiteral("zurich krakow"), QStringLiteral("release notch 4242"),
          QStringLiteral("nothing-matches"), QStringLiteral("")}) {
        QList<double> runs;
        qsizetype found = 0;
        for (int run = 0; run < kRuns; ++run) {
            timer.restart();
            found = history.search(query).size();
            runs << timer.nsecsElapsed() / 1e6;
        }
        const QString label = QStringLiteral("\"") + query + QStringLiteral("\"");
        std::printf("  %-42s %10.2f  (%lld found)\n", qPrintable(label), median(runs),
                    static_cast<long long>(found));
    }
}

void loadFigures()
{
    QTemporaryDir home;
    const QString data = home.filePath(QStringLiteral("data"));
    QDir().mkpath(data);
    PreferencesFile preferences(home.filePath(QStringLiteral("preferences.toml")));
    SettingsStore store(preferences);
    ClipboardSettings settings(store);
    settings.setLimit(kClips);
    const QList<ClipboardItem> list = clips(kClips);
    QList<double> saves;
    for (int run = 0; run < 5; ++run) {
        StoredList stored(data + QStringLiteral("/clipboard.json"), QStringLiteral("Norva bench"),
                          systemClock());
        stored.setSnapshot([&list] {
            QJsonArray array;
            for (const auto& clip : list)
                array.append(clip.toJson());
            return array;
        });
        QElapsedTimer timer;
        timer.start();
        stored.saveNow();
        saves << timer.nsecsElapsed() / 1e6;
    }
    const qint64 bytes = QFileInfo(data + QStringLiteral("/clipboard.json")).size();
    QList<double> loads;
    StillClipboard still;
    for (int run = 0; run < 5; ++run) {
        ClipboardManager manager(still, settings, systemClock(), data);
        QEventLoop untilLoaded;
        QObject::connect(&manager, &ClipboardManager::loaded, &untilLoaded, &QEventLoop::quit);
        QElapsedTimer timer;
        timer.start();
        manager.start();
        untilLoaded.exec();
        loads << timer.nsecsElapsed() / 1e6;
        if (manager.items().size() != kClips)
            std::printf("  (loaded %lld clips, not %d)\n", static_cast<long long>(manager.items().size()),
                        kClips);
    }
    std::printf("%-44s %10s\n", "clipboard: a 10,000-clip history", "median ms");
    std::printf("  %-42s %10.1f  (%.1f MB file)\n", "save (JSON, atomic write)", median(saves), bytes / 1e6);
    std::printf("  %-42s %10.1f\n", "load at start (read, decode, check, trim)", median(loads));
    std::printf("  %-42s %10ld\n", "peak memory of the run (kB)", peakKilobytes());
}

int idleFigures(int seconds)
{
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        std::printf("--idle needs an X display (run under xvfb-run -a)\n");
        return 1;
    }
    QTemporaryDir home;
    PreferencesFile preferences(home.filePath(QStringLiteral("preferences.toml")));
    SettingsStore store(preferences);
    ClipboardSettings settings(store);
    auto source = Platform::makeClipboardSource();
    ClipboardManager manager(*source, settings, systemClock(), home.filePath(QStringLiteral("data")));
    manager.start();
    const double before = cpuSeconds();
    QElapsedTimer wall;
    wall.start();
    QTimer::singleShot(seconds * 1000, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
    const double used = cpuSeconds() - before;
    std::printf("%-44s %10s\n", "clipboard: watching, nothing copied", "");
    std::printf("  %-42s %10.1f\n", "wall seconds", wall.elapsed() / 1000.0);
    std::printf("  %-42s %10.3f\n", "CPU seconds used", used);
    std::printf("  %-42s %9.3f%%\n", "of one core", 100.0 * used / (wall.elapsed() / 1000.0));
    std::printf("  %-42s %10.1f\n", "polls per second",
                source->tellsEveryChange() ? 0.0 : 1.0 / ClipboardManager::kPollInterval.count());
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("NORVA_LOG_QUIET", "1");
    QGuiApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    const qsizetype idle = arguments.indexOf(QStringLiteral("--idle"));
    if (idle > 0)
        return idleFigures(idle + 1 < arguments.size() ? arguments.at(idle + 1).toInt() : 60);
    searchFigures();
    loadFigures();
    return 0;
}
