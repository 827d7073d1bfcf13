#include "shelf/ShelfDesk.h"

#include "app/Background.h"
#include "app/Log.h"
#include "clipboard/ClipboardSource.h"
#include "shelf/FileOpener.h"
#include "shelf/SameNameHints.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMimeData>
#include <QProcess>

namespace norva {
namespace {

const QString kArea = QStringLiteral("Norva shelf");

QString names(const QStringList& paths)
{
    QStringList list;
    for (const QString& path : paths)
        list << QFileInfo(path).fileName();
    return list.join(QStringLiteral(", "));
}

QString sizeText(qint64 bytes)
{
    return QLocale::system().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}

} // namespace

ShelfDesk::ShelfDesk(ShelfManager& shelf, ClipboardSource& clipboard, std::shared_ptr<FileOpener> opener,
                     QObject* parent)
    : QObject(parent), m_shelf(shelf), m_clipboard(clipboard), m_opener(std::move(opener)),
      m_items(QStringLiteral("id"), this)
{
    m_offMain = [](QObject* receiver, std::function<Outcome()> work, std::function<void(Outcome)> done) {
        runOffMain<Outcome>(receiver, std::move(work), std::move(done));
    };
    connect(&m_shelf, &ShelfManager::itemsChanged, this, &ShelfDesk::refreshItems);
    refreshItems();
}

void ShelfDesk::refreshItems()
{
    m_items.setRows(itemRows());
    emit itemsChanged();
}

QString ShelfDesk::emptyText() const
{
    return QStringLiteral("Drop files here to keep them at hand.");
}

QVariantList ShelfDesk::itemRows() const
{
    QStringList paths;
    for (const auto& item : m_shelf.items())
        paths << item.path;
    const QStringList places = SameNameHints::of(paths);
    QVariantList rows;
    for (qsizetype i = 0; i < m_shelf.items().size(); ++i) {
        const ShelfItem& item = m_shelf.items().at(i);
        const FileFacts facts = FileFacts::of(item.path);
        QStringList targets;
        for (const auto format : ShelfActions::convertTargets(facts.pictureFormat))
            targets << ShelfActions::formatName(format);
        rows.append(QVariantMap{{QStringLiteral("id"), item.id.toString(QUuid::WithoutBraces)},
                                {QStringLiteral("name"), QFileInfo(item.path).fileName()},
                                {QStringLiteral("place"), places.at(i)},
                                {QStringLiteral("path"), item.path},
                                {QStringLiteral("url"), QUrl::fromLocalFile(item.path)},
                                {QStringLiteral("size"), facts.bytes ? sizeText(*facts.bytes) : QString()},
                                {QStringLiteral("isFolder"), facts.isFolder},
                                {QStringLiteral("isPicture"), facts.isPicture},
                                {QStringLiteral("convertTargets"), targets},
                                {QStringLiteral("isScreenshot"), item.isScreenshot}});
    }
    return rows;
}

QStringList ShelfDesk::pictureIds() const
{
    QStringList ids;
    for (const auto& item : m_shelf.items()) {
        if (FileFacts::of(item.path).isPicture)
            ids << item.id.toString(QUuid::WithoutBraces);
    }
    return ids;
}

QList<QUuid> ShelfDesk::uuids(const QStringList& ids)
{
    QList<QUuid> list;
    for (const QString& id : ids)
        list << QUuid::fromString(id);
    return list;
}

QStringList ShelfDesk::pathsOf(const QList<QUuid>& ids) const
{
    QStringList paths;
    for (const QUuid& id : ids) {
        if (const auto* item = m_shelf.find(id))
            paths << item->path;
    }
    return paths;
}

ShelfDesk::Outcome ShelfDesk::failed(const QString& logTail, const QString& toast) const
{
    logLine(kArea + QStringLiteral(": ") + logTail);
    return {toast, true};
}

// A hidden name in the shelf's own folder: work is written there first and moved into place
// whole, so a quit mid-zip leaves only a hidden leftover that is cleared at the next launch.
QString ShelfDesk::partialPath() const
{
    return QDir(m_shelf.ownedFolder().url())
        .filePath(QLatin1String(OwnedFolder::kPartialPrefix) + QUuid::createUuid().toString(QUuid::Id128));
}

void ShelfDesk::run(std::function<Outcome()> work, std::function<void(Outcome)> done)
{
    ++m_running;
    emit busyChanged();
    m_offMain(this, std::move(work), [this, done = std::move(done)](Outcome outcome) {
        --m_running;
        emit busyChanged();
        done(outcome);
    });
}

void ShelfDesk::finish(const Outcome& outcome, const std::function<void(Outcome)>& done)
{
    if (outcome.toast && (*outcome.toast != m_toast || outcome.failed != m_toastFailed)) {
        m_toast = *outcome.toast;
        m_toastFailed = outcome.failed;
        emit toastChanged();
    }
    if (done)
        done(outcome);
}

void ShelfDesk::dismissToast()
{
    if (m_toast.isEmpty())
        return;
    m_toast.clear();
    emit toastChanged();
}

void ShelfDesk::perform(Action action, const QList<QUuid>& ids, const QString& argument,
                        std::function<void(Outcome)> done)
{
    const QStringList paths = pathsOf(ids);
    const bool needsItems = action != Action::saveAll && action != Action::clearAll;
    if (needsItems && paths.isEmpty()) {
        finish(failed(QStringLiteral("nothing was done (the file left the shelf)"),
                      QStringLiteral("That file left the shelf.")),
               done);
        return;
    }
    const QString owned = m_shelf.ownedFolder().url();
    switch (action) {
    case Action::compress: {
        const QString partial = partialPath();
        const QString archive = ShelfActions::archivePath(paths, owned);
        QDir().mkpath(owned);
        run(
            [paths, partial, archive]() -> Outcome {
                const auto zipped = ShelfActions::compress(paths, partial);
                if (const auto* failure = std::get_if<ShelfActions::Failure>(&zipped)) {
                    QFile::remove(partial);
                    logLine(kArea + QStringLiteral(": ") + names(paths) +
                            QStringLiteral(" was not zipped (") + failure->why + QLatin1Char(')'));
                    return {QStringLiteral("That didn't zip."), true};
                }
                if (!QFile::rename(partial, archive)) {
                    QFile::remove(partial);
                    logLine(kArea + QStringLiteral(": ") + names(paths) +
                            QStringLiteral(" was not zipped (the archive could not take its name)"));
                    return {QStringLiteral("That didn't zip."), true};
                }
                return {QStringLiteral("Zipped into ") + QFileInfo(archive).fileName() + QLatin1Char('.'),
                        false};
            },
            [this, archive, done](Outcome outcome) {
                if (!outcome.failed)
                    m_shelf.shelve(archive);
                finish(outcome, done);
            });
        return;
    }
    case Action::convert: {
        const auto format = ShelfActions::formatFrom(argument);
        if (!format) {
            finish(failed(QStringLiteral("a picture was not converted (") + argument +
                              QStringLiteral(" is not a format Norva writes)"),
                          QStringLiteral("That picture didn't convert.")),
                   done);
            return;
        }
        QDir().mkpath(owned);
        // A PDF of several pictures is one document with a page each; other formats make a file each.
        struct Job {
            QStringList sources;
            QString partial, target;
        };
        QList<Job> jobs;
        if (*format == ShelfActions::ImageFormat::pdf && paths.size() > 1) {
            jobs.append(
                {paths, partialPath(), ShelfActions::freePath(owned, QStringLiteral("Pictures.pdf"))});
        } else {
            for (const QString& path : paths)
                jobs.append({{path},
                             partialPath(),
                             ShelfActions::freePath(owned, ShelfActions::convertedName(path, *format))});
        }
        auto made = std::make_shared<QStringList>();
        run(
            [jobs, format, made]() -> Outcome {
                for (const Job& job : jobs) {
                    const auto converted =
                        job.sources.size() > 1
                            ? ShelfActions::pdfOf(job.sources, job.partial)
                            : ShelfActions::convert(job.sources.first(), *format, job.partial);
                    if (const auto* failure = std::get_if<ShelfActions::Failure>(&converted)) {
                        logLine(kArea + QStringLiteral(": ") + names(job.sources) +
                                QStringLiteral(" was not converted to ") + ShelfActions::formatName(*format) +
                                QStringLiteral(" (") + failure->why + QLatin1Char(')'));
                        return {QStringLiteral("That picture didn't convert."), true};
                    }
                    if (!QFile::rename(job.partial, job.target)) {
                        QFile::remove(job.partial);
                        return {QStringLiteral("That picture didn't convert."), true};
                    }
                    made->append(job.target);
                }
                return {QStringLiteral("Converted to ") + ShelfActions::formatName(*format) +
                            QLatin1Char('.'),
                        false};
            },
            [this, made, done](Outcome outcome) {
                for (const QString& path : std::as_const(*made))
                    m_shelf.shelve(path);
                finish(outcome, done);
            });
        return;
    }
    case Action::moveToFolder:
    case Action::copyToFolder:
    case Action::saveAll: {
        const bool move = action == Action::moveToFolder;
        QStringList sources = paths;
        if (action == Action::saveAll) {
            for (const auto& item : m_shelf.items())
                sources << item.path;
        }
        const QString folder = argument;
        const QList<QUuid> movedIds = ids;
        auto landed = std::make_shared<QStringList>();
        run(
            [sources, folder, move, landed]() -> Outcome {
                const auto result = move ? ShelfActions::moveToFolder(sources, folder)
                                         : ShelfActions::copyToFolder(sources, folder);
                if (const auto* failure = std::get_if<ShelfActions::Failure>(&result)) {
                    logLine(
                        kArea + QStringLiteral(": ") + names(sources) +
                        (move ? QStringLiteral(" was not moved (") : QStringLiteral(" was not copied (")) +
                        failure->why + QLatin1Char(')'));
                    return {move ? QStringLiteral("That didn't move.") : QStringLiteral("That didn't copy."),
                            true};
                }
                *landed = std::get<QStringList>(result);
                const QString where = QFileInfo(folder).fileName();
                return {(move ? QStringLiteral("Moved to ") : QStringLiteral("Copied to ")) + where +
                            QLatin1Char('.'),
                        false};
            },
            [this, move, movedIds, landed, done](Outcome outcome) {
                if (move && !outcome.failed) {
                    // Each row follows its file to where it went.
                    for (int i = 0; i < movedIds.size() && i < landed->size(); ++i)
                        m_shelf.moved(movedIds.at(i), landed->at(i));
                }
                finish(outcome, done);
            });
        return;
    }
    case Action::reveal:
    case Action::open: {
        const bool reveal = action == Action::reveal;
        const QString path = paths.first();
        run(
            [path, reveal, opener = m_opener]() -> Outcome {
                const auto result =
                    reveal ? ShelfActions::reveal(path, *opener) : ShelfActions::open(path, *opener);
                const auto* failure = std::get_if<ShelfActions::Failure>(&result);
                if (!failure)
                    return {};
                logLine(kArea + QStringLiteral(": ") + QFileInfo(path).fileName() +
                        (reveal ? QStringLiteral(" was not shown (") : QStringLiteral(" was not opened (")) +
                        failure->why + QLatin1Char(')'));
                return {failure->advice.isEmpty() ? QStringLiteral("That didn't open.") : failure->advice,
                        true};
            },
            [this, done](Outcome outcome) { finish(outcome, done); });
        return;
    }
    case Action::openWith: {
        if (!QProcess::startDetached(argument, paths)) {
            finish(failed(names(paths) + QStringLiteral(" was not opened (") + argument +
                              QStringLiteral(" would not start)"),
                          QFileInfo(argument).fileName() + QStringLiteral(" didn't start.")),
                   done);
            return;
        }
        finish({}, done);
        return;
    }
    case Action::copy: {
        auto content = std::make_unique<QMimeData>();
        QList<QUrl> urls;
        for (const QString& path : paths)
            urls << QUrl::fromLocalFile(path);
        content->setUrls(urls);
        if (!m_clipboard.put(std::move(content))) {
            finish(failed(names(paths) + QStringLiteral(" was not copied (the clipboard refused the write)"),
                          QStringLiteral("The clipboard didn't take it. Try again.")),
                   done);
            return;
        }
        finish({QStringLiteral("Copied."), false}, done);
        return;
    }
    case Action::airDrop:
        finish(failed(names(paths) + QStringLiteral(" was not sent (AirDrop is only on a Mac)"),
                      QStringLiteral("AirDrop needs a Mac.")),
               done);
        return;
    case Action::remove:
        for (const QUuid& id : ids)
            m_shelf.remove(id);
        finish({}, done);
        return;
    case Action::clearAll:
        m_shelf.clearAll();
        finish({}, done);
        return;
    }
}

void ShelfDesk::dropped(const QList<QUrl>& urls, const QByteArray& image, bool hasImage, const QString& text,
                        bool hasText, bool onNotch)
{
    ShelfManager::Drop drop;
    drop.urls = urls;
    if (hasImage)
        drop.image = image;
    if (hasText)
        drop.text = text;
    m_shelf.drop(drop, onNotch ? ShelfManager::DropPlace::notch : ShelfManager::DropPlace::panel);
}

} // namespace norva
