#include "hotkeys/HotKeysModule.h"

#include "hotkeys/HotKeyPlatform.h"
#include "shell/Shell.h"

namespace norva {

HotKeysModule::HotKeysModule(Shell& shell)
    : m_shell(shell), m_grab(Platform::makeHotKeyGrab()),
      m_hotKeys(std::make_unique<HotKeys>(shell.settings(), *m_grab))
{}

HotKeysModule::~HotKeysModule() = default;

void HotKeysModule::start()
{
    if (!m_shell.demo().on)
        m_hotKeys->start();
}

QList<QObject*> HotKeysModule::qmlObjects() const
{
    return {m_hotKeys.get()};
}

} // namespace norva
