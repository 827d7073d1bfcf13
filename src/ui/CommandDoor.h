#pragma once

#include <QLocalServer>
#include <QObject>
#include <QString>

namespace norva {

// The door through which a second "norva --jot", "norva --open [page]" or "norva --settings" asks
// the running Norva to open the jot sheet, the notch or the settings window, so a desktop's own
// shortcut settings and menu entry (on X11 and Wayland alike) reach it. A local socket in the state
// folder, private to the person.
class CommandDoor : public QObject {
    Q_OBJECT
public:
    explicit CommandDoor(QString socketPath, QObject* parent = nullptr);
    bool listen();

    // From the second process: hands the word to the running Norva; false when none answers.
    static bool send(const QString& socketPath, const QByteArray& word);

    static const QByteArray jotWord;      // "jot"
    static const QByteArray settingsWord; // "settings"
    static const QByteArray openWord;     // "open", or "open" and a page: "open music"

signals:
    void jotRequested();
    void settingsRequested();
    void openRequested(const QString& page);

private:
    QString m_path;
    QLocalServer m_server;
};

} // namespace norva
