#include "app/Paths.h"

#include <QDir>

// Norva's folders on a Linux desktop follow the XDG base directories.
namespace norva::Paths {
namespace {

// An XDG base folder: the variable when it holds an absolute path, else the fallback under home.
QString xdgFolder(const char* variable, const QString& fallbackUnderHome)
{
    const QString value = qEnvironmentVariable(variable);
    if (!value.isEmpty() && QDir::isAbsolutePath(value))
        return QDir::cleanPath(value);
    return home() + QLatin1Char('/') + fallbackUnderHome;
}

} // namespace

QString dataFolder()
{
    return xdgFolder("XDG_DATA_HOME", QStringLiteral(".local/share")) + QStringLiteral("/Norva");
}

QString configFolder()
{
    return xdgFolder("XDG_CONFIG_HOME", QStringLiteral(".config")) + QStringLiteral("/Norva");
}

QString stateFolder()
{
    return xdgFolder("XDG_STATE_HOME", QStringLiteral(".local/state")) + QStringLiteral("/Norva");
}

QString autostartFolder()
{
    return xdgFolder("XDG_CONFIG_HOME", QStringLiteral(".config")) + QStringLiteral("/autostart");
}

} // namespace norva::Paths
