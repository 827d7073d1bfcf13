#include "shelf/ShelfModule.h"

#include "clipboard/ClipboardModule.h"
#include "shelf/ShelfDemo.h"
#include "shelf/ShelfPlatform.h"
#include "shell/Shell.h"

#include <QDir>

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
    m_shelf = std::make_unique<ShelfManager>(shell.settings(), shell.clock(), shell.dataFolder());
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
    startDemo();
}

void ShelfModule::startDemo()
{
    if (m_shell.demoShows(DemoScene::Sample::shelf))
        ShelfDemo::shelveSamples(*m_shelf, QDir(m_shell.dataFolder()).filePath(QStringLiteral("Samples")));
    if (m_shell.demoShows(DemoScene::Sample::download)) {
        m_demo = std::make_unique<ShelfDemo>(m_shell.activities(), m_shell.clock());
        m_demo->startDownload();
    }
}

QList<FeaturePage> ShelfModule::pages() const
{
    return {{kPageId, QStringLiteral("Shelf"), QStringLiteral("ShelfPage.qml"),
             QStringLiteral("Files you drop on the notch will wait here."), 40}};
}

QList<QObject*> ShelfModule::qmlObjects() const
{
    return {m_desk.get()};
}

} // namespace norva
