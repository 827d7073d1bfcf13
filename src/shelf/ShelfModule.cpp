#include "shelf/ShelfModule.h"

#include "app/Paths.h"
#include "clipboard/ClipboardModule.h"
#include "shelf/ShelfPlatform.h"
#include "shell/Shell.h"

namespace norva {
namespace {

const QString kPageId = QStringLiteral("shelf");

ClipboardModule& clipboardOf(const Shell& shell)
{
    ClipboardModule* clipboard = shell.find<ClipboardModule>();
    if (!clipboard)
        qFatal("Norva shelf: the clipboard feature must be added before the shelf");
    return *clipboard;
}

} // namespace

ShelfModule::ShelfModule(Shell& shell) : m_shell(shell)
{
    ClipboardModule& clipboard = clipboardOf(shell);
    m_shelf = std::make_unique<ShelfManager>(shell.settings(), shell.clock(), Paths::dataFolder());
    m_shelf->setDroppedTextSink(
        [history = &clipboard.history()](const QString& text) { return history->recordDropped(text); });
    m_desk = std::make_unique<ShelfDesk>(*m_shelf, clipboard.source(), Platform::makeFileOpener());
}

ShelfModule::~ShelfModule() = default;

void ShelfModule::start()
{
    if (!m_shell.demo().on) {
        m_screenshots = Platform::makeScreenshotSource(m_shell.clock());
        m_shelf->setScreenshotSource(m_screenshots.get());
        m_shelf->start();
    }
    m_activity = std::make_unique<ShelfActivityPublisher>(*m_shelf, m_shell.activities(),
                                                          [this] { m_shell.openPage(kPageId); });
}

QList<FeaturePage> ShelfModule::pages() const
{
    return {{kPageId, QStringLiteral("Shelf"), QStringLiteral("ShelfPage.qml"),
             QStringLiteral("Files you drop on the notch will wait here."), 40}};
}

QList<QmlObject> ShelfModule::qmlObjects() const
{
    return {{QStringLiteral("shelfDesk"), m_desk.get()}};
}

} // namespace norva
