#include "clipboard/ClipboardHistory.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>

namespace norva {
namespace {

constexpr quint64 kFnvOffset = 14695981039346656037ULL;
constexpr quint64 kFnvPrime = 1099511628211ULL;
constexpr quint64 kJsonExactBits = (quint64(1) << 53) - 1;

// A share of code-like lines above which a multi-line text counts as code.
constexpr double kCodeLineShare = 0.5;

bool newerFirst(const ClipboardItem& a, const ClipboardItem& b)
{
    return a.date > b.date;
}

bool looksLikeLink(const QString& text)
{
    static const QRegularExpression scheme(QStringLiteral("^(https?|ftp|sftp|ssh|mailto|file|tel):\\S+$"),
                                           QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression bareHost(QStringLiteral("^www\\.[\\w-]+(\\.[\\w-]+)+(/\\S*)?$"),
                                             QRegularExpression::CaseInsensitiveOption);
    if (!scheme.match(text).hasMatch() && !bareHost.match(text).hasMatch())
        return false;
    const QUrl url = QUrl::fromUserInput(text);
    return url.isValid() && (!url.host().isEmpty() || !url.scheme().startsWith(QLatin1String("http")));
}

bool looksLikeColor(const QString& text)
{
    static const QRegularExpression hex(
        QStringLiteral("^#([0-9a-f]{3}|[0-9a-f]{4}|[0-9a-f]{6}|[0-9a-f]{8})$"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression functional(
        QStringLiteral("^(rgb|rgba|hsl|hsla|hwb|oklch|oklab)\\(\\s*[-0-9.%]+(deg)?(\\s*[,/ "
                       "]\\s*[-0-9.%]+){2,3}\\s*\\)$"),
        QRegularExpression::CaseInsensitiveOption);
    return hex.match(text).hasMatch() || functional.match(text).hasMatch();
}

bool isCodeLine(const QString& line)
{
    static const QRegularExpression opening(QStringLiteral(
        "^\\s*(#include|#define|#!|import |from \\S+ import|def |class |function |fn |func |package |"
        "using |return\\b|const |let |var |public |private |if \\(|for \\(|while \\(|}|//|/\\*)"));
    const QString trimmed = line.trimmed();
    if (trimmed.isEmpty())
        return false;
    const QChar last = trimmed.back();
    return last == QLatin1Char(';') || last == QLatin1Char('{') || last == QLatin1Char('}') ||
           trimmed.endsWith(QLatin1String("):")) || trimmed.contains(QLatin1String("=>")) ||
           opening.match(line).hasMatch();
}

bool looksLikeCode(const QString& text)
{
    const QStringList lines = text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (lines.size() == 1) {
        // One line is code when it reads as a statement: a call or an assignment ending in ';'.
        static const QRegularExpression statement(QStringLiteral("^[^\\s].*[=(].*;$"));
        return statement.match(text).hasMatch() || text.startsWith(QLatin1String("#include"));
    }
    const auto codeLines = std::count_if(lines.begin(), lines.end(), isCodeLine);
    return double(codeLines) / double(lines.size()) >= kCodeLineShare;
}

} // namespace

const ClipboardItem* ClipboardHistory::find(const QUuid& id) const
{
    const int at = indexOf(id);
    return at < 0 ? nullptr : &m_items.at(at);
}

int ClipboardHistory::indexOf(const QUuid& id) const
{
    for (int i = 0; i < m_items.size(); ++i) {
        if (m_items.at(i).id == id)
            return i;
    }
    return -1;
}

ClipboardHistory::Recorded ClipboardHistory::record(const ClipboardItem& clip)
{
    const auto content = contentOf(clip);
    if (content) {
        for (int i = 0; i < m_items.size(); ++i) {
            if (contentOf(m_items.at(i)) != content)
                continue;
            ClipboardItem held = m_items.takeAt(i);
            held.date = clip.date;
            held.app = clip.app;
            const QUuid id = held.id;
            m_items.prepend(std::move(held));
            return {Recorded::Kind::broughtBack, id};
        }
    }
    m_items.prepend(clip);
    return {Recorded::Kind::added, clip.id};
}

QList<ClipboardItem> ClipboardHistory::trim(int limit)
{
    const int kept = std::max(limit, 0);
    int unpinned = 0;
    for (const auto& item : std::as_const(m_items))
        unpinned += item.pinned ? 0 : 1;
    QList<ClipboardItem> letGo;
    for (int i = m_items.size() - 1; i >= 0 && unpinned > kept; --i) {
        if (m_items.at(i).pinned)
            continue;
        m_keys.remove(m_items.at(i).id);
        letGo.append(m_items.takeAt(i));
        --unpinned;
    }
    return letGo;
}

void ClipboardHistory::replaceAll(QList<ClipboardItem> items)
{
    std::stable_sort(items.begin(), items.end(), newerFirst);
    m_items = std::move(items);
    m_keys.clear();
}

QList<ClipboardItem> ClipboardHistory::mergeDuplicates()
{
    QList<ClipboardItem> folded;
    QList<ClipboardItem> kept;
    kept.reserve(m_items.size());
    QHash<Content, qsizetype> keeperAt; // where each content's keeper sits in `kept`
    // Newest first, so the first clip met with a content is the one copied last.
    for (auto& item : m_items) {
        const auto content = contentOf(item);
        if (!content) {
            kept.append(std::move(item));
            continue;
        }
        const auto keeper = keeperAt.constFind(*content);
        if (keeper == keeperAt.cend()) {
            keeperAt.insert(*content, kept.size());
            kept.append(std::move(item));
            continue;
        }
        // A pin on either copy survives on the one kept.
        if (item.pinned)
            kept[*keeper].pinned = true;
        m_keys.remove(item.id);
        folded.append(std::move(item));
    }
    m_items = std::move(kept);
    return folded;
}

bool ClipboardHistory::bringBack(const QUuid& id, const QDateTime& date)
{
    const int at = indexOf(id);
    if (at < 0)
        return false;
    ClipboardItem item = m_items.takeAt(at);
    item.date = date;
    m_items.prepend(std::move(item));
    return true;
}

bool ClipboardHistory::setPinned(const QUuid& id, bool pinned)
{
    const int at = indexOf(id);
    if (at < 0 || m_items.at(at).pinned == pinned)
        return false;
    m_items[at].pinned = pinned;
    return true;
}

std::optional<ClipboardItem> ClipboardHistory::remove(const QUuid& id)
{
    const int at = indexOf(id);
    if (at < 0)
        return std::nullopt;
    m_keys.remove(id);
    return m_items.takeAt(at);
}

QList<ClipboardItem> ClipboardHistory::clearAllButPinned()
{
    QList<ClipboardItem> cleared;
    QList<ClipboardItem> kept;
    for (auto& item : m_items)
        (item.pinned ? kept : cleared).append(std::move(item));
    for (const auto& item : std::as_const(cleared))
        m_keys.remove(item.id);
    m_items = std::move(kept);
    return cleared;
}

void ClipboardHistory::setContentHash(const QUuid& id, qint64 hash)
{
    const int at = indexOf(id);
    if (at >= 0)
        m_items[at].contentHash = hash;
}

QList<ClipboardItem> ClipboardHistory::ordered() const
{
    QList<ClipboardItem> shown;
    shown.reserve(m_items.size());
    for (const auto& item : m_items) {
        if (item.pinned)
            shown.append(item);
    }
    for (const auto& item : m_items) {
        if (!item.pinned)
            shown.append(item);
    }
    return shown;
}

QList<ClipboardItem> ClipboardHistory::search(const QString& query) const
{
    const QList<QByteArray> words = searchedWords(query);
    if (words.isEmpty())
        return ordered();
    QList<ClipboardItem> found;
    // Two passes over the list as it is held (pins first), so no ordered copy is made per search.
    for (const bool pinnedPass : {true, false}) {
        for (const auto& item : m_items) {
            if (item.pinned != pinnedPass)
                continue;
            const QByteArray& key = cachedKey(item);
            const bool all = std::all_of(words.begin(), words.end(),
                                         [&key](const QByteArray& word) { return key.contains(word); });
            if (all)
                found.append(item);
        }
    }
    return found;
}

const QByteArray& ClipboardHistory::cachedKey(const ClipboardItem& clip) const
{
    auto found = m_keys.find(clip.id);
    if (found == m_keys.end())
        found = m_keys.insert(clip.id, searchKey(clip).bytes);
    return *found;
}

QList<QByteArray> ClipboardHistory::searchedWords(const QString& query)
{
    QList<QByteArray> words;
    for (const QByteArray& word : searchKey(query).bytes.split(' ')) {
        if (!word.isEmpty())
            words.append(word);
    }
    return words;
}

ClipboardHistory::SearchKey ClipboardHistory::searchKey(const QString& words)
{
    // Decompose, drop the combining marks, fold case: "Café" and "cafe" find each other.
    const QString decomposed = words.normalized(QString::NormalizationForm_KD);
    QString folded;
    folded.reserve(decomposed.size());
    bool space = true;
    for (const QChar c : decomposed) {
        if (c.category() == QChar::Mark_NonSpacing)
            continue;
        if (c.isSpace()) {
            if (!space)
                folded.append(QLatin1Char(' '));
            space = true;
            continue;
        }
        folded.append(c.toCaseFolded());
        space = false;
    }
    if (folded.endsWith(QLatin1Char(' ')))
        folded.chop(1);
    return {folded.toUtf8()};
}

ClipboardHistory::SearchKey ClipboardHistory::searchKey(const ClipboardItem& clip)
{
    QStringList words;
    if (clip.text)
        words << *clip.text;
    if (clip.filePaths) {
        for (const QString& path : *clip.filePaths)
            words << QFileInfo(path).fileName();
    }
    if (clip.app)
        words << *clip.app;
    return searchKey(words.join(QLatin1Char(' ')));
}

std::optional<ClipboardHistory::Content> ClipboardHistory::contentOf(const ClipboardItem& clip)
{
    if (clip.contentHash)
        return Content{clip.kind, *clip.contentHash};
    return std::nullopt;
}

ClipboardKind ClipboardHistory::classify(const QString& text)
{
    const QString trimmed = text.trimmed();
    if (looksLikeColor(trimmed))
        return ClipboardKind::color;
    if (!trimmed.contains(QRegularExpression(QStringLiteral("\\s"))) && looksLikeLink(trimmed))
        return ClipboardKind::link;
    if (looksLikeCode(trimmed))
        return ClipboardKind::code;
    return ClipboardKind::text;
}

qint64 ClipboardHistory::stableHash(const QByteArray& bytes)
{
    quint64 hash = kFnvOffset;
    for (const char byte : bytes) {
        hash ^= static_cast<unsigned char>(byte);
        hash *= kFnvPrime;
    }
    return static_cast<qint64>(hash & kJsonExactBits);
}

} // namespace norva
