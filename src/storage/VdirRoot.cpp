#include "storage/VdirRoot.h"

#include "app/Paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUuid>

namespace norva {

namespace {

constexpr qint64 kMaxConfigBytes = 256 * 1024;

QString configHome()
{
    const QString set = qEnvironmentVariable("XDG_CONFIG_HOME");
    return set.isEmpty() ? Paths::home() + QStringLiteral("/.config") : set;
}

QString expandHome(QString path)
{
    if (path == QStringLiteral("~") || path.startsWith(QStringLiteral("~/")))
        path.replace(0, 1, Paths::home());
    return path;
}

// The first `path = ...` value of a configuration file, quotes taken off.
QString firstPathIn(const QString& file)
{
    QFile config(file);
    if (config.size() > kMaxConfigBytes || !config.open(QIODevice::ReadOnly))
        return {};
    static const QRegularExpression pathLine(
        QStringLiteral(R"(^\s*path\s*=\s*["']?([^"'#\n]+?)["']?\s*(?:#.*)?$)"),
        QRegularExpression::MultilineOption);
    const auto match = pathLine.match(QString::fromUtf8(config.readAll()));
    return match.hasMatch() ? expandHome(match.captured(1).trimmed()) : QString();
}

// "~/.local/share/calendars/*" and "~/.local/share/calendars/personal" both mean the root
// "~/.local/share/calendars": the folder that holds the collections.
QString rootOf(const QString& configured)
{
    if (configured.isEmpty())
        return {};
    QString path = QDir::cleanPath(configured);
    if (path.endsWith(QStringLiteral("/*")) || path.contains(QLatin1Char('*')))
        return QFileInfo(path.left(path.indexOf(QLatin1Char('*')))).absolutePath();
    return QFileInfo(path).absolutePath();
}

QString folderNameFor(const QString& displayName)
{
    QString name = displayName.toLower();
    static const QRegularExpression unsafe(QStringLiteral("[^a-z0-9]+"));
    name.replace(unsafe, QStringLiteral("-"));
    while (name.startsWith(QLatin1Char('-')))
        name.remove(0, 1);
    while (name.endsWith(QLatin1Char('-')))
        name.chop(1);
    return name.isEmpty() ? QUuid::createUuid().toString(QUuid::WithoutBraces) : name.left(60);
}

} // namespace

QString VdirRoot::defaultPath()
{
    const QString dataHome = qEnvironmentVariable("XDG_DATA_HOME");
    return (dataHome.isEmpty() ? Paths::home() + QStringLiteral("/.local/share") : dataHome) +
           QStringLiteral("/calendars");
}

QString VdirRoot::configuredPath()
{
    const QString todoman = firstPathIn(configHome() + QStringLiteral("/todoman/config.py"));
    if (!todoman.isEmpty())
        return rootOf(todoman);
    return rootOf(firstPathIn(configHome() + QStringLiteral("/khal/config")));
}

QString VdirRoot::locate(const QString& setting)
{
    if (!setting.trimmed().isEmpty())
        return expandHome(setting.trimmed());
    const QString configured = configuredPath();
    return configured.isEmpty() ? defaultPath() : configured;
}

bool VdirRoot::isReadable() const
{
    const QFileInfo info(m_path);
    return info.isDir() && info.isReadable() && info.isExecutable();
}

QList<VdirCollection> VdirRoot::collections() const
{
    QList<VdirCollection> found;
    const QStringList names = QDir(m_path).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& name : names) {
        if (auto collection = VdirCollection::at(m_path + QLatin1Char('/') + name))
            found.append(*collection);
    }
    std::stable_sort(found.begin(), found.end(), [](const VdirCollection& a, const VdirCollection& b) {
        return a.displayName.compare(b.displayName, Qt::CaseInsensitive) < 0;
    });
    return found;
}

std::optional<VdirCollection> VdirRoot::createCollection(const QString& displayName, const QString& color,
                                                         QString* why) const
{
    const QString base = m_path + QLatin1Char('/') + folderNameFor(displayName);
    QString folder = base;
    for (int n = 2; QFileInfo::exists(folder) || QFileInfo(folder).isSymLink(); ++n)
        folder = base + QStringLiteral("-%1").arg(n);
    if (!QDir().mkpath(folder)) {
        if (why)
            *why = QStringLiteral("the folder %1 could not be made").arg(folder);
        return std::nullopt;
    }
    VdirCollection collection{QFileInfo(folder).fileName(), folder, displayName, color};
    auto failed = collection.setDisplayName(displayName);
    if (!failed && !color.isEmpty())
        failed = collection.setColor(color);
    if (failed) {
        if (why)
            *why = *failed;
        return std::nullopt;
    }
    return collection;
}

std::optional<QString> VdirRoot::removeCollection(const VdirCollection& collection) const
{
    QDir folder(collection.path);
    if (QFileInfo(collection.path).isSymLink() ||
        QFileInfo(collection.path).absolutePath() != QFileInfo(m_path).absoluteFilePath())
        return QStringLiteral("it is not a folder of the calendars");
    QStringList known = collection.itemFiles();
    known << collection.path + QStringLiteral("/displayname") << collection.path + QStringLiteral("/color");
    for (const QString& file : std::as_const(known)) {
        if (QFileInfo(file).exists() && !QFile::remove(file))
            return QStringLiteral("%1 could not be deleted").arg(QFileInfo(file).fileName());
    }
    if (!folder.rmdir(collection.path))
        return QStringLiteral("its folder holds files Norva does not know, so it stays");
    return std::nullopt;
}

} // namespace norva
