#pragma once

#include "shelf/ScreenshotSource.h"
#include "shelf/ShelfActivityPublisher.h"
#include "shelf/ShelfDemo.h"
#include "shelf/ShelfDesk.h"
#include "shelf/ShelfManager.h"
#include "shell/FeatureModule.h"

#include <memory>

namespace norva {

class ClipboardModule;
class Shell;

// The shelf of dropped files, its page and its activity on the closed notch. It builds on the
// clipboard: files are copied to the desktop's clipboard and dropped text joins the history. The
// demo reads neither the stored shelf nor the screenshots folder: its shelf lives in the demo's
// data folder, with the scene's sample files and download (ShelfDemo).
class ShelfModule : public FeatureModule {
    Q_OBJECT
public:
    explicit ShelfModule(Shell& shell);
    ~ShelfModule() override;

    void start() override;
    QList<FeaturePage> pages() const override;
    QList<QObject*> qmlObjects() const override;

private:
    void startDemo();

    Shell& m_shell;
    std::unique_ptr<ShelfManager> m_shelf;
    std::unique_ptr<ShelfDesk> m_desk;
    std::unique_ptr<ShelfActivityPublisher> m_activity;
    std::unique_ptr<ScreenshotSource> m_screenshots;
    std::unique_ptr<ShelfDemo> m_demo;
};

} // namespace norva
