#include "shelf/ShelfManager.h"

#include "app/Background.h"
#include "app/CountText.h"
#include "app/Log.h"
#include "shelf/ScreenshotSource.h"
#include "shelf/ShelfSettings.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QSet>

namespace norva {
namespace {

const QString kArea = QStringLiteral("Norva shelf");
const QString kListFile = QStringLiteral("shelf.json");
constexpr double kDaySeconds = 24 * 60 * 60;

QString itemsText(int count)
{
    return countText(count, QStringLiteral("item"), QStringLiteral("items"));
}

// A file made for dropped content, or the log line that says why none was.
struct KeptDrop {
    std::optional<QString> path;
    QString failure;
};

QByteArray weblocFor(const QUrl& url)
{
    const QString escaped = url.toString(QUrl::FullyEncoded).toHtmlEscaped();
    return QByteArrayLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                             "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                             "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                             "<plist version=\"1.0\">\n<dict>\n\t<key>URL</key>\n\t<string>") +
           escaped.toUtf8() + QByteArrayLiteral("</string>\n</dict>\n</plist>\n");
}

QString linkFileBase(const QUrl& url)
{
    QString base = url.host().isEmpty() ? QStringLiteral("Link") : url.host();
    const QString last = url.fileName();
    if (!last.isEmpty())
        base += QLatin1Char(' ') + last;
    base.replace(QLatin1Char('/'), QLatin1Char('-'));
    return base;
}

} // namespace

const QString ShelfManager::kOwnedFolderName = QStringLiteral("Shelf");

ShelfManager::ShelfManager(SettingsStore& settings, Clock& clock, const QString& dataFolder, QObject* parent)
    : QObject(parent), m_settings(std::make_unique<ShelfSettings>(settings)), m_clock(clock),
      m_list(QDir(dataFolder).filePath(kListFile), kArea, clock),
      m_owned(QDir(dataFolder).filePath(kOwnedFolderName), kArea, QStringLiteral("file"),
              QStringLiteral("the shelf"))
{
    m_list.setSnapshot([this] {
        QJsonArray array;
        for (const auto& item : std::as_const(m_items))
            array.append(item.toJson());
        return array;
    });
}

ShelfManager::~ShelfManager()
{
    if (m_list.isPending())
        m_list.saveNow();
}

void ShelfManager::setScreenshotSource(ScreenshotSource* source)
{
    m_screenshots = source;
    if (!source)
        return;
    connect(source, &ScreenshotSource::screenshotSaved, this, [this](const QString& path) {
        if (!m_settings->screenshots())
            return;
        if (shelve(path, true))
            emit screenshotLanded(path);
    });
}

void ShelfManager::start()
{
    m_owned.prepare();
    load();
    applyRetention();
    m_retentionWork = m_clock.every(kRetentionCheck, [this] { applyRetention(); });
    connect(m_settings.get(), &ShelfSettings::keepChanged, this, &ShelfManager::applyRetention,
            Qt::UniqueConnection);
    if (m_screenshots)
        m_screenshots->start();
    emit shelfActivity(int(m_items.size()));
}

bool ShelfManager::openOnDrop() const
{
    return m_settings->openOnDrop();
}

const ShelfManager::Item* ShelfManager::find(const QUuid& id) const
{
    for (const auto& item : m_items) {
        if (item.id == id)
            return &item;
    }
    return nullptr;
}

