#include "activities/ActivitySettings.h"

#include "activities/ActivityKinds.h"
#include "app/SettingsStore.h"

namespace norva {

ActivitySettings::ActivitySettings(SettingsStore& store, QObject* parent) : QObject(parent), m_store(store)
{
    QStringList keys;
    for (const QString& word : switchWords())
        keys << keyFor(word);
    // Only its own keys wake the switches, from Norva or from an edit outside it.
    m_store.follow(keys, this, [this](const QString&) { emit switchesChanged(); });
}

QString ActivitySettings::keyFor(const QString& switchWord)
{
    return QStringLiteral("activities.") + switchWord + QStringLiteral(".v1");
}

QStringList ActivitySettings::switchWords()
{
    QStringList words;
    for (const ActivityKind& row : ActivityKinds::table) {
        if (row.switchWord && !words.contains(QLatin1String(row.switchWord)))
            words << QString::fromLatin1(row.switchWord);
    }
    return words;
}

bool ActivitySettings::allows(ActivityContent::Kind kind) const
{
    const char* word = ActivityKinds::of(kind).switchWord;
    return !word || isOn(QString::fromLatin1(word));
}

bool ActivitySettings::isOn(const QString& switchWord) const
{
    return m_store.flag(keyFor(switchWord), true);
}

void ActivitySettings::setOn(const QString& switchWord, bool on)
{
    m_store.write(on, keyFor(switchWord));
}

} // namespace norva
