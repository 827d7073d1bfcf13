#include "clipboard/ClipboardLoad.h"

#include "app/AtomicFile.h"
#include "clipboard/ClipboardHistory.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <algorithm>

namespace norva {
namespace {

bool filesGone(const ClipboardItem& clip, const QDir& images)
{
    if (clip.kind == ClipboardKind::image)
        return !clip.imageFile || !QFileInfo::exists(images.filePath(*clip.imageFile));
    if (clip.kind == ClipboardKind::file)
        return std::none_of(clip.filePaths->begin(), clip.filePaths->end(),
                            [](const QString& path) { return QFileInfo::exists(path); });
    return false;
}

// Clips stored without a hash (by an older Norva) learn it from their content; a picture that
// cannot be read keeps none, and says why.
std::optional<qint64> learnedHash(const ClipboardItem& clip, const QDir& images, QString& why)
{
    if (clip.kind == ClipboardKind::image) {
        QFile picture(images.filePath(clip.imageFile.value_or(QString())));
        const QByteArray bytes = picture.open(QIODevice::ReadOnly) ? picture.readAll() : QByteArray();
        if (bytes.isEmpty()) {
            why = picture.isOpen() ? QStringLiteral("its picture is empty") : picture.errorString();
            return std::nullopt;
        }
        return ClipboardHistory::stableHash(bytes);
    }
    if (clip.kind == ClipboardKind::file)
        return ClipboardHistory::stableHash(ClipboardHistory::hashedBytes(*clip.filePaths));
    return ClipboardHistory::stableHash(ClipboardHistory::hashedBytes(clip.text.value_or(QString())));
}

void keepWhole(const ClipboardLoad::Input& input, ClipboardLoad::Result& result)
{
    const QString aside = asideCopyName(input.listPath, QStringLiteral("untrimmed"), input.now);
    QFile file(input.listPath);
    if (QFileInfo::exists(aside))
        result.keepWholeFailure =
            QStringLiteral("something is already called ") + QFileInfo(aside).fileName();
    else if (!file.copy(aside))
        result.keepWholeFailure = file.errorString();
    else
        result.keptWholeAs = QFileInfo(aside).fileName();
}

} // namespace

bool ClipboardLoad::farPastLimit(qsizetype letGo, int limit)
{
    return letGo > std::max(limit, kKeepWholeFloor);
}

ClipboardLoad::Result ClipboardLoad::run(const Input& input)
{
    Result result;
    result.read = StoredList::read(input.listPath);
    QList<ClipboardItem> stored =
        StoredList::decodeAll<ClipboardItem>(result.read.elements, &ClipboardItem::fromJson, result.skipped);
    result.read.elements = {}; // decoded: the JSON is not needed any more
    result.held = int(stored.size());
    std::stable_sort(stored.begin(), stored.end(),
                     [](const ClipboardItem& a, const ClipboardItem& b) { return a.date > b.date; });

    const QDir images(input.images.url());
    const int limit = std::max(input.limit, 0);
    int unpinnedKept = 0;
    QHash<ClipboardHistory::Content, qsizetype> keeperAt; // where each content's keeper sits in `kept`
    for (auto& clip : stored) {
        if (!clip.pinned && unpinnedKept >= limit) {
            // Past the limit: a twin of a kept clip is merged as before, anything else goes.
            const auto content = ClipboardHistory::contentOf(clip);
            (content && keeperAt.contains(*content) ? result.merged : result.letGo).append(std::move(clip));
            continue;
        }
        if (filesGone(clip, images)) {
            result.leftOut.append(std::move(clip));
            continue;
        }
        if (!clip.contentHash) {
            QString why;
            clip.contentHash = learnedHash(clip, images, why);
            if (clip.contentHash)
                ++result.learned;
            else
                result.hashless.append({clip, why});
        }
        const auto content = ClipboardHistory::contentOf(clip);
        if (content) {
            const auto keeper = keeperAt.constFind(*content);
            if (keeper != keeperAt.cend()) {
                // A pin on either copy survives on the one kept.
                ClipboardItem& kept = result.kept[*keeper];
                if (clip.pinned && !kept.pinned) {
                    kept.pinned = true;
                    --unpinnedKept;
                }
                result.merged.append(std::move(clip));
                continue;
            }
            keeperAt.insert(*content, result.kept.size());
        }
        unpinnedKept += clip.pinned ? 0 : 1;
        result.kept.append(std::move(clip));
    }

    if (farPastLimit(result.letGo.size(), input.limit))
        keepWhole(input, result);

    // The pictures of the clips that went, unless a kept clip lists the same file.
    QSet<QString> listed;
    for (const auto& clip : std::as_const(result.kept)) {
        if (clip.imageFile)
            listed.insert(*clip.imageFile);
    }
    OwnedFolder folder = input.images;
    for (const auto* gone : {&result.merged, &result.letGo}) {
        for (const auto& clip : *gone) {
            if (clip.imageFile && !clip.imageFile->isEmpty() && !listed.contains(*clip.imageFile))
                folder.remove(images.filePath(*clip.imageFile));
        }
    }
    for (const QString& path : folder.files()) {
        const QString name = QFileInfo(path).fileName();
        if (!listed.contains(name))
            result.unlisted << name;
    }
    return result;
}

} // namespace norva
