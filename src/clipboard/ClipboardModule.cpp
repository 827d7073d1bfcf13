#include "clipboard/ClipboardModule.h"

#include "app/Paths.h"
#include "clipboard/ClipboardPlatform.h"
#include "shell/Shell.h"

namespace norva {

ClipboardModule::ClipboardModule(Shell& shell) : m_shell(shell)
{
    m_settings = std::make_unique<ClipboardSettings>(shell.settings());
    m_source = Platform::makeClipboardSource();
    m_history = std::make_unique<ClipboardManager>(*m_source, *m_settings, shell.clock(), shell.dataFolder());
    m_page = std::make_unique<ClipboardPageModel>(*m_history);
}

ClipboardModule::~ClipboardModule() = default;

void ClipboardModule::start()
{
    if (!m_shell.demo().on)
        m_history->start();
}

QList<FeaturePage> ClipboardModule::pages() const
{
    return {{QStringLiteral("clipboard"), QStringLiteral("Clipboard"), QStringLiteral("ClipboardPage.qml"),
             QStringLiteral("Your clipboard history will be here."), 30}};
}

QList<QObject*> ClipboardModule::qmlObjects() const
{
    return {m_page.get(), m_settings.get()};
}

} // namespace norva
