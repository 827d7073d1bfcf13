#pragma once

#include "app/QmlInstances.h"
#include "app/RowsModel.h"
#include "hotkeys/HotKeyGrab.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariantList>
#include <QtQmlIntegration/qqmlintegration.h>

namespace norva {

class SettingsStore;

// Norva's hot keys as the person set them: each is a text setting ("Ctrl+Alt+J", empty for none)
// that is grabbed for the whole desktop, and re-grabbed when the setting changes. A key that
// cannot be had (another program holds it, the desktop lets no program take keys, the text is not
// a key) is told on the Settings page in plain words and logged once; the command line named in
// the message opens the same thing from the desktop's own shortcut settings.
class HotKeys : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    // One row per hot key: name, title, key (as the person wrote it), trouble (empty when it works).
    Q_PROPERTY(norva::RowsModel* keys READ keys CONSTANT)

public:
    static HotKeys* create(QQmlEngine*, QJSEngine*) { return QmlInstances::of<HotKeys>(); }
    struct Action {
        QString name;       // the grab's name, and what pressed() says
        QString settingKey; // the preference that holds the key
        QString defaultKey; // used while the preference is absent
        QString title;      // what the key does, for the Settings page
        QString opens;      // what it opens, in a sentence: "the jot sheet"
        QString command;    // the command line that does the same
    };
    static const QString jotName;  // "jot"
    static const QString openName; // "open"
    static const QList<Action>& actions();

    HotKeys(SettingsStore& settings, HotKeyGrab& grab, QObject* parent = nullptr);

    // Grabs every key and follows the settings from now on.
    void start();
    RowsModel* keys() { return &m_keys; }
    // What stands in the way of this hot key; empty while it works or when it is switched off.
    QString trouble(const QString& name) const;
    QString keyText(const QString& name) const;
    // Sets a key from what the person typed; an empty text switches the key off.
    Q_INVOKABLE void setKey(const QString& name, const QString& text);

signals:
    void pressed(const QString& name);
    void keysChanged();

private:
    void bindAll();
    QString bind(const Action& action, const QString& keyText);
    void report(const Action& action, const QString& keyText, const QString& why);
    // Lays the keys as they now stand over the listed ones, then says they changed.
    void refreshKeys();
    QVariantList keyRows() const;

    SettingsStore& m_settings;
    HotKeyGrab& m_grab;
    QHash<QString, QString> m_bound;    // the key text each grab was made for
    QHash<QString, QString> m_troubles; // per action, the message shown
    QHash<QString, QString> m_logged;   // per action, the last line logged, so a line is not repeated
    RowsModel m_keys;
};

} // namespace norva
