#include "storage/OwnedFolder.h"

#include "app/AtomicFile.h"
#include "app/CountText.h"
#include "app/Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

namespace norva {

OwnedFolder::OwnedFolder(QString url, QString area, QString noun, QString holder,
                         std::function<void(const QString&)> log)
    : m_url(QDir::cleanPath(std::move(url))), m_area(std::move(area)), m_noun(std::move(noun)),
      m_holder(std::move(holder)), m_log(log ? std::move(log) : std::function<void(const QString&)>(logLine))
{}

QString OwnedFolder::folderName() const
{
    return QFileInfo(m_url).fileName();
}

QString OwnedFolder::plural(int count) const
{
    return countText(count, m_noun, m_noun + QLatin1Char('s'));
}

void OwnedFolder::prepare()
{
    if (!QDir().mkpath(m_url)) {
        m_log(m_area + QStringLiteral(": could not make the folder ") + m_url + QStringLiteral(" for ") +
              m_holder);
        return;
    }
    clearHalfWritten();
    retryDeletions();
}

OwnedFolder::Written OwnedFolder::write(const QString& name, const QByteArray& bytes) const
{
    if (!QDir().mkpath(m_url))
        return {std::nullopt,
                QStringLiteral("the folder ") + folderName() + QStringLiteral(" could not be made")};
    // A hidden temporary name: a quit mid-write leaves only a hidden leftover that prepare() clears.
    QTemporaryFile partial(m_url + QLatin1Char('/') + QLatin1String(kPartialPrefix) +
                           QStringLiteral("XXXXXX"));
    partial.setAutoRemove(true);
    if (!partial.open())
        return {std::nullopt, partial.errorString()};
    if (partial.write(bytes) != bytes.size() || !partial.flush())
        return {std::nullopt, partial.errorString()};
    const QString target = m_url + QLatin1Char('/') + name;
    if (QFileInfo::exists(target))
        return {std::nullopt, name + QStringLiteral(" is already there")};
    if (!partial.rename(target))
        return {std::nullopt, partial.errorString()};
    partial.setAutoRemove(false);
    return {target, {}};
}

QString OwnedFolder::freeName(const QString& base, const QString& suffix) const
{
    const QDir folder(m_url);
    QString name = base + suffix;
    for (int n = 2; folder.exists(name); ++n)
        name = base + QLatin1Char(' ') + QString::number(n) + suffix;
    return name;
}

bool OwnedFolder::holds(const QString& path) const
{
    return QFileInfo(path).absolutePath() == QFileInfo(m_url).absoluteFilePath();
}

QStringList OwnedFolder::files() const
{
    QStringList paths;
    const QDir folder(m_url);
    for (const QString& name : folder.entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name))
        paths << folder.filePath(name);
    return paths;
}

bool OwnedFolder::remove(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists() && !info.isSymLink())
        return true;
    const bool gone =
        info.isDir() && !info.isSymLink() ? QDir(path).removeRecursively() : QFile::remove(path);
    if (gone)
        return true;
    QStringList later = deleteLater();
    if (!later.contains(info.fileName()))
        later << info.fileName();
    setDeleteLater(later);
    m_log(m_area + QStringLiteral(": could not delete the ") + m_noun + QLatin1Char(' ') + info.fileName() +
          QStringLiteral(" from ") + folderName() +
          QStringLiteral("; it stays and comes up for deletion again at the next launch"));
    return false;
}

// Files named with the hidden partial prefix are writes that a quit cut short.
void OwnedFolder::clearHalfWritten()
{
    const QDir folder(m_url);
    const QStringList names =
        folder.entryList({QLatin1String(kPartialPrefix) + QLatin1Char('*')},
                         QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
    int removed = 0;
    int stuck = 0;
    QString why;
    for (const QString& name : names) {
        QFile file(folder.filePath(name));
        if (file.remove()) {
            ++removed;
        } else {
            ++stuck;
            why = file.errorString();
        }
    }
    if (removed > 0)
        m_log(m_area + QStringLiteral(": removed ") + plural(removed) +
              QStringLiteral(" that a quit left half written in ") + folderName());
    if (stuck > 0)
        m_log(m_area + QStringLiteral(": could not remove ") + plural(stuck) +
              QStringLiteral(" that a quit left half written in ") + folderName() + QStringLiteral(" (") +
              why + QStringLiteral("); they are hidden and are tried again at the next launch"));
}

void OwnedFolder::retryDeletions()
{
    const QStringList names = deleteLater();
    if (names.isEmpty())
        return;
    QStringList still;
    for (const QString& name : names) {
        const QString path = QDir(m_url).filePath(name);
        const QFileInfo info(path);
        const bool gone =
            !info.exists() || (info.isDir() ? QDir(path).removeRecursively() : QFile::remove(path));
        if (gone) {
            m_log(m_area + QStringLiteral(": deleted the ") + m_noun + QLatin1Char(' ') + name +
                  QStringLiteral(" that would not go last time"));
        } else {
            still << name;
            m_log(m_area + QStringLiteral(": could not delete the ") + m_noun + QLatin1Char(' ') + name +
                  QStringLiteral(" from ") + folderName() +
                  QStringLiteral("; it stays and comes up for deletion again at the next launch"));
        }
    }
    setDeleteLater(still);
}

QStringList OwnedFolder::deleteLater() const
{
    QFile file(QDir(m_url).filePath(QLatin1String(kDeleteLaterFile)));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList names = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    names.removeAll(QString());
    return names;
}

void OwnedFolder::setDeleteLater(const QStringList& names) const
{
    const QString path = QDir(m_url).filePath(QLatin1String(kDeleteLaterFile));
    if (names.isEmpty()) {
        QFile::remove(path);
        return;
    }
    writeFileAtomically(path, names.join(QLatin1Char('\n')).toUtf8() + '\n');
}

} // namespace norva
