#pragma once

#include "app/Clock.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDateTime>
#include <QHash>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QObject>
#include <QSet>
#include <QVariantMap>

#include <optional>

namespace norva::media {

// Watches every MPRIS player on the session bus and prints, as JSON lines, the state of the one
// most recently active: a full payload when the chosen player changes, then only the keys that
// changed. Changes are coalesced over the debounce so a burst of property signals makes one line.
class MprisProducer : public QObject {
    Q_OBJECT
public:
    struct Options {
        bool micros = false;
        int debounceMs = 100;
    };

    MprisProducer(QDBusConnection bus, Options options, QObject* parent = nullptr);
    // Subscribes to the bus and prints the first state. False when the bus cannot be reached.
    bool start();

    static constexpr int maxArtworkBytes = 8 * 1024 * 1024; // larger art files are left out
    static constexpr int callTimeoutMs = 2000;              // a player that hangs does not stall the rest

private slots:
    void onPlayerSignal(const QDBusMessage& message);
    void onNameOwnerChanged(const QString& name, const QString& oldOwner, const QString& newOwner);

private:
    struct Player {
        QString busName;
        QString owner;
        QVariantMap properties;
        QString desktopEntry;
        qint64 positionMicros = 0;
        QDateTime positionAt;
        quint64 lastActive = 0;
        bool dirty = true;
    };

    void addPlayer(const QString& busName, const QString& owner);
    void scheduleEmit();
    void refresh(Player& player);
    void emitState();
    const Player* chosen() const;
    QJsonObject payloadOf(const Player& player);
    QString artworkFor(const QString& artUrl);
    void writeLine(const QJsonObject& payload, bool diff);

    QDBusConnection m_bus;
    Options m_options;
    QHash<QString, Player> m_players; // by well-known name
    quint64 m_activity = 0;
    QString m_lastChosen;
    QJsonObject m_lastPayload;
    bool m_emittedOnce = false;
    QHash<QString, QString> m_artwork; // art address -> base64 of its bytes
    QSet<QString> m_artworkPending;
    QNetworkAccessManager* m_network = nullptr;
    ScheduledWork m_emitWork;
};

} // namespace norva::media
