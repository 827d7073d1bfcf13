#include "ui/TrayIcon.h"

#include "app/SettingsStore.h"

#include <QDBusConnection>
#include <QImage>
#include <QPainter>

namespace norva {
namespace {

// The menu's entries; their ids count from 1 in this order (0 is a separator's place).
enum MenuEntry { openEntry = 1, settingsEntry = 2, quitEntry = 4 };

// A notch drawn small: a black rounded bar with a light outline, legible on dark and light panels.
QImage drawnIcon()
{
    QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(0xf2, 0xf2, 0xf5), 4));
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(QRectF(6, 18, 52, 26), 12, 12);
    return image;
}

} // namespace

TrayIcon::TrayIcon(SettingsStore& settings, QObject* parent)
    : QObject(parent), m_settings(settings),
      m_item(QDBusConnection::sessionBus(), QStringLiteral("norva"), QStringLiteral("Norva"), drawnIcon(),
             {{tr("Open Norva")}, {tr("Settings…")}, {}, {tr("Quit Norva")}})
{
    connect(&m_item, &StatusNotifierItem::activated, this, &TrayIcon::openRequested);
    connect(&m_item, &StatusNotifierItem::menuTriggered, this, [this](int id) {
        switch (id) {
        case openEntry:
            emit openRequested();
            break;
        case settingsEntry:
            emit settingsRequested();
            break;
        case quitEntry:
            emit quitRequested();
            break;
        default:
            break;
        }
    });
    connect(&m_settings, &SettingsStore::changed, this, &TrayIcon::follow);
    follow();
}

void TrayIcon::follow()
{
    m_item.setShown(m_settings.showMenuBarIcon());
}

} // namespace norva
