#pragma once

#include "FakeClipboard.h"
#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "TempHome.h"

#include "app/SettingsStore.h"
#include "shelf/ShelfDesk.h"
#include "shelf/ShelfManager.h"
#include "shelf/ShelfPlatform.h"

#include <QDeadlineTimer>
#include <QtTest>

#include <memory>
#include <optional>

namespace norva::test {

// A running shelf in a temporary home with the desk that acts on it, over a stand-in clipboard and
// the desktop's file opener unless a test brings its own.
struct ShelfDeskRig {
    TempHome home;
    ManualClock clock;
    MemoryPreferences preferences;
    SettingsStore settings{preferences};
    FakeClipboard clipboard;
    ShelfManager shelf{settings, clock, home.file(QStringLiteral("data"))};
    std::shared_ptr<FileOpener> opener;
    ShelfDesk desk;

    explicit ShelfDeskRig(std::shared_ptr<FileOpener> fileOpener = Platform::makeFileOpener())
        : opener(std::move(fileOpener)), desk(shelf, clipboard, opener)
    {
        shelf.start();
    }
    ShelfDesk::Outcome perform(ShelfDesk::Action action, const QList<QUuid>& ids,
                               const QString& argument = {})
    {
        std::optional<ShelfDesk::Outcome> outcome;
        desk.perform(action, ids, argument, [&](ShelfDesk::Outcome o) { outcome = o; });
        QDeadlineTimer deadline(10000);
        while (!outcome && !deadline.hasExpired())
            QTest::qWait(5);
        return outcome.value_or(ShelfDesk::Outcome{QStringLiteral("no outcome in time"), true});
    }
    QUuid idOf(const QString& path) const
    {
        for (const auto& item : shelf.items()) {
            if (item.path == path)
                return item.id;
        }
        return {};
    }
};

} // namespace norva::test
