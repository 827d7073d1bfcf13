#include "MprisCommands.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>

#include <cstdio>

namespace norva::media {
namespace {

QVariant property(const QDBusConnection& bus, const QString& name, const QString& interface, const QString& key)
{
    QDBusMessage call = QDBusMessage::createMethodCall(name, Mpris::objectPath, Mpris::propertiesInterface,
                                                       QStringLiteral("Get"));
    call << interface << key;
    const QDBusMessage reply = bus.call(call);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return {};
    return reply.arguments().first().value<QDBusVariant>().variant();
}

int fail(const QString& reason)
{
    std::fprintf(stderr, "norva-media: %s\n", qPrintable(reason));
    return 1;
}

int call(const QDBusConnection& bus, const QString& name, const QString& method, const QVariantList& arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(name, Mpris::objectPath, Mpris::playerInterface, method);
    message.setArguments(arguments);
    const QDBusMessage reply = bus.call(message);
    if (reply.type() == QDBusMessage::ErrorMessage)
        return fail(method + QStringLiteral(" failed: ") + reply.errorMessage());
    return 0;
}

} // namespace

QStringList playerNames(const QDBusConnection& bus)
{
    QStringList players;
    const QDBusReply<QStringList> names = bus.interface()->registeredServiceNames();
    for (const QString& name : names.value())
        if (name.startsWith(Mpris::prefix))
            players << name;
    players.sort();
    return players;
}

std::optional<QString> commandTarget(const QDBusConnection& bus)
{
    const QStringList players = playerNames(bus);
    std::optional<QString> paused;
    for (const QString& name : players) {
        const QString status = property(bus, name, Mpris::playerInterface, QStringLiteral("PlaybackStatus")).toString();
        if (status == QLatin1String("Playing"))
            return name;
        if (status == QLatin1String("Paused") && !paused)
            paused = name;
    }
    if (paused)
        return paused;
    if (!players.isEmpty())
        return players.first();
    return std::nullopt;
}

int sendCommand(const QDBusConnection& bus, int code)
{
    static const char* const methods[] = {"Play", "Pause", "PlayPause", "Stop", "Next", "Previous"};
    if (code < 0 || code >= int(std::size(methods)))
        return fail(QStringLiteral("no command has the number %1").arg(code));
    const auto target = commandTarget(bus);
    if (!target)
        return fail(QStringLiteral("no player is on the session bus"));
    return call(bus, *target, QLatin1String(methods[code]), {});
}

int seekTo(const QDBusConnection& bus, qint64 micros)
{
    const auto target = commandTarget(bus);
    if (!target)
        return fail(QStringLiteral("no player is on the session bus"));
    const QVariantMap metadata =
        qdbus_cast<QVariantMap>(property(bus, *target, Mpris::playerInterface, QStringLiteral("Metadata")));
    const QVariant trackId = metadata.value(QStringLiteral("mpris:trackid"));
    if (trackId.isValid()) {
        const QDBusObjectPath path = trackId.canConvert<QDBusObjectPath>() ? trackId.value<QDBusObjectPath>()
                                                                            : QDBusObjectPath(trackId.toString());
        return call(bus, *target, QStringLiteral("SetPosition"),
                    {QVariant::fromValue(path), QVariant::fromValue(micros)});
    }
    // A player without track ids still takes a relative seek.
    const qint64 position = property(bus, *target, Mpris::playerInterface, QStringLiteral("Position")).toLongLong();
    return call(bus, *target, QStringLiteral("Seek"), {QVariant::fromValue(micros - position)});
}

} // namespace norva::media
