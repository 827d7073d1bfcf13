#include "app/Paths.h"

#include <QDir>

namespace norva::Paths {
QString home()
{
    const QString value = qEnvironmentVariable("HOME");
    return value.isEmpty() ? QDir::homePath() : QDir::cleanPath(value);
}

QString approvalsFolder()
{
    return dataFolder() + QStringLiteral("/approvals");
}

QString preferencesFile()
{
    return configFolder() + QStringLiteral("/preferences.toml");
}

bool ensureFolder(const QString& path)
{
    return QDir().mkpath(path);
}

} // namespace norva::Paths
