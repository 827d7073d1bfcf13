#pragma once

#include "app/QmlInstances.h"
#include "shell/FeaturePage.h"

#include <QObject>
#include <QVariantList>
#include <QtQmlIntegration/qqmlintegration.h>

namespace norva {

// What the QML asks of Norva as a whole: the open panel's pages, whether this is the demo, what the
// desktop does not let Norva do, and the wishes to open the notch, the jot sheet or the settings,
// or to quit, which the running application carries out.
class AppFront : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(App)
    QML_SINGLETON
    Q_PROPERTY(QVariantList pages READ pages CONSTANT)
    Q_PROPERTY(bool demo READ demo CONSTANT)
    Q_PROPERTY(QString desktopLimits READ desktopLimits CONSTANT)

public:
    AppFront(QList<FeaturePage> pages, bool demo, QString desktopLimits, QObject* parent = nullptr);
    static AppFront* create(QQmlEngine*, QJSEngine*) { return QmlInstances::of<AppFront>(); }

    QVariantList pages() const;
    bool demo() const { return m_demo; }
    // What does not work on the way this desktop lets Norva draw (empty where everything works).
    QString desktopLimits() const { return m_desktopLimits; }
    // Whether a QML file ships inside Norva (a page that is not built yet shows its empty text).
    Q_INVOKABLE bool hasQml(const QString& fileName) const;
    // One page's id, title, QML file and empty text; the first page for an unknown id.
    Q_INVOKABLE QVariantMap pageInfo(const QString& id) const;
    // The settings window (the notch's Settings page where no window can be made).
    Q_INVOKABLE void openSettings() { emit settingsWanted(); }
    Q_INVOKABLE void openNotch(const QString& page = {}) { emit notchWanted(page); }
    // The notes with the jot sheet over them (the notch's button).
    Q_INVOKABLE void openJot() { emit jotWanted(); }
    Q_INVOKABLE void quit() { emit quitWanted(); }

signals:
    void settingsWanted();
    void notchWanted(const QString& page);
    void jotWanted();
    void quitWanted();

private:
    QList<FeaturePage> m_pages;
    bool m_demo = false;
    QString m_desktopLimits;
};

} // namespace norva
