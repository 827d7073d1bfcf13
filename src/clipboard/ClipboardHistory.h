#pragma once

#include "clipboard/ClipboardItem.h"

#include <QByteArray>
#include <QHash>
#include <QHashFunctions>
#include <QList>

#include <optional>

namespace norva {

// The pure list logic of the clipboard history: newest first, one clip per content (a copy of
// something already held brings that clip back to the top), a limit that only unpinned clips
// count against, and search over each clip's words. No files, no clipboard, no clock.
class ClipboardHistory {
public:
    // The identity of a clip's content for de-duplication.
    struct Content {
        ClipboardKind kind = ClipboardKind::text;
        qint64 hash = 0;
        bool operator==(const Content&) const = default;
        friend size_t qHash(const Content& content, size_t seed = 0)
        {
            return qHashMulti(seed, static_cast<int>(content.kind), content.hash);
        }
    };
    // What record() did: brought an existing clip back to the top, or added a new one.
    struct Recorded {
        enum class Kind { added, broughtBack };
        Kind kind = Kind::added;
        QUuid id;
        bool operator==(const Recorded&) const = default;
    };
    // The normalised words of a clip (case and accents folded, spaces collapsed), as UTF-8.
    struct SearchKey {
        QByteArray bytes;
    };

    // Newest first.
    const QList<ClipboardItem>& recency() const { return m_items; }
    const ClipboardItem* find(const QUuid& id) const;

    // Files a clip at the top, or brings back the held clip with the same content (its date and
    // app take the new copy's; its id, pin and caption stay).
    Recorded record(const ClipboardItem& clip);
    // Lets the oldest unpinned clips go while more than `limit` unpinned clips are held
    // (a negative limit counts as 0). Returns the clips let go, oldest last.
    QList<ClipboardItem> trim(int limit);
    // Replaces the whole list (after loading); it is put in recency order.
    void replaceAll(QList<ClipboardItem> items);
    // Folds clips held twice with the same content into the one copied last; returns those folded away.
    QList<ClipboardItem> mergeDuplicates();
    // Moves a clip to the top with a new date (it was copied again from the notch).
    bool bringBack(const QUuid& id, const QDateTime& date);

    bool setPinned(const QUuid& id, bool pinned);
    std::optional<ClipboardItem> remove(const QUuid& id);
    QList<ClipboardItem> clearAllButPinned();
    void setContentHash(const QUuid& id, qint64 hash);

    // Pinned clips first, then the others, each group newest first.
    QList<ClipboardItem> ordered() const;
    // The clips (in display order) whose words hold every word of the query; an empty query gives all.
    QList<ClipboardItem> search(const QString& query) const;

    static QList<QByteArray> searchedWords(const QString& query);
    static SearchKey searchKey(const ClipboardItem& clip);
    static SearchKey searchKey(const QString& words);
    static std::optional<Content> contentOf(const ClipboardItem& clip);
    // How a copied string is filed: link, colour, code or plain text.
    static ClipboardKind classify(const QString& text);
    // A hash that is the same in every run (it is stored): FNV-1a over the bytes, kept to 53 bits
    // so that it survives any JSON reader as an exact integer.
    static qint64 stableHash(const QByteArray& bytes);
    // The bytes hashed for a text clip and for a file clip.
    static QByteArray hashedBytes(const QString& text) { return text.toUtf8(); }
    static QByteArray hashedBytes(const QStringList& filePaths)
    {
        return filePaths.join(QLatin1Char('\n')).toUtf8();
    }

private:
    int indexOf(const QUuid& id) const;
    const QByteArray& cachedKey(const ClipboardItem& clip) const;

    QList<ClipboardItem> m_items;
    mutable QHash<QUuid, QByteArray> m_keys; // search keys by clip id; a clip's words never change
};

} // namespace norva
