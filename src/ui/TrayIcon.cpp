#include "ui/TrayIcon.h"

#include "app/SettingsStore.h"

#include <QPainter>
#include <QPixmap>

namespace norva {
namespace {

// A notch drawn small: a black rounded bar with a light outline, legible on dark and light panels.
QIcon drawnIcon()
{
    QPixmap pixmap(64, 64);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(0xf2, 0xf2, 0xf5), 4));
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(QRectF(6, 18, 52, 26), 12, 12);
    return QIcon(pixmap);
}

} // namespace

TrayIcon::TrayIcon(SettingsStore& settings, QObject* parent) : QObject(parent), m_settings(settings)
{
    m_menu.addAction(tr("Open Norva"), this, &TrayIcon::openRequested);
    m_menu.addAction(tr("Settings…"), this, &TrayIcon::settingsRequested);
    m_menu.addSeparator();
    m_menu.addAction(tr("Quit Norva"), this, &TrayIcon::quitRequested);
    m_icon.setIcon(drawnIcon());
    m_icon.setToolTip(QStringLiteral("Norva"));
    m_icon.setContextMenu(&m_menu);
    connect(&m_icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger)
            emit openRequested();
    });
    connect(&m_settings, &SettingsStore::changed, this, &TrayIcon::follow);
    follow();
}

void TrayIcon::follow()
{
    m_icon.setVisible(m_settings.showMenuBarIcon() && QSystemTrayIcon::isSystemTrayAvailable());
}

} // namespace norva
