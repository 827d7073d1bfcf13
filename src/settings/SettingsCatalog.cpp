#include "settings/SettingsCatalog.h"

#include "activities/ActivitySettings.h"
#include "hotkeys/HotKeys.h"

#include <algorithm>

namespace norva::SettingsCatalog {
namespace {

using Kind = SettingDescription::Kind;

SettingDescription toggle(const char* key, const char* group, const char* label, const char* explanation,
                          bool fallback, SettingNeed need = SettingNeed::nothing)
{
    SettingDescription row;
    row.key = QString::fromLatin1(key);
    row.group = QString::fromLatin1(group);
    row.label = QString::fromUtf8(label);
    row.explanation = QString::fromUtf8(explanation);
    row.kind = Kind::toggle;
    row.fallback = fallback;
    row.need = need;
    return row;
}

SettingDescription number(const char* key, const char* group, const char* label, const char* explanation,
                          double fallback, double lowest, double highest, double step, const char* unit)
{
    SettingDescription row = toggle(key, group, label, explanation, false);
    row.kind = Kind::number;
    row.fallback = step >= 1 ? QVariant(qint64(fallback)) : QVariant(fallback);
    row.lowest = lowest;
    row.highest = highest;
    row.step = step;
    row.unit = QString::fromUtf8(unit);
    return row;
}

SettingDescription choice(const char* key, const char* group, const char* label, const char* explanation,
                          QVariant fallback, QList<SettingOption> options)
{
    SettingDescription row = toggle(key, group, label, explanation, false);
    row.kind = Kind::choice;
    row.fallback = std::move(fallback);
    row.options = std::move(options);
    return row;
}

SettingDescription text(const char* key, const char* group, const char* label, const char* explanation,
                        Kind kind = Kind::text, SettingNeed need = SettingNeed::nothing)
{
    SettingDescription row = toggle(key, group, label, explanation, false, need);
    row.kind = kind;
    row.fallback = QString();
    return row;
}

// A key that opens something from anywhere, written as Qt writes shortcuts ("Ctrl+Alt+N"). Its
// preference and default are the hot keys' own, so the window shows the key Norva really grabs.
SettingDescription hotKey(const QString& name, const char* label, const char* explanation)
{
    const auto& actions = HotKeys::actions();
    const auto action = std::find_if(actions.begin(), actions.end(),
                                     [&name](const HotKeys::Action& each) { return each.name == name; });
    Q_ASSERT(action != actions.end());
    SettingDescription row = text("", "general", label, explanation);
    row.key = action->settingKey;
    row.fallback = action->defaultKey;
    return row;
}

SettingOption option(const QVariant& value, const char* label)
{
    return {value, QString::fromUtf8(label)};
}

// The closed notch's switches, one per switch word of the activity kinds' table, so a kind added
// there gets its row here; the wording of the words known today.
QList<SettingDescription> activitySwitches()
{
    struct Wording {
        const char* word;
        const char* label;
        const char* explanation;
    };
    static const Wording wordings[] = {
        {"meetings", "Meetings", "A meeting about to start counts down."},
        {"timers", "Timers", "A running timer or focus round shows its time."},
        {"reminders", "To-dos falling due", "A to-do that falls due, with Done and Snooze."},
        {"volume", "Volume and brightness",
         "The level while it changes (with volume changes on under Music)."},
        {"downloads", "Downloads", "A download in progress."},
        {"devices", "Devices", "A device that connects, with its battery."},
        {"charging", "Charging", "The battery when the charger comes or goes."},
    };
    QList<SettingDescription> rows;
    for (const QString& word : ActivitySettings::switchWords()) {
        const QByteArray key = ActivitySettings::keyFor(word).toLatin1();
        const Wording* wording = nullptr;
        for (const Wording& known : wordings) {
            if (word == QLatin1String(known.word))
                wording = &known;
        }
        SettingDescription row = toggle(key.constData(), "activities", wording ? wording->label : "",
                                        wording ? wording->explanation : "", true);
        if (!wording) {
            row.label = word.left(1).toUpper() + word.mid(1);
            row.explanation = QStringLiteral("Its live activity beside the notch.");
        }
        rows << row;
    }
    rows << toggle("activities.weather.v1", "activities", "Weather",
                   "The temperature and the sky beside the notch.", false);
    return rows;
}

QList<SettingDescription> makeSettings()
{
    return QList<SettingDescription>{
               // General
               toggle("launchAtLogin", "general", "Start Norva at login",
                      "Adds Norva to your desktop's autostart folder, so the notch is there when you log in.",
                      false),
               toggle("showMenuBarIcon", "general", "Show the tray icon",
                      "Open, Settings and Quit in the panel; without it, Quit stays on the notch's Settings "
                      "page.",
                      true),
               hotKey(HotKeys::openName, "Key that opens the notch",
                      "Pressed anywhere it opens or closes the notch; empty turns it off."),
               hotKey(HotKeys::jotName, "Key that opens the jot sheet",
                      "Where the desktop keeps keys to itself, give norva --jot a key in its settings."),
               choice("notch.motion.v1", "general", "Motion",
                      "Reduced keeps the notch's changes short and still.", QStringLiteral("full"),
                      {option(QStringLiteral("full"), "Full"), option(QStringLiteral("reduced"), "Reduced")}),

               // Notch and displays
               choice("displayChoice.v1", "notch", "Displays",
                      "Which displays get a notch. Built-in is the laptop's own panel, or the primary "
                      "display where there is none.",
                      QStringLiteral("builtIn"),
                      {option(QStringLiteral("builtIn"), "Built-in"),
                       option(QStringLiteral("all"), "All displays")}),
               toggle("openOnHover.v5", "notch", "Open on hover", "Otherwise a click opens the notch.",
                      false),
               number("openHoverDelay", "notch", "Hover delay",
                      "How long the pointer rests on the notch before it opens.", 0.12, 0.09, 1.5, 0.01, "s"),
               toggle("notch.peekOnHover.v1", "notch", "Peek on hover",
                      "The notch grows a little first, to show what opening it would show.", true),
               number("notch.peekDelay.v1", "notch", "Peek delay",
                      "How long the pointer rests before the peek.", 0.07, 0.02, 0.5, 0.01, "s"),
               choice("fullscreenGuard", "notch", "Over a full-screen window",
                      "Whether hovering opens the notch above a full-screen video or game.",
                      QStringLiteral("longer"),
                      {option(QStringLiteral("normal"), "As usual"),
                       option(QStringLiteral("longer"), "Wait longer"),
                       option(QStringLiteral("click"), "Only a click")}),

               // Agents
               toggle("answerPromptsOnNotch", "agents", "Answer prompts on the notch",
                      "Adds Norva's hooks to Claude Code, Codex and Copilot CLI, backups kept; closed, the "
                      "terminal asks.",
                      false, SettingNeed::agentHooks),
               toggle("agents.watch.codex.v1", "agents", "Codex",
                      "Codex's prompts come here too; it asks you to trust the hook once.", true),
               toggle("agents.watch.copilot.v1", "agents", "Copilot CLI",
                      "Copilot CLI's prompts come here too, from its next start.", true),
               toggle("approvalChime", "agents", "Chime on a prompt",
                      "A short sound when an agent waits for you.", true, SettingNeed::soundPlayer),
               toggle("approvalNotification", "agents", "Notify on a prompt",
                      "A desktop notification when an agent waits for you.", true),
               toggle("agents.openQuestions.v1", "agents", "Open for a question",
                      "The notch opens by itself when an agent asks a question.", false),
               toggle("agents.showClaudeUsage.v1", "agents", "Show Claude Code's usage",
                      "Adds Norva to Claude Code's status line to read its usage windows.", false),

               // Clipboard
               toggle("clipboard.history.v1", "clipboard", "Keep clipboard history",
                      "What you copy stays on the Clipboard page; copies marked secret are never kept.",
                      true),
               number("clipboardLimit", "clipboard", "Keep up to",
                      "The oldest clips go past this; pinned ones stay.", 50, 5, 1000, 5, "clips"),

               // Shelf
               toggle("shelf.openOnDrop.v1", "shelf", "Open when a file is dropped",
                      "The Shelf page opens as a file lands on the notch.", true),
               choice("shelf.keep.v1", "shelf", "Keep files on the Shelf",
                      "Older files leave the Shelf by themselves.", QStringLiteral("forever"),
                      {option(QStringLiteral("forever"), "Forever"), option(QStringLiteral("day"), "A day"),
                       option(QStringLiteral("week"), "A week")}),
               toggle("autoShelfScreenshots", "shelf", "Screenshots on the Shelf",
                      "A new screenshot in your Pictures folder lands on the Shelf.", true),

               // Music
               choice("music.keepPaused.v1", "music", "Keep paused music",
                      "How long paused music stays beside the notch.", qint64(30),
                      {option(qint64(10), "10 s"), option(qint64(30), "30 s"), option(qint64(60), "1 min"),
                       option(qint64(0), "Always")}),
               toggle("music.songPeek.v1", "music", "Show a new song",
                      "The notch shows each new song for a moment.", true),
               toggle("music.scrollVolume.v1", "music", "Scroll for volume",
                      "Scrolling over the notch changes the volume.", true, SettingNeed::pactl),
               toggle("replaceSystemHUD", "music", "Show volume changes",
                      "The notch shows the volume as it changes.", false, SettingNeed::pactl),

               // To-dos
               toggle("todos.showCompleted.v1", "todos", "Show completed to-dos",
                      "Done to-dos stay on the list, struck through.", false),

               // Notes
               choice("jot.mode.v1", "notes", "A jotted line",
                      "Starts a note of its own, joins the note it names, or becomes a to-do.",
                      QStringLiteral("new"),
                      {option(QStringLiteral("new"), "New note"),
                       option(QStringLiteral("append"), "Joins a note"),
                       option(QStringLiteral("todo"), "Files a to-do")}),
               toggle("notesMirror.enabled", "notes", "Mirror notes to Markdown",
                      "Each note is also kept as a Markdown file in the folder below.", false),
               text("notesMirror.folder", "notes", "Mirror folder", "Where the Markdown files go.",
                    Kind::folder, SettingNeed::notesFolder),

               // Timer
               toggle("timers.sound.v1", "timer", "Sound when a timer ends",
                      "Plays your sound theme's \"complete\".", true, SettingNeed::soundPlayer),

               // Weather
               choice("weather.unit.v1", "weather", "Temperature unit",
                      "As the desktop follows your region's unit.", QVariant(),
                      {option(QVariant(), "As the desktop"), option(QStringLiteral("celsius"), "Celsius"),
                       option(QStringLiteral("fahrenheit"), "Fahrenheit")}),

               // Calendar
               text("calendars.folder.v1", "calendar", "Calendars folder",
                    "Where your calendars and to-dos live; empty finds the one todoman or khal use.",
                    Kind::folder, SettingNeed::calendarsFolder),
               number("meetings.leadMinutes.v1", "calendar", "Show a meeting", "Minutes before it starts.",
                      10, 1, 120, 1, "min"),
               text("meetings.addresses.v1", "calendar", "Your addresses",
                    "Your e-mail addresses, by commas, to tell the invitations you declined."),
           } +
           activitySwitches();
}

} // namespace

const QList<Group>& groups()
{
    static const QList<Group> list = {
        {QStringLiteral("general"), QStringLiteral("General"),
         QStringLiteral("Starting Norva, the tray, the keys and motion.")},
        {QStringLiteral("notch"), QStringLiteral("Notch and displays"),
         QStringLiteral("Where the notch is and how it opens.")},
        {QStringLiteral("activities"), QStringLiteral("Closed notch activities"),
         QStringLiteral("What may show beside the closed notch.")},
        {QStringLiteral("agents"), QStringLiteral("Agents"),
         QStringLiteral("Claude Code, Codex and Copilot CLI on the notch.")},
        {QStringLiteral("clipboard"), QStringLiteral("Clipboard"),
         QStringLiteral("The history of what you copy.")},
        {QStringLiteral("shelf"), QStringLiteral("Shelf"), QStringLiteral("Files dropped on the notch.")},
        {QStringLiteral("music"), QStringLiteral("Music"), QStringLiteral("Now playing and the volume.")},
        {QStringLiteral("todos"), QStringLiteral("To-dos"),
         QStringLiteral("Your to-dos live in the calendars folder (see Calendar).")},
        {QStringLiteral("notes"), QStringLiteral("Notes"),
         QStringLiteral("Quick notes and their Markdown mirror.")},
        {QStringLiteral("timer"), QStringLiteral("Timer"), QStringLiteral("Timers and focus rounds.")},
        {QStringLiteral("weather"), QStringLiteral("Weather"),
         QStringLiteral("Choose the place on the Weather page.")},
        {QStringLiteral("calendar"), QStringLiteral("Calendar"),
         QStringLiteral("Meetings from your calendars.")},
    };
    return list;
}

const QList<SettingDescription>& settings()
{
    static const QList<SettingDescription> list = makeSettings();
    return list;
}

QList<SettingDescription> inGroup(const QString& groupId)
{
    QList<SettingDescription> rows;
    for (const SettingDescription& row : settings()) {
        if (row.group == groupId)
            rows << row;
    }
    return rows;
}

const SettingDescription* find(const QString& key)
{
    for (const SettingDescription& row : settings()) {
        if (row.key == key)
            return &row;
    }
    return nullptr;
}

} // namespace norva::SettingsCatalog
