#include "agents/jump/JumpPlatform.h"
#include "agents/team/TeamPlatform.h"
#include "app/Paths.h"
#include "app/Platform.h"
#include "clipboard/ClipboardPlatform.h"
#include "media/MediaPlatform.h"
#include "notch/NotchWindowPlatform.h"
#include "platform/linux/ActiveWindow.h"
#include "platform/linux/FreedesktopTimerSound.h"
#include "platform/linux/LinuxNotchSurface.h"
#include "platform/linux/PactlOutputVolume.h"
#include "platform/linux/PreferencesFile.h"
#include "platform/linux/QtClipboardSource.h"
#include "platform/linux/ScreenshotFolderWatcher.h"
#include "platform/linux/X11WindowActivator.h"
#include "platform/linux/XdgAutostartEntry.h"
#include "platform/linux/XdgFileOpener.h"
#include "shelf/ShelfPlatform.h"
#include "timers/TimerPlatform.h"

// The one place that picks Linux's implementation of each seam a feature folder declares, and
// gives the facts of a Linux desktop that the folders ask for.
namespace norva::Platform {

std::unique_ptr<PreferencesDatabase> makePreferencesDatabase()
{
    return std::make_unique<PreferencesFile>(Paths::preferencesFile());
}

std::unique_ptr<LaunchAtLogin> makeLaunchAtLogin()
{
    return std::make_unique<XdgAutostartEntry>();
}

std::unique_ptr<ClipboardSource> makeClipboardSource()
{
    return std::make_unique<QtClipboardSource>();
}

std::unique_ptr<ScreenshotSource> makeScreenshotSource(Clock& clock)
{
    return std::make_unique<ScreenshotFolderWatcher>(clock);
}

std::unique_ptr<FileOpener> makeFileOpener()
{
    return std::make_unique<XdgFileOpener>();
}

std::unique_ptr<OutputVolume> makeOutputVolume(Clock& clock)
{
    return std::make_unique<PactlOutputVolume>(clock);
}

std::unique_ptr<TimerSound> makeTimerSound()
{
    return std::make_unique<FreedesktopTimerSound>();
}

std::unique_ptr<WindowActivator> makeWindowActivator()
{
    return std::make_unique<X11WindowActivator>();
}

std::unique_ptr<NotchSurface> makeNotchSurface(QWindow& window, DrawingPath path)
{
    return std::make_unique<LinuxNotchSurface>(window, path);
}

bool frontWindowIsFullscreenOn(const QRect& displayGeometry)
{
    return ActiveWindow::isFullscreenOn(displayGeometry);
}

QString thisComputer()
{
    return QStringLiteral("this computer");
}

QString managedTeamRulesFile()
{
    return QStringLiteral("/etc/norva/team-rules.json");
}

// Linux has no ditto; Norva's own ZipWriter makes the archive.
bool zipsWithDitto()
{
    return false;
}

} // namespace norva::Platform
