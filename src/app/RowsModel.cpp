#include "app/RowsModel.h"

namespace norva {

namespace {

// Moves one by one past this many cost more than a view rebuilding its delegates.
constexpr int kMostMoves = 64;

} // namespace

RowsModel::RowsModel(QString keyField, QObject* parent)
    : QAbstractListModel(parent), m_keyField(std::move(keyField))
{}

QString RowsModel::keyOf(const QVariant& row) const
{
    return row.toMap().value(m_keyField).toString();
}

QVariantMap RowsModel::get(int row) const
{
    return row >= 0 && row < count() ? m_rows.at(row).toMap() : QVariantMap();
}

int RowsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant RowsModel::data(const QModelIndex& index, int role) const
{
    if (role != Qt::UserRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    return m_rows.at(index.row());
}

QHash<int, QByteArray> RowsModel::roleNames() const
{
    // Delegates read their row by this name; Qt hands a single role out as `modelData` too, but
    // does not tell a kept delegate when it changes.
    return {{Qt::UserRole, "row"}};
}

void RowsModel::setRows(const QVariantList& rows)
{
    const int before = count();
    if (m_keyField.isEmpty()) {
        setByPosition(rows);
    } else if (const std::optional<QSet<QString>> keys = distinctKeys(rows); !keys) {
        reset(rows);
    } else {
        removeGone(*keys);
        if (!placeInOrder(rows))
            reset(rows);
    }
    if (count() != before)
        emit countChanged();
}

std::optional<QSet<QString>> RowsModel::distinctKeys(const QVariantList& rows) const
{
    QSet<QString> keys;
    keys.reserve(rows.size());
    for (const QVariant& row : rows) {
        const QString key = keyOf(row);
        if (key.isEmpty() || keys.contains(key))
            return std::nullopt;
        keys.insert(key);
    }
    return keys;
}

void RowsModel::removeGone(const QSet<QString>& kept)
{
    for (int last = count() - 1; last >= 0;) {
        if (kept.contains(keyOf(m_rows.at(last)))) {
            --last;
            continue;
        }
        int first = last;
        while (first > 0 && !kept.contains(keyOf(m_rows.at(first - 1))))
            --first;
        beginRemoveRows({}, first, last);
        m_rows.remove(first, last - first + 1);
        endRemoveRows();
        last = first - 1;
    }
}

bool RowsModel::placeInOrder(const QVariantList& rows)
{
    QSet<QString> shown;
    shown.reserve(m_rows.size());
    for (const QVariant& row : std::as_const(m_rows))
        shown.insert(keyOf(row));
    int moves = 0;
    for (int i = 0; i < rows.size(); ++i) {
        const QString key = keyOf(rows.at(i));
        if (!shown.contains(key)) {
            int end = i + 1;
            while (end < rows.size() && !shown.contains(keyOf(rows.at(end))))
                ++end;
            beginInsertRows({}, i, end - 1);
            for (int added = i; added < end; ++added)
                m_rows.insert(added, rows.at(added));
            endInsertRows();
            i = end - 1;
            continue;
        }
        if (keyOf(m_rows.at(i)) != key) {
            if (++moves > kMostMoves)
                return false;
            int from = i + 1;
            while (keyOf(m_rows.at(from)) != key)
                ++from;
            beginMoveRows({}, from, from, {}, i);
            m_rows.move(from, i);
            endMoveRows();
        }
        if (m_rows.at(i) != rows.at(i)) {
            m_rows[i] = rows.at(i);
            emit dataChanged(index(i), index(i), {Qt::UserRole});
        }
    }
    return true;
}

void RowsModel::setByPosition(const QVariantList& rows)
{
    const int shared = static_cast<int>(std::min(rows.size(), m_rows.size()));
    if (count() > shared) {
        beginRemoveRows({}, shared, count() - 1);
        m_rows.resize(shared);
        endRemoveRows();
    }
    for (int i = 0; i < shared; ++i) {
        if (m_rows.at(i) != rows.at(i)) {
            m_rows[i] = rows.at(i);
            emit dataChanged(index(i), index(i), {Qt::UserRole});
        }
    }
    if (rows.size() > shared) {
        beginInsertRows({}, shared, static_cast<int>(rows.size()) - 1);
        m_rows.append(rows.mid(shared));
        endInsertRows();
    }
}

void RowsModel::reset(const QVariantList& rows)
{
    beginResetModel();
    m_rows = rows;
    endResetModel();
}

} // namespace norva
