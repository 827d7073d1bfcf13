#include "clipboard/ClipboardPageModel.h"

#include "clipboard/ClipboardManager.h"
#include "clipboard/ClipboardTexts.h"

#include <QFileInfo>
#include <QUrl>

namespace norva {

ClipboardPageModel::ClipboardPageModel(ClipboardManager& manager, QObject* parent)
    : QObject(parent), m_manager(manager), m_rows(QStringLiteral("id"), this)
{
    connect(&m_manager, &ClipboardManager::itemsChanged, this, &ClipboardPageModel::refreshRows);
    connect(&m_manager, &ClipboardManager::copiedItemChanged, this, &ClipboardPageModel::refreshRows);
    connect(&m_manager, &ClipboardManager::historyOnChanged, this, &ClipboardPageModel::refreshRows);
    refreshRows();
}

void ClipboardPageModel::refreshRows()
{
    m_rows.setRows(matchingRows());
    emit rowsChanged();
}

bool ClipboardPageModel::historyOn() const
{
    return m_manager.historyOn();
}

QString ClipboardPageModel::footer() const
{
    return ClipboardTexts::privateFooter;
}

void ClipboardPageModel::setQuery(const QString& query)
{
    if (query == m_query)
        return;
    m_query = query;
    emit queryChanged();
    refreshRows();
}

QVariantList ClipboardPageModel::matchingRows() const
{
    QVariantList rows;
    const auto copied = m_manager.copiedItemID();
    for (const auto& clip : m_manager.search(m_query)) {
        QString preview = clip.text.value_or(QString());
        if (clip.filePaths) {
            QStringList names;
            for (const QString& path : *clip.filePaths)
                names << QFileInfo(path).fileName();
            preview = names.join(QStringLiteral(", "));
        }
        if (preview.size() > kPreviewLength)
            preview = preview.left(kPreviewLength) + QChar(0x2026);
        rows.append(QVariantMap{
            {QStringLiteral("id"), clip.id.toString(QUuid::WithoutBraces)},
            {QStringLiteral("kind"), ClipboardItem::kindName(clip.kind)},
            {QStringLiteral("preview"), preview},
            {QStringLiteral("imageUrl"),
             clip.kind == ClipboardKind::image ? QUrl::fromLocalFile(m_manager.imagePath(clip)) : QUrl()},
            {QStringLiteral("pinned"), clip.pinned},
            {QStringLiteral("app"), clip.app.value_or(QString())},
            {QStringLiteral("date"), clip.date.toLocalTime()},
            {QStringLiteral("copied"), copied && *copied == clip.id}});
    }
    return rows;
}

QString ClipboardPageModel::emptyText() const
{
    if (!historyOn())
        return ClipboardTexts::historyOff;
    if (m_manager.items().isEmpty())
        return ClipboardTexts::empty;
    if (!m_query.trimmed().isEmpty() && m_manager.search(m_query).isEmpty())
        return ClipboardTexts::nothingMatchesOpening + m_query.trimmed() +
               ClipboardTexts::nothingMatchesClosing;
    return {};
}

void ClipboardPageModel::setNotice(const QString& notice)
{
    if (notice == m_notice)
        return;
    m_notice = notice;
    emit noticeChanged();
}

void ClipboardPageModel::copy(const QString& id)
{
    setNotice(m_manager.copy(QUuid::fromString(id)).message);
}

void ClipboardPageModel::setPinned(const QString& id, bool pinned)
{
    m_manager.setPinned(QUuid::fromString(id), pinned);
}

void ClipboardPageModel::remove(const QString& id)
{
    m_manager.remove(QUuid::fromString(id));
}

void ClipboardPageModel::clearAllButPinned()
{
    m_manager.clearAllButPinned();
    setNotice(ClipboardTexts::cleared);
}

void ClipboardPageModel::dismissNotice()
{
    setNotice({});
}

} // namespace norva
