#include "settings/FirstRunGuide.h"

#include "app/Log.h"
#include "app/SettingsStore.h"
#include "settings/WhatsNew.h"

#include <algorithm>

namespace norva {

const QString FirstRunGuide::lastSeenVersionKey = QStringLiteral("whatsNew.lastSeen.v1");

namespace {

QVariantMap makeStep(const QString& id, const QString& title, const QString& text, const QVariantList& sample)
{
    return {{QStringLiteral("id"), id},
            {QStringLiteral("title"), title},
            {QStringLiteral("text"), text},
            {QStringLiteral("sample"), sample}};
}

// A sample line drawn by a step: a main text, a faint text beside it, and the glyph of its kind.
QVariantMap sampleLine(const QString& text, const QString& aside = {}, const QString& mark = {})
{
    return {{QStringLiteral("text"), text}, {QStringLiteral("aside"), aside}, {QStringLiteral("mark"), mark}};
}

} // namespace

FirstRunGuide::FirstRunGuide(SettingsStore& settings, Setup setup, QObject* parent)
    : QObject(parent), m_settings(settings), m_setup(std::move(setup))
{
    if (m_setup.firstLaunch) {
        m_showing = true;
        rememberVersion(); // the introduction tells what this version is; no card follows it
        logLine(QStringLiteral("Norva: first launch, so the notch introduces itself when it first opens"));
        return;
    }
    const QString lastSeen = m_settings.storedText(lastSeenVersionKey).value_or(QString());
    if (lastSeen == m_setup.version)
        return;
    m_whatsNew = WhatsNew::linesSince(lastSeen, m_setup.version);
    m_whatsNewShowing = !m_whatsNew.isEmpty();
    if (!m_whatsNewShowing)
        rememberVersion();
}

QVariantList FirstRunGuide::steps() const
{
    return {
        makeStep(
            QStringLiteral("notch"), QStringLiteral("This is Norva"),
            QStringLiteral("The top centre of your screen is alive now. Beside the notch you'll see what's "
                           "going on: a song, a timer, an agent waiting for you, a meeting about to start."),
            {sampleLine(QStringLiteral("Focus"), QStringLiteral("24:12"), QStringLiteral("\u25CF")),
             sampleLine(QStringLiteral("Stand-up"), QStringLiteral("in 5 min"), QStringLiteral("\u260E"))}),
        makeStep(QStringLiteral("open"), QStringLiteral("Open it"),
                 QStringLiteral(
                     "Click the notch to open it, or switch on Open on hover in Settings. The pages sit "
                     "in a row: click a tab, or scroll sideways. Move away and it closes."),
                 {sampleLine(QStringLiteral("Music  Agents  Clipboard  Shelf  To-dos  Notes  …"))}),
        makeStep(QStringLiteral("agents"), QStringLiteral("Coding agents ask here"),
                 QStringLiteral("Off until you turn it on in Settings › Agents. Then Norva adds its hooks to "
                                "~/.claude/settings.json (the first time, a copy is kept as "
                                "settings.json.norva-backup), ~/.codex/hooks.json and Copilot CLI's "
                                "hooks/norva.json. Whenever Norva is closed, the terminal asks as usual."),
                 {sampleLine(QStringLiteral("Claude Code wants to run"), QStringLiteral("npm test"),
                             QStringLiteral("?"))}),
        makeStep(
            QStringLiteral("clipboard"), QStringLiteral("Your clipboard, remembered"),
            QStringLiteral(
                "On: what you copy stays on the Clipboard page, up to 50 clips. Copies that a "
                "password manager marks secret are never kept. Turn it off in Settings › Clipboard."),
            {sampleLine(QStringLiteral("git rebase main"), QStringLiteral("Terminal")),
             sampleLine(QStringLiteral("https://example.org/notes"), QStringLiteral("Firefox")),
             sampleLine(QStringLiteral("••••••••"), QStringLiteral("never kept"), QStringLiteral("\u26A0"))}),
        makeStep(QStringLiteral("calendars"), QStringLiteral("Your calendars"),
                 QStringLiteral("To-dos and meetings are read from ") + m_setup.calendarsRoot +
                     QStringLiteral(", the folder todoman, khal and vdirsyncer share. Choose another in "
                                    "Settings › Calendar."),
                 {sampleLine(QStringLiteral("Send the invoice"), QStringLiteral("today 17:00"),
                             QStringLiteral("\u2691")),
                  sampleLine(QStringLiteral("Design review"), QStringLiteral("tomorrow 10:00"),
                             QStringLiteral("\u260E"))}),
    };
}

int FirstRunGuide::stepCount() const
{
    return int(steps().size());
}

QVariantMap FirstRunGuide::current() const
{
    const QVariantList all = steps();
    return all.value(std::clamp(m_step, 0, int(all.size()) - 1)).toMap();
}

void FirstRunGuide::next()
{
    if (!m_showing)
        return;
    if (m_step + 1 >= stepCount()) {
        finish();
        return;
    }
    ++m_step;
    emit changed();
}

void FirstRunGuide::back()
{
    if (!m_showing || m_step == 0)
        return;
    --m_step;
    emit changed();
}

void FirstRunGuide::skip()
{
    if (m_showing)
        finish();
}

void FirstRunGuide::startTour(int fromStep)
{
    m_showing = true;
    m_whatsNewShowing = false;
    m_step = std::clamp(fromStep, 0, stepCount() - 1);
    emit changed();
    emit wantsNotchChanged(true);
}

void FirstRunGuide::finish()
{
    m_showing = false;
    m_step = 0;
    emit changed();
    emit wantsNotchChanged(false);
}

void FirstRunGuide::dismissWhatsNew()
{
    if (!m_whatsNewShowing)
        return;
    m_whatsNewShowing = false;
    rememberVersion();
    emit changed();
    emit wantsNotchChanged(false);
}

void FirstRunGuide::rememberVersion()
{
    if (m_setup.remembers)
        m_settings.write(m_setup.version, lastSeenVersionKey);
}

} // namespace norva
