#include "agents/jump/TerminalJumper.h"

#include "agents/ApprovalsFolder.h"
#include "agents/jump/WindowActivator.h"
#include "app/Log.h"
#include "app/Paths.h"
#include "app/ProcessRun.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMutex>
#include <QPointer>
#include <QProcess>
#include <QStandardPaths>
#include <QWaitCondition>

#include <memory>

namespace norva {
namespace {

// How long a jump waits for a terminal's script before bringing the app forward instead: the first
// script may sit behind macOS's automation consent prompt.
constexpr Seconds kScriptWait{5};
// A script that hangs longer than this is stopped, so a later jump can run its own.
constexpr int kScriptRunLimitMs = 60'000;
// How long a tmux command may take; it answers at once when the server is alive.
constexpr int kToolAnswerMs = 3'000;
constexpr int kPollMs = 20;
const QString kFound = QStringLiteral("found");

// An AppleScript string literal.
QString quoted(const QString& text)
{
    QString escaped = text;
    escaped.replace(QLatin1Char('\\'), QStringLiteral("\\\\"))
        .replace(QLatin1Char('"'), QStringLiteral("\\\""));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

QString secondsText(Seconds wait)
{
    return QString::number(wait.count(), 'g', 3);
}

// One script run shared between the waiting jump and the script queue.
struct ScriptRun {
    QMutex lock;
    QWaitCondition finished;
    bool done = false;
    TerminalJumper::ScriptOutcome outcome = TerminalJumper::ScriptOutcome::failed;
    QString error;
};

} // namespace

TerminalJumper::TerminalJumper(WindowActivator& activator, QObject* parent)
    : QObject(parent), m_activator(activator), m_scriptWait(kScriptWait),
      m_approvalsFolder(Paths::approvalsFolder())
{
    m_jumpQueue.setObjectName(QStringLiteral("norva.terminal.jump"));
    m_jumpQueue.setMaxThreadCount(1);
    m_scriptQueue.setObjectName(QStringLiteral("norva.terminal.script"));
    m_scriptQueue.setMaxThreadCount(1);
}

TerminalJumper::~TerminalJumper()
{
    m_closing = true;
    m_jumpQueue.waitForDone();
    m_scriptQueue.waitForDone();
}

QString TerminalJumper::normalizeTTY(const QString& tty)
{
    if (tty.isEmpty() || tty.startsWith(QStringLiteral("/dev/")))
        return tty;
    return QStringLiteral("/dev/") + tty;
}

std::optional<TerminalJumper::Target> TerminalJumper::parse(const QByteArray& record)
{
    // The hooks write the record without JSON escaping; one that does not parse is no target.
    const QJsonDocument document = QJsonDocument::fromJson(record);
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject object = document.object();
    auto text = [&](const char* key) { return object.value(QLatin1String(key)).toString(); };
    Target target;
    target.tty = normalizeTTY(text("tty"));
    target.termProgram = text("term_program");
    target.itermSession = text("iterm_session");
    const QString tmux = text("tmux");
    target.inTmux = !tmux.isEmpty();
    // TMUX is "socket,server pid,session": the socket tells which server holds the pane.
    target.tmuxSocket = tmux.section(QLatin1Char(','), 0, 0);
    target.tmuxPane = text("tmux_pane");
    bool numeric = false;
    const qint64 pid = text("term_pid").toLongLong(&numeric);
    target.pid = numeric && pid > 0 ? pid : 0;
    target.transcriptPath = text("transcript_path");
    return target;
}

QList<TerminalJumper::Target> TerminalJumper::loadTargets(const QString& approvalsFolder)
{
    QList<Target> targets;
    const ApprovalsFolder folder(approvalsFolder);
    for (const QString& name : folder.files()) {
        if (!name.startsWith(QStringLiteral("term-")) || !name.endsWith(QStringLiteral(".json")))
            continue;
        const auto record = folder.read(name); // never through a link
        if (const auto target = record ? parse(*record) : std::nullopt)
            targets.append(*target);
    }
    return targets;
}

void TerminalJumper::jump(const Target& target, std::function<void(bool)> completion)
{
    QPointer<TerminalJumper> self(this);
    m_jumpQueue.start([this, self, target, completion = std::move(completion)] {
        const bool ok = jumpNow(target);
        QMetaObject::invokeMethod(
            this,
            [self, completion, ok] {
                if (self && completion)
                    completion(ok);
            },
            Qt::QueuedConnection);
    });
}

void TerminalJumper::jumpToSession(const QString& transcriptPath)
{
    for (const Target& target : loadTargets(m_approvalsFolder)) {
        if (target.transcriptPath == transcriptPath && !transcriptPath.isEmpty()) {
            jump(target, [this](bool ok) { emit jumpFinished(ok); });
            return;
        }
    }
    logLine(
        QStringLiteral("Norva agents: jumping to a session's terminal failed (no terminal is known for ") +
        transcriptPath + QLatin1Char(')'));
    emit jumpFinished(false);
}

bool TerminalJumper::activate(const Target& target)
{
    return target.pid >= 2 && m_activator.activate(target.pid);
}

bool TerminalJumper::scriptOrActivate(const Target& target, const QString& source)
{
    if (runScript(source) == ScriptOutcome::found)
        return true;
    return activate(target);
}

bool TerminalJumper::jumpNow(const Target& target)
{
    if (target.pid >= 2)
        m_activator.unminimize(target.pid);
    if (target.inTmux && jumpTmux(target)) {
        if (target.pid >= 2)
            m_activator.activate(target.pid);
        return true;
    }
    bool ok = false;
    if (target.termProgram == QStringLiteral("iTerm.app") &&
        (!target.itermSession.isEmpty() || !target.tty.isEmpty()))
        ok = scriptOrActivate(target, itermScript(target));
    else if (target.termProgram == QStringLiteral("Apple_Terminal") && !target.tty.isEmpty())
        ok = scriptOrActivate(target, terminalScript(target));
    else
        ok = activate(target);
    if (!ok)
        logLine(QStringLiteral("Norva agents: jumping to a session's terminal failed (") +
                (target.termProgram.isEmpty() ? QStringLiteral("unknown terminal") : target.termProgram) +
                QStringLiteral(", process ") + QString::number(target.pid) +
                QStringLiteral(" is not running)"));
    return ok;
}

QString TerminalJumper::itermScript(const Target& target)
{
    // ITERM_SESSION_ID reads "w0t0p0:UUID"; the scripting "id" of a session is the UUID alone.
    const QString session = target.itermSession.section(QLatin1Char(':'), -1);
    return QStringLiteral("set wantedSession to %1\n"
                          "set wantedTTY to %2\n"
                          "tell application \"iTerm2\"\n"
                          "  repeat with aWindow in windows\n"
                          "    repeat with aTab in tabs of aWindow\n"
                          "      repeat with aSession in sessions of aTab\n"
                          "        if (wantedSession is not \"\" and id of aSession is wantedSession) or "
                          "(wantedTTY is not \"\" and tty of aSession ends with wantedTTY) then\n"
                          "          select aWindow\n"
                          "          tell aTab to select\n"
                          "          tell aSession to select\n"
                          "          activate\n"
                          "          return \"found\"\n"
                          "        end if\n"
                          "      end repeat\n"
                          "    end repeat\n"
                          "  end repeat\n"
                          "end tell\n"
                          "return \"missing\"\n")
        .arg(quoted(session), quoted(target.tty));
}

QString TerminalJumper::terminalScript(const Target& target)
{
    return QStringLiteral("set wantedTTY to %1\n"
                          "tell application \"Terminal\"\n"
                          "  repeat with aWindow in windows\n"
                          "    repeat with aTab in tabs of aWindow\n"
                          "      if tty of aTab ends with wantedTTY then\n"
                          "        set selected of aTab to true\n"
                          "        set frontmost of aWindow to true\n"
                          "        activate\n"
                          "        return \"found\"\n"
                          "      end if\n"
                          "    end repeat\n"
                          "  end repeat\n"
                          "end tell\n"
                          "return \"missing\"\n")
        .arg(quoted(target.tty));
}

TerminalJumper::ScriptOutcome TerminalJumper::runScript(const QString& source)
{
    bool idle = false;
    if (!m_scriptRunning.compare_exchange_strong(idle, true)) {
        logLine(
            QStringLiteral("Norva agents: an earlier terminal script is still waiting on its app; this jump "
                           "brings the terminal forward instead"));
        return ScriptOutcome::busy;
    }
    auto run = std::make_shared<ScriptRun>();
    const QString osascript = m_osascript;
    m_scriptQueue.start([this, run, source, osascript] {
        QProcess process;
        process.start(osascript, {QStringLiteral("-")});
        ScriptOutcome outcome = ScriptOutcome::failed;
        QString error;
        if (!process.waitForStarted(kToolAnswerMs)) {
            error = osascript + QStringLiteral(" could not be started");
        } else {
            process.write(source.toUtf8());
            process.closeWriteChannel();
            QElapsedTimer running;
            running.start();
            while (!process.waitForFinished(kPollMs)) {
                if (m_closing || running.elapsed() > kScriptRunLimitMs) {
                    process.kill();
                    process.waitForFinished(kToolAnswerMs);
                    break;
                }
            }
            if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
                error = QString::fromUtf8(process.readAllStandardError()).trimmed();
                if (error.isEmpty())
                    error = QStringLiteral("it stopped with status ") + QString::number(process.exitCode());
            } else {
                outcome = QString::fromUtf8(process.readAllStandardOutput()).trimmed() == kFound
                              ? ScriptOutcome::found
                              : ScriptOutcome::notFound;
            }
        }
        // Free for the next jump before the waiting one hears the answer, so a jump that follows at
        // once is not taken for one that overlaps.
        m_scriptRunning = false;
        {
            QMutexLocker lock(&run->lock);
            run->outcome = outcome;
            run->error = error;
            run->done = true;
        }
        run->finished.wakeAll();
    });
    QMutexLocker lock(&run->lock);
    QDeadlineTimer deadline(qint64(m_scriptWait.count() * 1000));
    while (!run->done) {
        if (!run->finished.wait(&run->lock, deadline)) {
            logLine(
                QStringLiteral("Norva agents: the terminal's AppleScript gave no answer in ") +
                secondsText(m_scriptWait) +
                QStringLiteral(" s (is macOS asking whether Norva may control it?); bringing the app forward "
                               "instead"));
            return ScriptOutcome::timedOut;
        }
    }
    if (run->outcome == ScriptOutcome::failed)
        logLine(QStringLiteral("Norva agents: the terminal's AppleScript failed: ") + run->error);
    return run->outcome;
}

QString TerminalJumper::tmuxBinary() const
{
    for (const QString& fixed :
         {QStringLiteral("/opt/homebrew/bin/tmux"), QStringLiteral("/usr/local/bin/tmux")}) {
        const QFileInfo info(fixed);
        if (info.isFile() && info.isExecutable())
            return fixed;
    }
    // Linux distributions put tmux in /usr/bin; the one on PATH is the one the person's shells use.
    return QStandardPaths::findExecutable(QStringLiteral("tmux"));
}

std::optional<QString> TerminalJumper::tmuxPaneLocation(const QStringList& paneLines, const QString& tty)
{
    const QString wanted = normalizeTTY(tty);
    if (wanted.isEmpty())
        return std::nullopt;
    for (const QString& line : paneLines) {
        // A session name may hold blanks; the tty never does, so it is the last field.
        const qsizetype blank = line.lastIndexOf(QLatin1Char(' '));
        if (blank <= 0)
            continue;
        if (normalizeTTY(line.mid(blank + 1).trimmed()) == wanted)
            return line.left(blank);
    }
    return std::nullopt;
}

QStringList TerminalJumper::tmuxServer(const Target& target) const
{
    if (target.tmuxSocket.startsWith(QLatin1Char('/')))
        return {QStringLiteral("-S"), target.tmuxSocket};
    return {};
}

bool TerminalJumper::jumpTmux(const Target& target)
{
    const QString tmux = tmuxBinary();
    if (tmux.isEmpty())
        return false;
    const QStringList server = tmuxServer(target);
    const auto tmuxRun = [&tmux, &server](const QStringList& arguments) {
        return runProcess(tmux, server + arguments, {}, kToolAnswerMs);
    };
    const ProcessResult panes =
        tmuxRun({QStringLiteral("list-panes"), QStringLiteral("-a"), QStringLiteral("-F"),
                 QStringLiteral("#{session_name}:#{window_index}.#{pane_index} #{pane_tty}")});
    if (!panes.succeeded())
        return false;
    const auto location = tmuxPaneLocation(
        QString::fromUtf8(panes.output).split(QLatin1Char('\n'), Qt::SkipEmptyParts), target.tty);
    if (!location)
        return false;
    const QString window = location->left(location->lastIndexOf(QLatin1Char('.')));
    const QString session = location->left(location->lastIndexOf(QLatin1Char(':')));
    // The client the person touched last is the one on screen; a detached server has none, and the
    // pane is still made current for the next attach.
    const ProcessResult clients = tmuxRun({QStringLiteral("list-clients"), QStringLiteral("-F"),
                                           QStringLiteral("#{client_activity} #{client_tty}")});
    QString client;
    qint64 latest = -1;
    if (clients.succeeded()) {
        for (const QString& line :
             QString::fromUtf8(clients.output).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            const qint64 activity = line.section(QLatin1Char(' '), 0, 0).toLongLong();
            if (activity > latest) {
                latest = activity;
                client = line.section(QLatin1Char(' '), 1);
            }
        }
    }
    if (!client.isEmpty())
        tmuxRun(
            {QStringLiteral("switch-client"), QStringLiteral("-c"), client, QStringLiteral("-t"), session});
    const bool windowSelected =
        tmuxRun({QStringLiteral("select-window"), QStringLiteral("-t"), window}).succeeded();
    const bool paneSelected =
        tmuxRun({QStringLiteral("select-pane"), QStringLiteral("-t"), *location}).succeeded();
    return windowSelected && paneSelected;
}

} // namespace norva
