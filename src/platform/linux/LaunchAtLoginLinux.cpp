#include "app/LaunchAtLogin.h"

#include "app/AtomicFile.h"
#include "app/Paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace norva::LaunchAtLogin {
namespace {

QString entryPath()
{
    return Paths::autostartFolder() + QStringLiteral("/norva.desktop");
}

} // namespace

bool isOn()
{
    return QFile::exists(entryPath());
}

// Linux desktops start what has an entry in the XDG autostart folder.
std::optional<QString> set(bool on)
{
    const QString path = entryPath();
    if (!on) {
        if (QFile::exists(path) && !QFile::remove(path))
            return QStringLiteral("could not remove ") + path;
        return std::nullopt;
    }
    if (!QDir().mkpath(Paths::autostartFolder()))
        return QStringLiteral("could not make ") + Paths::autostartFolder();
    QString program = QCoreApplication::applicationFilePath();
    if (program.isEmpty())
        program = QStringLiteral("norva");
    const QByteArray entry = "[Desktop Entry]\nType=Application\nName=Norva\nComment=The notch, alive\nExec=\"" +
                             program.toUtf8() + "\"\nTerminal=false\nX-GNOME-Autostart-enabled=true\n";
    return writeFileAtomically(path, entry);
}

} // namespace norva::LaunchAtLogin
