#include "platform/linux/AutostartEntry.h"

#include <QDir>
#include <QFileInfo>

namespace norva::AutostartEntry {
namespace {

// The Exec key's quoting: the path goes in double quotes, with the four reserved characters escaped.
QString quotedForExec(const QString& program)
{
    QString escaped;
    for (const QChar c : program) {
        if (c == QLatin1Char('"') || c == QLatin1Char('`') || c == QLatin1Char('$') || c == QLatin1Char('\\'))
            escaped += QLatin1Char('\\');
        escaped += c;
    }
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

} // namespace

Choice choose(const QString& running, const QString& installed, bool runningFromBuildTree,
              bool installedExists)
{
    if (running.isEmpty())
        return {installed,
                QStringLiteral("the running program's path is unknown, so it starts ") + installed};
    if (!runningFromBuildTree || running == installed)
        return {running, {}};
    if (installedExists)
        return {installed, QStringLiteral("it starts the installed ") + installed +
                               QStringLiteral(", not this build (") + running + QLatin1Char(')')};
    return {running, QStringLiteral("it starts this build at ") + running +
                         QStringLiteral(" (Norva is not installed; cmake --install puts it at ") + installed +
                         QLatin1Char(')')};
}

bool isInBuildTree(const QString& program)
{
    QDir folder = QFileInfo(program).absoluteDir();
    for (int depth = 0; depth < 3; ++depth) {
        if (folder.exists(QStringLiteral("CMakeCache.txt")))
            return true;
        if (!folder.cdUp())
            break;
    }
    return false;
}

QByteArray text(const QString& program)
{
    return QByteArrayLiteral("[Desktop Entry]\n"
                             "Type=Application\n"
                             "Name=Norva\n"
                             "Comment=The top centre of your screen, alive\n"
                             "Icon=norva\n"
                             "Exec=") +
           quotedForExec(program).toUtf8() +
           QByteArrayLiteral("\n"
                             "Terminal=false\n"
                             "X-GNOME-Autostart-enabled=true\n");
}

} // namespace norva::AutostartEntry
