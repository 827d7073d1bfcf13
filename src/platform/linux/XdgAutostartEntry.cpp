#include "platform/linux/XdgAutostartEntry.h"

#include "app/AtomicFile.h"
#include "app/Log.h"
#include "app/Paths.h"
#include "platform/linux/AutostartEntry.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace norva {
namespace {

QString entryPath()
{
    return Paths::autostartFolder() + QStringLiteral("/norva.desktop");
}

} // namespace

bool XdgAutostartEntry::isOn() const
{
    return QFile::exists(entryPath());
}

std::optional<QString> XdgAutostartEntry::set(bool on)
{
    const QString path = entryPath();
    if (!on) {
        if (QFile::exists(path) && !QFile::remove(path))
            return QStringLiteral("could not remove ") + path;
        return std::nullopt;
    }
    if (!QDir().mkpath(Paths::autostartFolder()))
        return QStringLiteral("could not make ") + Paths::autostartFolder();
    const QString running = QCoreApplication::applicationFilePath();
    const QString installed = QStringLiteral(NORVA_INSTALLED_PROGRAM);
    const AutostartEntry::Choice choice = AutostartEntry::choose(
        running, installed, AutostartEntry::isInBuildTree(running), QFileInfo(installed).isExecutable());
    if (!choice.note.isEmpty())
        logLine(QStringLiteral("Norva: launch at login is on; ") + choice.note);
    return writeFileAtomically(path, AutostartEntry::text(choice.program));
}

} // namespace norva