void ShelfManager::load()
{
    const QList<Item> stored = m_list.decode<Item>(m_list.load(), &ShelfItem::fromJson);
    bool edited = false;
    QSet<QString> listed;
    for (const auto& item : stored) {
        if (!QFileInfo::exists(item.path)) {
            logLine(kArea + QStringLiteral(": left out ") + item.path +
                    QStringLiteral(" (it is no longer on disk)"));
            edited = true;
            continue;
        }
        if (listed.contains(item.path))
            continue;
        listed.insert(item.path);
        m_items.append(item);
    }
    // Files of the shelf's own that no row lists (a row lost to a quit) come back onto the shelf.
    for (const QString& path : m_owned.files()) {
        if (listed.contains(path))
            continue;
        logLine(kArea + QStringLiteral(": put back ") + QFileInfo(path).fileName() +
                QStringLiteral(" from ") + m_owned.folderName() +
                QStringLiteral(", a file of the shelf's own that no row listed"));
        m_items.append(Item{QUuid::createUuid(), path, QFileInfo(path).lastModified().toUTC(), false});
        edited = true;
    }
    std::stable_sort(m_items.begin(), m_items.end(),
                     [](const Item& a, const Item& b) { return a.addedAt > b.addedAt; });
    if (edited)
        m_list.later();
    emit itemsChanged();
}

bool ShelfManager::shelve(const QString& path, bool isScreenshot)
{
    const QString clean = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    if (!QFileInfo::exists(clean)) {
        logLine(kArea + QStringLiteral(": a file was not shelved (") + clean +
                QStringLiteral(" is no longer where it was dropped from)"));
        return false;
    }
    for (const auto& item : std::as_const(m_items)) {
        if (item.path == clean)
            return false;
    }
    add(Item{QUuid::createUuid(), clean, m_clock.now().toUTC(), isScreenshot});
    return true;
}

void ShelfManager::add(Item item)
{
    m_items.prepend(std::move(item));
    if (m_items.size() > kCapacity) {
        QList<int> oldest;
        for (int i = kCapacity; i < m_items.size(); ++i)
            oldest << i;
        logLine(kArea + QStringLiteral(": let go of ") + itemsText(int(oldest.size())) +
                QStringLiteral(", the oldest (the shelf holds ") + QString::number(kCapacity) +
                QStringLiteral(")"));
        letGo(oldest);
    }
    changed();
}

// Removes the rows at the indexes; a file of the shelf's own goes with its row.
void ShelfManager::letGo(const QList<int>& indexes)
{
    QList<int> sorted = indexes;
    std::sort(sorted.begin(), sorted.end(), std::greater<>());
    for (const int at : sorted) {
        const Item gone = m_items.takeAt(at);
        if (m_owned.holds(gone.path))
            m_owned.remove(gone.path);
    }
}

void ShelfManager::changed()
{
    m_list.later();
    emit itemsChanged();
    emit shelfActivity(int(m_items.size()));
}

void ShelfManager::remove(const QUuid& id)
{
    for (int i = 0; i < m_items.size(); ++i) {
        if (m_items.at(i).id == id) {
            letGo({i});
            changed();
            return;
        }
    }
}

void ShelfManager::clearAll()
{
    if (m_items.isEmpty())
        return;
    QList<int> all;
    for (int i = 0; i < m_items.size(); ++i)
        all << i;
    letGo(all);
    changed();
}

void ShelfManager::moved(const QUuid& id, const QString& newPath)
{
    for (auto& item : m_items) {
        if (item.id == id) {
            item.path = newPath;
            changed();
            return;
        }
    }
}

void ShelfManager::applyRetention()
{
    const ShelfKeep keep = m_settings->keep();
    if (keep == ShelfKeep::forever)
        return;
    const double limit = keep == ShelfKeep::day ? kDaySeconds : 7 * kDaySeconds;
    QList<int> old;
    for (int i = 0; i < m_items.size(); ++i) {
        if (m_clock.secondsSince(m_items.at(i).addedAt) > limit)
            old << i;
    }
    if (old.isEmpty())
        return;
    logLine(kArea + QStringLiteral(": let go of ") + itemsText(int(old.size())) +
            QStringLiteral(" older than ") +
            (keep == ShelfKeep::day ? QStringLiteral("a day") : QStringLiteral("a week")) +
            QStringLiteral(" (Settings: Keep files on the Shelf)"));
    letGo(old);
    changed();
}

