#pragma once

#include "app/QmlInstances.h"
#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QtQmlIntegration/qqmlintegration.h>

namespace norva {

class SettingsStore;

// The notch introducing itself: once, the first time it is opened after the first launch (opening
// it by itself would cover what the person is doing), in a few steps the person can skip, and
// again whenever asked (the tour). Each step draws a sample of its own, held here and never
// stored, so the tour reads and writes nothing of the person's. After an update, a short "What's
// new" card shows once. The only things written are Norva's own notes of what was shown.
class FirstRunGuide : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool showing READ showing NOTIFY changed)
    Q_PROPERTY(int step READ step NOTIFY changed)
    Q_PROPERTY(int stepCount READ stepCount CONSTANT)
    Q_PROPERTY(QVariantMap current READ current NOTIFY changed)
    Q_PROPERTY(bool whatsNewShowing READ whatsNewShowing NOTIFY changed)
    Q_PROPERTY(QStringList whatsNew READ whatsNew NOTIFY changed)
    Q_PROPERTY(QString version READ version CONSTANT)

public:
    static FirstRunGuide* create(QQmlEngine*, QJSEngine*) { return QmlInstances::of<FirstRunGuide>(); }
    struct Setup {
        bool firstLaunch = false;
        QString version;       // the running Norva's
        QString calendarsRoot; // where the to-dos and calendars are read from, as the person reads it
        bool remembers = true; // false in the demo: nothing is noted in the preferences
    };

    FirstRunGuide(SettingsStore& settings, Setup setup, QObject* parent = nullptr);

    // The key that remembers the last version whose "What's new" was shown.
    static const QString lastSeenVersionKey; // "whatsNew.lastSeen.v1"

    bool showing() const { return m_showing; }
    int step() const { return m_step; }
    int stepCount() const;
    QVariantMap current() const;
    bool whatsNewShowing() const { return m_whatsNewShowing; }
    QStringList whatsNew() const { return m_whatsNew; }
    QString version() const { return m_setup.version; }

    Q_INVOKABLE void next();
    Q_INVOKABLE void back();
    Q_INVOKABLE void skip();
    // The tour again, from the first step or the one given (Settings, norva --intro-step).
    Q_INVOKABLE void startTour(int fromStep = 0);
    Q_INVOKABLE void dismissWhatsNew();

signals:
    void changed();
    // The tour was asked for, or the introduction or the card went: the notch opens for the tour
    // and lets go after it.
    void wantsNotchChanged(bool wanted);

private:
    QVariantList steps() const;
    void finish();
    void rememberVersion();

    SettingsStore& m_settings;
    Setup m_setup;
    bool m_showing = false;
    int m_step = 0;
    bool m_whatsNewShowing = false;
    QStringList m_whatsNew;
};

} // namespace norva
