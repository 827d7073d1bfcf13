#include "app/Paths.h"

#include <QDir>

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

QString home()
{
    const QString value = qEnvironmentVariable("HOME");
    return value.isEmpty() ? QDir::homePath() : QDir::cleanPath(value);
}

QString dataFolder()
{
#ifdef Q_OS_MACOS
    return home() + QStringLiteral("/Library/Application Support/Norva");
#else
    return xdgFolder("XDG_DATA_HOME", QStringLiteral(".local/share")) + QStringLiteral("/Norva");
#endif
}

QString approvalsFolder()
{
    return dataFolder() + QStringLiteral("/approvals");
}

QString configFolder()
{
#ifdef Q_OS_MACOS
    return home() + QStringLiteral("/Library/Preferences");
#else
    return xdgFolder("XDG_CONFIG_HOME", QStringLiteral(".config")) + QStringLiteral("/Norva");
#endif
}

QString preferencesFile()
{
    return configFolder() + QStringLiteral("/preferences.toml");
}

QString stateFolder()
{
#ifdef Q_OS_MACOS
    return dataFolder();
#else
    return xdgFolder("XDG_STATE_HOME", QStringLiteral(".local/state")) + QStringLiteral("/Norva");
#endif
}

QString autostartFolder()
{
    return xdgFolder("XDG_CONFIG_HOME", QStringLiteral(".config")) + QStringLiteral("/autostart");
}

bool ensureFolder(const QString& path)
{
    return QDir().mkpath(path);
}

} // namespace norva::Paths
