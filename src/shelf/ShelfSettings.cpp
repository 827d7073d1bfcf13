#include "shelf/ShelfSettings.h"

#include "app/SettingsStore.h"

namespace norva {

const QString ShelfSettings::kScreenshotsKey = QStringLiteral("autoShelfScreenshots");
const QString ShelfSettings::kOpenOnDropKey = QStringLiteral("shelf.openOnDrop.v1");
const QString ShelfSettings::kKeepKey = QStringLiteral("shelf.keep.v1");

namespace {

const QList<std::pair<QString, ShelfKeep>>& keepCases()
{
    static const QList<std::pair<QString, ShelfKeep>> cases = {
        {QStringLiteral("forever"), ShelfKeep::forever},
        {QStringLiteral("day"), ShelfKeep::day},
        {QStringLiteral("week"), ShelfKeep::week}};
    return cases;
}

} // namespace

ShelfSettings::ShelfSettings(SettingsStore& store, QObject* parent) : QObject(parent), m_store(store)
{
    // The other two are read when they are used; only a new keeping time has work to do at once.
    m_store.follow({kKeepKey}, this, [this](const QString&) { emit keepChanged(); });
}

bool ShelfSettings::screenshots() const
{
    return m_store.flag(kScreenshotsKey, true);
}

void ShelfSettings::setScreenshots(bool on)
{
    m_store.write(on, kScreenshotsKey);
}

bool ShelfSettings::openOnDrop() const
{
    return m_store.flag(kOpenOnDropKey, true);
}

ShelfKeep ShelfSettings::keep() const
{
    return m_store.storedChoice(kKeepKey, QStringLiteral("forever, a day or a week"), keepCases())
        .value_or(ShelfKeep::forever);
}

void ShelfSettings::setKeep(ShelfKeep keep)
{
    for (const auto& [text, value] : keepCases()) {
        if (value == keep)
            m_store.write(text, kKeepKey);
    }
}

} // namespace norva
