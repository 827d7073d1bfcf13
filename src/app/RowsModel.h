#pragma once

#include <QAbstractListModel>
#include <QSet>
#include <QVariantList>
#include <QtQmlIntegration/qqmlintegration.h>

#include <optional>

namespace norva {

// A page's list as QML's views want it: one row per record, each row a map the delegate reads as
// `required property var row` (not `modelData`, which a kept delegate does not see change). A new list is
// laid over the old one by the rows' keys, so a view keeps the delegates of rows that stayed, moves the ones
// that moved, and rebuilds only what was added or changed.
class RowsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the pages' models")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    // keyField names the map entry that tells rows apart ("id" for most lists); a list whose rows
    // have no identity of their own (hours of a forecast, lines of a song) passes an empty one and
    // is laid over by position.
    explicit RowsModel(QString keyField = QStringLiteral("id"), QObject* parent = nullptr);

    // Lays the new rows over the shown ones: removals, inserts, moves and changed rows as their own
    // signals; a reordering too large to say move by move resets the view instead.
    void setRows(const QVariantList& rows);
    const QVariantList& rows() const { return m_rows; }
    int count() const { return static_cast<int>(m_rows.size()); }
    Q_INVOKABLE QVariantMap get(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void countChanged();

private:
    QString keyOf(const QVariant& row) const;
    // The rows' keys, or nothing when a key is missing or repeated and rows cannot be told apart.
    std::optional<QSet<QString>> distinctKeys(const QVariantList& rows) const;
    // Removes the shown rows whose keys are not kept, in runs.
    void removeGone(const QSet<QString>& kept);
    bool placeInOrder(const QVariantList& rows);
    void setByPosition(const QVariantList& rows);
    void reset(const QVariantList& rows);

    QString m_keyField;
    QVariantList m_rows;
};

} // namespace norva
