#pragma once

#include <QDBusConnection>
#include <QString>

#include <optional>

namespace norva::media {

// The MPRIS names and calls shared by the streaming producer and its one-shot commands.
namespace Mpris {
inline const QString prefix = QStringLiteral("org.mpris.MediaPlayer2.");
inline const QString objectPath = QStringLiteral("/org/mpris/MediaPlayer2");
inline const QString rootInterface = QStringLiteral("org.mpris.MediaPlayer2");
inline const QString playerInterface = QStringLiteral("org.mpris.MediaPlayer2.Player");
inline const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
} // namespace Mpris

// Every MPRIS player on the bus, by its well-known name.
QStringList playerNames(const QDBusConnection& bus);

// The player a one-shot command goes to: one that plays, else one that is paused, else any.
std::optional<QString> commandTarget(const QDBusConnection& bus);

// "send N": the system media-remote command numbers (0 play, 1 pause, 2 toggle, 3 stop, 4 next,
// 5 previous). Returns the process's exit status and prints the reason of a failure to stderr.
int sendCommand(const QDBusConnection& bus, int code);
// "seek MICROS": moves the player to that position.
int seekTo(const QDBusConnection& bus, qint64 micros);

} // namespace norva::media
