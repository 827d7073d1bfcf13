#include "MprisProducer.h"

#include "MprisCommands.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QDBusVariant>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QUrl>

#include <cstdio>

namespace norva::media {
namespace {

constexpr double kMicros = 1'000'000.0;

QVariantMap unpackMap(const QVariant& value)
{
    if (value.canConvert<QDBusArgument>())
        return qdbus_cast<QVariantMap>(value.value<QDBusArgument>());
    return value.toMap();
}

QString joined(const QVariant& value)
{
    if (value.canConvert<QDBusArgument>())
        return qdbus_cast<QStringList>(value.value<QDBusArgument>()).join(QStringLiteral(", "));
    if (value.userType() == QMetaType::QStringList)
        return value.toStringList().join(QStringLiteral(", "));
    return value.toString();
}

} // namespace

MprisProducer::MprisProducer(QDBusConnection bus, Options options, QObject* parent)
    : QObject(parent), m_bus(std::move(bus)), m_options(options)
{
}

bool MprisProducer::start()
{
    if (!m_bus.isConnected())
        return false;
    m_bus.connect(QString(), Mpris::objectPath, Mpris::propertiesInterface, QStringLiteral("PropertiesChanged"), this,
                  SLOT(onPlayerSignal(QDBusMessage)));
    m_bus.connect(QString(), Mpris::objectPath, Mpris::playerInterface, QStringLiteral("Seeked"), this,
                  SLOT(onPlayerSignal(QDBusMessage)));
    m_bus.connect(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                  QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"), this,
                  SLOT(onNameOwnerChanged(QString, QString, QString)));
    for (const QString& name : playerNames(m_bus))
        addPlayer(name, m_bus.interface()->serviceOwner(name).value());
    emitState();
    return true;
}

void MprisProducer::addPlayer(const QString& busName, const QString& owner)
{
    Player player;
    player.busName = busName;
    player.owner = owner;
    player.lastActive = ++m_activity; // a player that just appeared is the most recent
    m_players.insert(busName, player);
}

void MprisProducer::onNameOwnerChanged(const QString& name, const QString& oldOwner, const QString& newOwner)
{
    if (!name.startsWith(Mpris::prefix))
        return;
    Q_UNUSED(oldOwner)
    if (newOwner.isEmpty())
        m_players.remove(name);
    else
        addPlayer(name, newOwner);
    scheduleEmit();
}

void MprisProducer::onPlayerSignal(const QDBusMessage& message)
{
    for (Player& player : m_players) {
        if (player.owner == message.service()) {
            player.dirty = true;
            scheduleEmit();
        }
    }
}

void MprisProducer::scheduleEmit()
{
    if (m_emitWork.isArmed())
        return; // a burst of signals makes one line
    m_emitWork = systemClock().after(Seconds(m_options.debounceMs / 1000.0), [this] { emitState(); });
}

void MprisProducer::refresh(Player& player)
{
    player.dirty = false;
    QDBusMessage call = QDBusMessage::createMethodCall(player.busName, Mpris::objectPath, Mpris::propertiesInterface,
                                                       QStringLiteral("GetAll"));
    call << Mpris::playerInterface;
    const QDBusMessage reply = m_bus.call(call, QDBus::Block, callTimeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return;
    const QString wasStatus = player.properties.value(QStringLiteral("PlaybackStatus")).toString();
    player.properties = unpackMap(reply.arguments().first());
    player.positionMicros = player.properties.value(QStringLiteral("Position")).toLongLong();
    player.positionAt = systemClock().now();
    const QString status = player.properties.value(QStringLiteral("PlaybackStatus")).toString();
    if (status == QLatin1String("Playing") && wasStatus != status)
        player.lastActive = ++m_activity;
    if (player.desktopEntry.isEmpty()) {
        QDBusMessage entry = QDBusMessage::createMethodCall(player.busName, Mpris::objectPath,
                                                            Mpris::propertiesInterface, QStringLiteral("Get"));
        entry << Mpris::rootInterface << QStringLiteral("DesktopEntry");
        const QDBusMessage answer = m_bus.call(entry, QDBus::Block, callTimeoutMs);
        if (answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty())
            player.desktopEntry = answer.arguments().first().value<QDBusVariant>().variant().toString();
        if (player.desktopEntry.isEmpty()) // e.g. "org.mpris.MediaPlayer2.vlc.instance42" -> "vlc"
            player.desktopEntry = player.busName.mid(Mpris::prefix.size()).section(QLatin1Char('.'), 0, 0);
    }
}

const MprisProducer::Player* MprisProducer::chosen() const
{
    const Player* best = nullptr;
    for (const Player& player : m_players) {
        const bool playing = player.properties.value(QStringLiteral("PlaybackStatus")) == QLatin1String("Playing");
        const bool bestPlaying =
            best && best->properties.value(QStringLiteral("PlaybackStatus")) == QLatin1String("Playing");
        if (!best || (playing && !bestPlaying) || (playing == bestPlaying && player.lastActive > best->lastActive))
            best = &player;
    }
    return best;
}

QJsonObject MprisProducer::payloadOf(const Player& player)
{
    QJsonObject payload;
    const QVariantMap metadata = unpackMap(player.properties.value(QStringLiteral("Metadata")));
    const QString title = metadata.value(QStringLiteral("xesam:title")).toString();
    if (title.isEmpty())
        return payload; // nothing plays in this player
    payload.insert(QStringLiteral("title"), title);
    const QString artist = joined(metadata.value(QStringLiteral("xesam:artist")));
    if (!artist.isEmpty())
        payload.insert(QStringLiteral("artist"), artist);
    const QString album = metadata.value(QStringLiteral("xesam:album")).toString();
    if (!album.isEmpty())
        payload.insert(QStringLiteral("album"), album);
    payload.insert(QStringLiteral("playing"),
                   player.properties.value(QStringLiteral("PlaybackStatus")) == QLatin1String("Playing"));
    payload.insert(QStringLiteral("bundleIdentifier"), player.desktopEntry);
    const qint64 length = metadata.value(QStringLiteral("mpris:length")).toLongLong();
    if (m_options.micros) {
        payload.insert(QStringLiteral("elapsedTimeMicros"), double(player.positionMicros));
        if (length > 0)
            payload.insert(QStringLiteral("durationMicros"), double(length));
    } else {
        payload.insert(QStringLiteral("elapsedTime"), player.positionMicros / kMicros);
        if (length > 0)
            payload.insert(QStringLiteral("duration"), length / kMicros);
    }
    payload.insert(QStringLiteral("timestampEpochMicros"), double(player.positionAt.toMSecsSinceEpoch() * 1000));
    const QVariant rate = player.properties.value(QStringLiteral("Rate"));
    if (rate.isValid())
        payload.insert(QStringLiteral("playbackRate"), rate.toDouble());
    const QString artwork = artworkFor(metadata.value(QStringLiteral("mpris:artUrl")).toString());
    if (!artwork.isEmpty())
        payload.insert(QStringLiteral("artworkData"), artwork);
    return payload;
}

QString MprisProducer::artworkFor(const QString& artUrl)
{
    if (artUrl.isEmpty())
        return {};
    if (const auto found = m_artwork.constFind(artUrl); found != m_artwork.constEnd())
        return *found;
    const QUrl url(artUrl);
    if (url.isLocalFile()) {
        QFile file(url.toLocalFile());
        QString base64;
        if (file.size() <= maxArtworkBytes && file.open(QIODevice::ReadOnly))
            base64 = QString::fromLatin1(file.readAll().toBase64());
        if (m_artwork.size() > 16)
            m_artwork.clear(); // a few covers are enough to keep
        m_artwork.insert(artUrl, base64);
        return base64;
    }
    if ((url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http")) &&
        !m_artworkPending.contains(artUrl)) {
        // Streaming players hand out web addresses; the line goes out without the cover and a
        // diff carries it once it is here.
        m_artworkPending.insert(artUrl);
        if (!m_network)
            m_network = new QNetworkAccessManager(this);
        QNetworkRequest request(url);
        request.setTransferTimeout(10000);
        QNetworkReply* reply = m_network->get(request);
        connect(reply, &QNetworkReply::finished, this, [this, reply, artUrl] {
            reply->deleteLater();
            const QByteArray bytes = reply->error() == QNetworkReply::NoError ? reply->read(maxArtworkBytes) : QByteArray();
            m_artwork.insert(artUrl, QString::fromLatin1(bytes.toBase64()));
            m_artworkPending.remove(artUrl);
            scheduleEmit();
        });
    }
    return {};
}

void MprisProducer::emitState()
{
    for (Player& player : m_players)
        if (player.dirty)
            refresh(player);
    const Player* player = chosen();
    const QString chosenName = player ? player->busName : QString();
    const QJsonObject payload = player ? payloadOf(*player) : QJsonObject();
    if (!m_emittedOnce || chosenName != m_lastChosen) {
        writeLine(payload, false);
    } else {
        QJsonObject diff;
        for (auto it = payload.begin(); it != payload.end(); ++it)
            if (m_lastPayload.value(it.key()) != it.value())
                diff.insert(it.key(), it.value());
        for (auto it = m_lastPayload.begin(); it != m_lastPayload.end(); ++it)
            if (!payload.contains(it.key()))
                diff.insert(it.key(), QJsonValue::Null); // a key that went away
        if (!diff.isEmpty())
            writeLine(diff, true);
    }
    m_emittedOnce = true;
    m_lastChosen = chosenName;
    m_lastPayload = payload;
}

void MprisProducer::writeLine(const QJsonObject& payload, bool diff)
{
    const QJsonObject line{{QStringLiteral("type"), QStringLiteral("data")},
                           {QStringLiteral("diff"), diff},
                           {QStringLiteral("payload"), payload}};
    const QByteArray bytes = QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fflush(stdout);
}

} // namespace norva::media
