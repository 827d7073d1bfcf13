#pragma once

#include "app/Clock.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QThreadPool>

#include <atomic>
#include <functional>
#include <optional>

namespace norva {

class WindowActivator;

// Brings the terminal of an agent's session forward from the notch: the exact tmux pane, iTerm2
// session or Terminal tab where it can, and otherwise the terminal application by its process id.
// The target comes from the identity record "term-SID.json" that the hooks write.
class TerminalJumper : public QObject {
    Q_OBJECT
public:
    struct Target {
        QString tty;          // "/dev/..." always
        QString termProgram;  // TERM_PROGRAM, "iTerm.app", "Apple_Terminal"...
        QString itermSession; // ITERM_SESSION_ID as the terminal gave it
        bool inTmux = false;
        QString tmuxSocket; // the server socket named by TMUX, when the record has one
        QString tmuxPane;
        qint64 pid = 0;
        QString transcriptPath;
        bool operator==(const Target&) const = default;
    };
    enum class ScriptOutcome { found, notFound, failed, timedOut, busy };

    explicit TerminalJumper(WindowActivator& activator, QObject* parent = nullptr);
    ~TerminalJumper() override;

    static std::optional<Target> parse(const QByteArray& record);
    static QString normalizeTTY(const QString& tty);
    // Every identity record in the folder that parses (a record that does not is left out).
    static QList<Target> loadTargets(const QString& approvalsFolder);

    // Queues the jump on the jump queue; `completion` runs on this object's thread.
    void jump(const Target& target, std::function<void(bool)> completion);
    // For the session rows and cards: the session's target by its transcript, then the jump.
    Q_INVOKABLE void jumpToSession(const QString& transcriptPath);
    bool jumpNow(const Target& target);

    ScriptOutcome runScript(const QString& source);
    static QString itermScript(const Target& target);
    static QString terminalScript(const Target& target);

    bool jumpTmux(const Target& target);
    // "session:window.pane" of the pane whose tty is `tty`, from list-panes lines.
    static std::optional<QString> tmuxPaneLocation(const QStringList& paneLines, const QString& tty);
    QString tmuxBinary() const;

    // Seams for the stand-ins of tests and for the approvals folder in use.
    void setOsascript(const QString& path) { m_osascript = path; }
    void setScriptWait(Seconds wait) { m_scriptWait = wait; }
    void setApprovalsFolder(const QString& folder) { m_approvalsFolder = folder; }

signals:
    void jumpFinished(bool ok);

private:
    bool activate(const Target& target);
    bool scriptOrActivate(const Target& target, const QString& source);
    QStringList tmuxServer(const Target& target) const;

    WindowActivator& m_activator;
    QString m_osascript = QStringLiteral("/usr/bin/osascript");
    Seconds m_scriptWait;
    QString m_approvalsFolder;
    QThreadPool m_jumpQueue;
    QThreadPool m_scriptQueue;
    std::atomic<bool> m_scriptRunning{false};
    std::atomic<bool> m_closing{false};
};

} // namespace norva
