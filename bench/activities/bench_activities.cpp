// Cost of an upsert storm on the live-activity coordinator: 10,000 updates spread over 20
// activities, as a burst of download progress and agent steps would send them. Prints a table.
#include "ManualClock.h"

#include "activities/ClosedFaceModel.h"
#include "activities/LiveActivityCoordinator.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cstdio>

using namespace norva;

namespace {

constexpr int kUpdates = 10000;
constexpr int kActivities = 20;
constexpr int kRounds = 5; // the best round is reported, the machine being shared

struct Figures {
    double totalMs = 0;
    double perUpsertUs = 0;
    int faceChanges = 0;
};

Figures storm(bool withFace, bool transient)
{
    Figures best;
    for (int round = 0; round < kRounds; ++round) {
        test::ManualClock clock;
        LiveActivityCoordinator coordinator(clock);
        std::unique_ptr<ClosedFaceModel> face;
        int changes = 0;
        if (withFace) {
            face = std::make_unique<ClosedFaceModel>(coordinator);
            QObject::connect(face.get(), &ClosedFaceModel::changed, [&] { ++changes; });
        }
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < kUpdates; ++i) {
            const int which = i % kActivities;
            LiveActivity activity;
            activity.id = QStringLiteral("download-%1").arg(which);
            activity.priority = which % 3;
            activity.content = ActivityContent::download(ActivityContent::DownloadState::running);
            activity.text.title = QStringLiteral("file-%1.zip").arg(which);
            activity.text.progress = double(i) / kUpdates;
            activity.text.value = QString::number(i * 100 / kUpdates) + QLatin1Char('%');
            if (transient)
                activity.hold = 2.0;
            coordinator.upsert(std::move(activity));
        }
        const double ms = timer.nsecsElapsed() / 1e6;
        if (round == 0 || ms < best.totalMs)
            best = {ms, ms * 1000.0 / kUpdates, changes};
    }
    return best;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    qputenv("NORVA_LOG_QUIET", "1");
    std::printf("%d upserts over %d activities (best of %d rounds)\n", kUpdates, kActivities, kRounds);
    std::printf("%-34s %10s %12s %13s\n", "case", "total ms", "us / upsert", "face changes");
    const struct {
        const char* name;
        bool face;
        bool transient;
    } cases[] = {
        {"coordinator alone", false, false},
        {"coordinator alone, with holds", false, true},
        {"with the closed face's model", true, false},
        {"with the face's model and holds", true, true},
    };
    for (const auto& c : cases) {
        const Figures f = storm(c.face, c.transient);
        std::printf("%-34s %10.2f %12.3f %13d\n", c.name, f.totalMs, f.perUpsertUs, f.faceChanges);
    }
    return 0;
}
