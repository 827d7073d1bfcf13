#pragma once

#include <QString>

// The preference keys of the shell and of the features that have no settings type of their own yet,
// character for character as they are stored. A feature with its own settings type (such as
// ClipboardSettings, AgentSettings) keeps its keys there.
namespace norva::SettingsKeys {

inline const QString openOnHover = QStringLiteral("openOnHover.v5");
inline const QString openHoverDelay = QStringLiteral("openHoverDelay");
inline const QString showMenuBarIcon = QStringLiteral("showMenuBarIcon");
inline const QString fullscreenGuard = QStringLiteral("fullscreenGuard");
inline const QString hoverHaptics = QStringLiteral("hoverHaptics");
inline const QString displayChoice = QStringLiteral("displayChoice.v1");
inline const QString showOnAllDisplays = QStringLiteral("showOnAllDisplays");

inline const QString musicLeft = QStringLiteral("music.left.v1");
inline const QString musicRight = QStringLiteral("music.right.v1");
inline const QString peekOnHover = QStringLiteral("notch.peekOnHover.v1");
inline const QString peekDelay = QStringLiteral("notch.peekDelay.v1");
inline const QString notchMotion = QStringLiteral("notch.motion.v1");

// Keys of the same preferences that the store does not watch; their owners read them directly.
inline const QString hasLaunchedBefore = QStringLiteral("hasLaunchedBefore");
inline const QString quotaWarnedUntil = QStringLiteral("quota.warnedUntil");
inline const QString hiddenNotchDrawn = QStringLiteral("install.hiddenNotchDrawn.v1");
// Norva's own: whether a timer that completes plays the sound theme's "complete" (default on).
inline const QString timerSound = QStringLiteral("timers.sound.v1");
// Norva's own: the calendar folders' root (empty: where todoman or khal keep it), and the to-dos'
// manual order and trash, each a JSON text since the preferences hold plain values only.
inline const QString calendarsFolder = QStringLiteral("calendars.folder.v1");
inline const QString todosOrder = QStringLiteral("todos.order.v1");
inline const QString todosTrash = QStringLiteral("todos.trash.v1");

} // namespace norva::SettingsKeys
