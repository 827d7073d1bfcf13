#include "ui/QuitOnSignals.h"

#include "app/Log.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <cstring>
#include <sys/socket.h>
#include <unistd.h>

namespace norva {
namespace {

int g_pipe[2] = {-1, -1}; // [0] read by the main thread, [1] written by the handler

void onSignal(int number)
{
    const unsigned char byte = static_cast<unsigned char>(number);
    [[maybe_unused]] const ssize_t written = ::write(g_pipe[1], &byte, 1);
}

} // namespace

QuitOnSignals::QuitOnSignals(QObject* parent) : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, g_pipe) != 0) {
        logLine(QStringLiteral("Norva: cannot listen for quit signals (") +
                QString::fromLocal8Bit(std::strerror(errno)) + QStringLiteral(")"));
        return;
    }
    m_notifier = new QSocketNotifier(g_pipe[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &QuitOnSignals::quit);
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        ::sigaction(number, &action, nullptr);
}

QuitOnSignals::~QuitOnSignals()
{
    if (!m_notifier)
        return;
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        ::signal(number, SIG_DFL);
    ::close(g_pipe[0]);
    ::close(g_pipe[1]);
    g_pipe[0] = g_pipe[1] = -1;
}

void QuitOnSignals::quit()
{
    unsigned char number = 0;
    if (::read(g_pipe[0], &number, 1) != 1)
        return;
    const char* name = number == SIGTERM ? "SIGTERM" : number == SIGINT ? "SIGINT" : "SIGHUP";
    logLine(QStringLiteral("Norva: quitting on ") + QLatin1String(name));
    QCoreApplication::quit();
}

} // namespace norva
