#pragma once

#include "app/QmlInstances.h"
#include "app/RowsModel.h"
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQmlIntegration/qqmlintegration.h>

namespace norva {

class ClipboardManager;

// The clipboard page's view model: the rows for the current search, the page's texts (empty,
// off, no match, the private-copies footer) and the actions a row offers.
class ClipboardPageModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(norva::RowsModel* rows READ rows CONSTANT)
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(bool historyOn READ historyOn NOTIFY rowsChanged)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY rowsChanged)
    Q_PROPERTY(QString footer READ footer CONSTANT)
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)

public:
    static ClipboardPageModel* create(QQmlEngine*, QJSEngine*)
    {
        return QmlInstances::of<ClipboardPageModel>();
    }
    // The most characters of a clip's text shown in its row.
    static constexpr int kPreviewLength = 280;

    explicit ClipboardPageModel(ClipboardManager& manager, QObject* parent = nullptr);

    RowsModel* rows() { return &m_rows; }
    QString query() const { return m_query; }
    void setQuery(const QString& query);
    bool historyOn() const;
    // What the page says instead of rows, or nothing when there are rows to show.
    QString emptyText() const;
    QString footer() const;
    QString notice() const { return m_notice; }

    Q_INVOKABLE void copy(const QString& id);
    Q_INVOKABLE void setPinned(const QString& id, bool pinned);
    Q_INVOKABLE void remove(const QString& id);
    Q_INVOKABLE void clearAllButPinned();
    Q_INVOKABLE void dismissNotice();

signals:
    void rowsChanged();
    void queryChanged();
    void noticeChanged();

private:
    void setNotice(const QString& notice);
    // Lays the clips that match the search over the shown rows, then says the page changed.
    void refreshRows();
    QVariantList matchingRows() const;

    ClipboardManager& m_manager;
    QString m_query;
    QString m_notice;
    RowsModel m_rows;
};

} // namespace norva
