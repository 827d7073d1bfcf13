#include "shell/Features.h"

#include "agents/AgentsModule.h"
#include "calendar/CalendarModule.h"
#include "clipboard/ClipboardModule.h"
#include "hotkeys/HotKeysModule.h"
#include "media/MediaModule.h"
#include "notes/NotesModule.h"
#include "reminders/RemindersModule.h"
#include "settings/SettingsModule.h"
#include "shelf/ShelfModule.h"
#include "shell/Shell.h"
#include "timers/TimersModule.h"
#include "weather/WeatherModule.h"

namespace norva {

void addFeatures(Shell& shell)
{
    shell.add<AgentsModule>();
    shell.add<ClipboardModule>();
    shell.add<ShelfModule>(); // after the clipboard, which it copies to
    shell.add<MediaModule>();
    shell.add<CalendarModule>();
    shell.add<RemindersModule>();
    shell.add<NotesModule>(); // after the to-dos, which the jot sheet files to
    shell.add<TimersModule>();
    shell.add<WeatherModule>();
    shell.add<SettingsModule>();
    shell.add<HotKeysModule>();
}

} // namespace norva
