#include "storage/VdirCollection.h"

#include "storage/ICalendarFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace norva {

namespace {

// Metadata files are a line or two; a larger one is not metadata.
constexpr qint64 kMaxMetadataBytes = 4096;

QString metadata(const QString& folder, const QString& name)
{
    const QString path = folder + QLatin1Char('/') + name;
    if (QFileInfo(path).isSymLink())
        return {};
    QFile file(path);
    if (file.size() > kMaxMetadataBytes || !file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).trimmed();
}

QString normalColor(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("^#[0-9a-fA-F]{6}([0-9a-fA-F]{2})?$"));
    return pattern.match(text).hasMatch() ? text.left(7).toLower() : QString();
}

} // namespace

std::optional<VdirCollection> VdirCollection::at(const QString& path)
{
    const QFileInfo info(path);
    if (!info.isDir())
        return std::nullopt;
    VdirCollection collection;
    collection.id = info.fileName();
    collection.path = info.absoluteFilePath();
    collection.displayName = metadata(collection.path, QStringLiteral("displayname"));
    if (collection.displayName.isEmpty())
        collection.displayName = collection.id;
    collection.color = normalColor(metadata(collection.path, QStringLiteral("color")));
    return collection;
}

QStringList VdirCollection::itemFiles() const
{
    QStringList files;
    const QStringList names =
        QDir(path).entryList({QStringLiteral("*.ics")}, QDir::Files | QDir::System, QDir::Name);
    for (const QString& name : names)
        files.append(path + QLatin1Char('/') + name);
    return files;
}

QString VdirCollection::itemPathFor(const QString& uid) const
{
    // Only characters that every file system and server keep; anything else becomes "_".
    QString safe = uid;
    static const QRegularExpression unsafe(QStringLiteral("[^A-Za-z0-9._@-]"));
    safe.replace(unsafe, QStringLiteral("_"));
    QString candidate = path + QLatin1Char('/') + safe + QStringLiteral(".ics");
    for (int n = 2; QFileInfo::exists(candidate) || QFileInfo(candidate).isSymLink(); ++n)
        candidate = path + QLatin1Char('/') + safe + QStringLiteral("-%1.ics").arg(n);
    return candidate;
}

std::optional<QString> VdirCollection::setDisplayName(const QString& name) const
{
    return writeCalendarItem(path + QStringLiteral("/displayname"), name.toUtf8());
}

std::optional<QString> VdirCollection::setColor(const QString& value) const
{
    return writeCalendarItem(path + QStringLiteral("/color"), value.toUtf8());
}

} // namespace norva
