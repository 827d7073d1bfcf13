#include "hotkeys/HotKeys.h"

#include "app/Log.h"
#include "app/SettingsStore.h"

#include <QKeySequence>
#include <QVariantMap>

namespace norva {
namespace {

QString quoted(const QString& text)
{
    return QStringLiteral("\u201C") + text + QStringLiteral("\u201D");
}

bool isFunctionKey(Qt::Key key)
{
    return key >= Qt::Key_F1 && key <= Qt::Key_F35;
}

} // namespace

const QString HotKeys::jotName = QStringLiteral("jot");
const QString HotKeys::openName = QStringLiteral("open");

const QList<HotKeys::Action>& HotKeys::actions()
{
    static const QList<Action> list{
        {openName, QStringLiteral("hotkeys.open.v1"), QStringLiteral("Ctrl+Alt+N"),
         QStringLiteral("Open the notch"), QStringLiteral("the notch"), QStringLiteral("norva --open")},
        {jotName, QStringLiteral("hotkeys.jot.v1"), QStringLiteral("Ctrl+Alt+J"),
         QStringLiteral("Jot a note"), QStringLiteral("the jot sheet"), QStringLiteral("norva --jot")},
    };
    return list;
}

HotKeys::HotKeys(SettingsStore& settings, HotKeyGrab& grab, QObject* parent)
    : QObject(parent), m_settings(settings), m_grab(grab), m_keys(QStringLiteral("name"), this)
{
    connect(&m_grab, &HotKeyGrab::pressed, this, &HotKeys::pressed);
    refreshKeys();
}

void HotKeys::refreshKeys()
{
    m_keys.setRows(keyRows());
    emit keysChanged();
}

void HotKeys::start()
{
    connect(&m_settings, &SettingsStore::changed, this, &HotKeys::bindAll);
    bindAll();
}

QString HotKeys::keyText(const QString& name) const
{
    for (const Action& action : actions()) {
        if (action.name == name)
            return m_settings.storedText(action.settingKey, QStringLiteral("a key such as Ctrl+Alt+J"))
                .value_or(action.defaultKey)
                .trimmed();
    }
    return {};
}

QString HotKeys::trouble(const QString& name) const
{
    return m_troubles.value(name);
}

QVariantList HotKeys::keyRows() const
{
    QVariantList list;
    for (const Action& action : actions()) {
        list.append(QVariantMap{{QStringLiteral("name"), action.name},
                                {QStringLiteral("title"), action.title},
                                {QStringLiteral("key"), keyText(action.name)},
                                {QStringLiteral("command"), action.command},
                                {QStringLiteral("trouble"), trouble(action.name)}});
    }
    return list;
}

void HotKeys::setKey(const QString& name, const QString& text)
{
    for (const Action& action : actions()) {
        if (action.name != name)
            continue;
        // Kept as Qt's portable text, so "ctrl+alt+j" and "Ctrl+Alt+J" are one key.
        const QKeySequence sequence = QKeySequence::fromString(text.trimmed(), QKeySequence::PortableText);
        const QString tidy = sequence.count() == 1 && sequence[0].key() != Qt::Key_unknown
                                 ? sequence.toString(QKeySequence::PortableText)
                                 : text.trimmed();
        m_settings.write(tidy, action.settingKey); // publishes changed(), which binds it
    }
}

void HotKeys::bindAll()
{
    bool news = false;
    for (const Action& action : actions()) {
        const QString text = keyText(action.name);
        if (m_bound.contains(action.name) && m_bound.value(action.name) == text)
            continue;
        m_bound.insert(action.name, text);
        const QString why = bind(action, text);
        m_troubles.insert(action.name, why);
        news = true;
    }
    if (news)
        refreshKeys();
}

// Grabs one key; answers what is in the way, or nothing when the key works or is switched off.
QString HotKeys::bind(const Action& action, const QString& text)
{
    m_grab.release(action.name);
    if (text.isEmpty())
        return {};
    const QKeySequence sequence = QKeySequence::fromString(text, QKeySequence::PortableText);
    if (sequence.count() != 1 || sequence[0].key() == Qt::Key_unknown) {
        report(action, text, QStringLiteral("it is not a key"));
        return QStringLiteral("Norva can't read ") + quoted(text) +
               QStringLiteral(" as a key. Write one such as Ctrl+Alt+J.");
    }
    const QKeyCombination key = sequence[0];
    const QString shown = sequence.toString(QKeySequence::NativeText);
    // A bare letter taken for the whole desktop could no longer be typed anywhere.
    if (key.keyboardModifiers() == Qt::NoModifier && !isFunctionKey(key.key())) {
        report(action, shown, QStringLiteral("it needs Ctrl, Alt or Super with it"));
        return shown +
               QStringLiteral(" alone would be taken from every program. Add Ctrl, Alt or Super to it.");
    }
    for (const Action& other : actions()) {
        if (other.name != action.name && m_bound.value(other.name) == text &&
            m_troubles.value(other.name).isEmpty()) {
            report(action, shown, QStringLiteral("it already opens ") + other.opens);
            return shown + QStringLiteral(" already opens ") + other.opens +
                   QStringLiteral(". Choose another key.");
        }
    }
    switch (m_grab.grab(action.name, key)) {
    case HotKeyGrab::Result::grabbed:
        m_logged.remove(action.name);
        return {};
    case HotKeyGrab::Result::taken:
        report(action, shown, QStringLiteral("another program holds it"));
        return shown + QStringLiteral(" is taken by another program. Choose another key, or bind ") +
               quoted(action.command) + QStringLiteral(" in your desktop's keyboard settings.");
    case HotKeyGrab::Result::notOffered:
        report(action, shown, QStringLiteral("this desktop lets no program take keys"));
        return QStringLiteral("This desktop keeps its keys to itself. Bind ") + quoted(action.command) +
               QStringLiteral(" in your desktop's keyboard settings.");
    case HotKeyGrab::Result::notAKey:
        break;
    }
    report(action, shown, QStringLiteral("this keyboard has no such key"));
    return shown + QStringLiteral(" is not on this keyboard. Choose another key.");
}

void HotKeys::report(const Action& action, const QString& keyText, const QString& why)
{
    const QString line = QStringLiteral("Norva keys: could not take ") + keyText + QStringLiteral(" for ") +
                         action.opens + QStringLiteral(" (") + why + QStringLiteral("); ") + action.command +
                         QStringLiteral(" still opens it");
    if (m_logged.value(action.name) == line)
        return;
    m_logged.insert(action.name, line);
    logLine(line);
}

} // namespace norva
