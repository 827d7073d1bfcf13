#pragma once

#include "app/QmlInstances.h"
#include <QDBusVariant>
#include <QObject>

#include <QtQmlIntegration/qqmlintegration.h>
#include <optional>

namespace norva {

// Whether the desktop prefers dark windows, for the settings window. Qt 6.4 has no colour-scheme
// hint of its own (QStyleHints::colorScheme came with 6.5), so Norva asks the freedesktop settings
// portal ("org.freedesktop.appearance" "color-scheme"), which GNOME and KDE answer and tell of
// changes; without an answer, the palette's window colour decides.
class DesktopColorScheme : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ dark NOTIFY darkChanged)
public:
    static DesktopColorScheme* create(QQmlEngine*, QJSEngine*)
    {
        return QmlInstances::of<DesktopColorScheme>();
    }
    explicit DesktopColorScheme(QObject* parent = nullptr);

    bool dark() const;
    // The portal's word: 1 prefers dark, 2 prefers light, 0 (or none) says nothing.
    static std::optional<bool> fromPortal(uint preference);

signals:
    void darkChanged();

private slots:
    void onSettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void ask();
    void take(std::optional<bool> portal);

    std::optional<bool> m_portal;
};

} // namespace norva
