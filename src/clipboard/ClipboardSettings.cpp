#include "clipboard/ClipboardSettings.h"

#include "app/SettingsStore.h"

#include <algorithm>

namespace norva {

const QString ClipboardSettings::kHistoryKey = QStringLiteral("clipboard.history.v1");
const QString ClipboardSettings::kLimitKey = QStringLiteral("clipboardLimit");

ClipboardSettings::ClipboardSettings(SettingsStore& store, QObject* parent) : QObject(parent), m_store(store)
{
    m_store.follow({kHistoryKey, kLimitKey}, this, [this](const QString& key) {
        if (key == kHistoryKey)
            emit historyChanged();
        else
            emit limitChanged();
    });
}

bool ClipboardSettings::history() const
{
    return m_store.flag(kHistoryKey, true);
}

void ClipboardSettings::setHistory(bool on)
{
    m_store.write(on, kHistoryKey);
}

int ClipboardSettings::limit() const
{
    const auto stored = m_store.storedInteger(kLimitKey);
    return stored ? static_cast<int>(std::clamp<qint64>(*stored, -1, kMostLimit)) : kDefaultLimit;
}

void ClipboardSettings::setLimit(int limit)
{
    m_store.write(qint64(limit), kLimitKey);
}

} // namespace norva
