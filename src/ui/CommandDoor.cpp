#include "ui/CommandDoor.h"

#include "app/Log.h"

#include <QLocalSocket>

namespace norva {

const QByteArray CommandDoor::jotWord = QByteArrayLiteral("jot");
const QByteArray CommandDoor::settingsWord = QByteArrayLiteral("settings");
const QByteArray CommandDoor::openWord = QByteArrayLiteral("open");

CommandDoor::CommandDoor(QString socketPath, QObject* parent) : QObject(parent), m_path(std::move(socketPath))
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* socket = m_server.nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
                while (socket->canReadLine()) {
                    const QByteArray word = socket->readLine().trimmed();
                    if (word == jotWord)
                        emit jotRequested();
                    else if (word == settingsWord)
                        emit settingsRequested();
                    else if (word == openWord || word.startsWith(openWord + ' '))
                        emit openRequested(QString::fromUtf8(word.mid(openWord.size()).trimmed()));
                    else
                        logLine(QStringLiteral("Norva: a command at the door was not understood (") +
                                QString::fromUtf8(word.left(40)) + QStringLiteral(")"));
                }
            });
        }
    });
}

bool CommandDoor::listen()
{
    // The single-instance lock is held, so a socket left here is a crashed Norva's.
    QLocalServer::removeServer(m_path);
    if (m_server.listen(m_path))
        return true;
    logLine(QStringLiteral("Norva: could not open the door for norva --jot, --open and --settings (") +
            m_server.errorString() +
            QStringLiteral("); the notch's own buttons still open the jot sheet and the settings"));
    return false;
}

bool CommandDoor::send(const QString& socketPath, const QByteArray& word)
{
    QLocalSocket socket;
    socket.connectToServer(socketPath);
    if (!socket.waitForConnected(2000))
        return false;
    socket.write(word + '\n');
    socket.flush();
    socket.waitForBytesWritten(2000);
    socket.disconnectFromServer();
    return true;
}

} // namespace norva