void ShelfManager::drop(const Drop& drop, DropPlace place)
{
    Q_UNUSED(place) // the notch and the panel shelve alike; the shell opens the panel on a notch drop
    if (drop.urls.isEmpty() && !drop.image && !drop.text) {
        logLine(kArea + QStringLiteral(": a dropped file never loaded"));
        return;
    }
    QStringList files;
    QStringList missing;
    QList<QUrl> links;
    for (const QUrl& url : drop.urls) {
        if (url.isLocalFile())
            (QFileInfo::exists(url.toLocalFile()) ? files : missing) << url.toLocalFile();
        else if (url.isValid() && !url.scheme().isEmpty())
            links << url;
    }
    const bool ownItems = drop.image.has_value() || !links.isEmpty() || drop.text.has_value();
    if (!missing.isEmpty() && files.isEmpty() && ownItems) {
        logLine(kArea + QStringLiteral(": the drag named ") + QString::number(missing.size()) +
                QStringLiteral(" file link(s); the drop's own items were read instead"));
    } else if (!missing.isEmpty() || !files.isEmpty()) {
        for (const QString& path : missing + files)
            shelve(path);
        return;
    }
    if (drop.image) {
        if (drop.image->isEmpty()) {
            logLine(kArea + QStringLiteral(": a dropped image never loaded"));
            return;
        }
        keepDroppedImage(*drop.image);
        return;
    }
    if (!links.isEmpty()) {
        for (const QUrl& link : links)
            keepDroppedLink(link);
        return;
    }
    if (drop.text && m_textSink)
        m_textSink(*drop.text);
}

void ShelfManager::keepDroppedImage(const QByteArray& bytes)
{
    const QString name =
        m_owned.freeName(QStringLiteral("Image ") +
                             m_clock.now().toLocalTime().toString(QStringLiteral("yyyy-MM-dd 'at' HH.mm.ss")),
                         QStringLiteral(".png"));
    const OwnedFolder folder = m_owned;
    runOffMain<KeptDrop>(
        this,
        [bytes, name, folder]() -> KeptDrop {
            QImage image;
            QByteArray png;
            QBuffer buffer(&png);
            buffer.open(QIODevice::WriteOnly);
            if (!image.loadFromData(bytes) || !image.save(&buffer, "PNG"))
                return {std::nullopt,
                        QStringLiteral("a dropped image was not kept (it would not convert to PNG)")};
            const auto written = folder.write(name, png);
            if (!written.path)
                return {std::nullopt,
                        QStringLiteral("a dropped image was not kept (could not write its file: ") +
                            written.error + QLatin1Char(')')};
            return {written.path, {}};
        },
        [this](KeptDrop kept) { shelveKept(kept.path, kept.failure); });
}

// Back on the main thread after a dropped picture or link was written (or not).
void ShelfManager::shelveKept(const std::optional<QString>& path, const QString& failure)
{
    if (path)
        shelve(*path);
    else
        logLine(kArea + QStringLiteral(": ") + failure);
    emit dropHandled();
}

void ShelfManager::keepDroppedLink(const QUrl& url)
{
    if (!url.isValid() || url.toString(QUrl::FullyEncoded).isEmpty()) {
        logLine(kArea + QStringLiteral(": a dropped link was not kept (it would not write as a .webloc)"));
        return;
    }
    const QString name = m_owned.freeName(linkFileBase(url), QStringLiteral(".webloc"));
    const OwnedFolder folder = m_owned;
    const QByteArray content = weblocFor(url);
    runOffMain<KeptDrop>(
        this,
        [content, name, folder]() -> KeptDrop {
            const auto written = folder.write(name, content);
            if (!written.path)
                return {std::nullopt,
                        QStringLiteral("a dropped link was not kept (could not write its file: ") +
                            written.error + QLatin1Char(')')};
            return {written.path, {}};
        },
        [this](KeptDrop kept) { shelveKept(kept.path, kept.failure); });
}

} // namespace norva
