#pragma once

#include <QLocalServer>
#include <QObject>
#include <QString>

namespace norva {

// The door through which a second "norva --jot" asks the running Norva to open the jot sheet, so a
// desktop's own shortcut settings (on X11 and Wayland alike) can bind any key to it. A local socket
// in the state folder, private to the person.
class CommandDoor : public QObject {
    Q_OBJECT
public:
    explicit CommandDoor(QString socketPath, QObject* parent = nullptr);
    bool listen();

    // From the second process: hands the word to the running Norva; false when none answers.
    static bool send(const QString& socketPath, const QByteArray& word);

    static const QByteArray jotWord; // "jot"

signals:
    void jotRequested();

private:
    QString m_path;
    QLocalServer m_server;
};

} // namespace norva
