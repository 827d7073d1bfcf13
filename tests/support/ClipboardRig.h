#pragma once

#include "FakeClipboard.h"
#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "TempHome.h"

#include "app/SettingsStore.h"
#include "clipboard/ClipboardManager.h"
#include "clipboard/ClipboardSettings.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace norva::test {

// One running manager over a fake clipboard, in a temporary home.
struct ClipboardRig {
    TempHome home;
    ManualClock clock;
    MemoryPreferences preferences;
    SettingsStore store{preferences};
    ClipboardSettings settings{store};
    FakeClipboard clipboard;
    std::unique_ptr<ClipboardManager> manager;

    QString data() const { return home.file(QStringLiteral("data")); }
    void start()
    {
        manager = std::make_unique<ClipboardManager>(clipboard, settings, clock, data());
        QSignalSpy loaded(manager.get(), &ClipboardManager::loaded);
        manager->start();
        QVERIFY(loaded.wait(5000));
    }
    // The clipboard changes, and the next poll sees it.
    void copy(const QMap<QString, QByteArray>& content, std::optional<QString> app = std::nullopt)
    {
        clipboard.set(content, std::move(app));
        clock.advance(ClipboardManager::kPollInterval);
    }
    void copyText(const QString& text) { copy({{QStringLiteral("text/plain"), text.toUtf8()}}); }
    void copyPicture(const QByteArray& bytes)
    {
        QSignalSpy handled(manager.get(), &ClipboardManager::imageCopyHandled);
        copy({{QStringLiteral("image/png"), bytes}});
        QVERIFY(handled.wait(5000));
    }
    QStringList pictures() const
    {
        return QDir(data() + QStringLiteral("/ClipboardImages")).entryList(QDir::Files);
    }
    void writeList(const QJsonArray& array)
    {
        home.write(QStringLiteral("data/clipboard.json"), QJsonDocument(array).toJson());
    }
};

} // namespace norva::test
