#pragma once

#include "app/QmlInstances.h"
#include "app/RowsModel.h"
#include "notch/DisplayInfo.h"
#include "settings/SettingDescription.h"
#include "settings/SettingsChecks.h"

#include <QObject>
#include <QVariantList>

#include <QtQmlIntegration/qqmlintegration.h>
#include <functional>

namespace norva {

class SettingsStore;

// What the settings window draws: the groups, and the rows of the group on show with their values
// as stored now and whether what they need works. Each change is written at once through the
// settings store, and outside edits of the preferences show at once.
class SettingsWindowModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QVariantList groups READ groups CONSTANT)
    Q_PROPERTY(QString section READ section WRITE setSection NOTIFY sectionChanged)
    Q_PROPERTY(norva::RowsModel* rows READ rows CONSTANT)
    Q_PROPERTY(QString summary READ summary NOTIFY sectionChanged)

public:
    static SettingsWindowModel* create(QQmlEngine*, QJSEngine*)
    {
        return QmlInstances::of<SettingsWindowModel>();
    }
    // The displays the notch may be put on.
    using ListDisplays = std::function<QList<DisplayInfo>()>;

    SettingsWindowModel(SettingsStore& settings, SettingsChecks checks, ListDisplays displays,
                        QObject* parent = nullptr);

    QVariantList groups() const;
    QString section() const;
    void setSection(const QString& groupId);
    QString summary() const;
    RowsModel* rows() { return &m_rows; }

    // The value of one setting as the window shows it (the fallback when the key is absent).
    Q_INVOKABLE QVariant value(const QString& key) const;
    // Writes one setting at once, clamped to its range; an invalid value removes the key.
    Q_INVOKABLE void setValue(const QString& key, const QVariant& value);
    // Looks again at what settings need outside Norva (the window calls it when shown).
    Q_INVOKABLE void refresh();

signals:
    void sectionChanged();
    void rowsChanged();

private:
    QVariantMap describe(const struct SettingDescription& row) const;
    QVariantList optionsOf(const SettingDescription& row) const;

    SettingsStore& m_settings;
    SettingsChecks m_checks;
    ListDisplays m_displays;
    RowsModel m_rows;
};

} // namespace norva
