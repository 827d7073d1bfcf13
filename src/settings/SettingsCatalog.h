#pragma once

#include "settings/SettingDescription.h"

#include <QList>

namespace norva {

// Every setting the settings window offers, grouped as people look for them. The rows name the
// preference keys as they are stored; the features read the same keys through the settings store.
namespace SettingsCatalog {

struct Group {
    QString id;
    QString title;
    QString summary; // one line under the group's title
};

const QList<Group>& groups();
const QList<SettingDescription>& settings();
QList<SettingDescription> inGroup(const QString& groupId);
const SettingDescription* find(const QString& key);

// Not a preference: the entry in the desktop's autostart folder is the truth of it.
inline const QString launchAtLoginKey = QStringLiteral("launchAtLogin");
// The display choice's options depend on the displays connected now.
inline const QString displayChoiceKey = QStringLiteral("displayChoice.v1");

} // namespace SettingsCatalog
} // namespace norva
