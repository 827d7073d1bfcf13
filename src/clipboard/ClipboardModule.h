#pragma once

#include "clipboard/ClipboardManager.h"
#include "clipboard/ClipboardPageModel.h"
#include "clipboard/ClipboardSettings.h"
#include "clipboard/ClipboardSource.h"
#include "shell/FeatureModule.h"

#include <memory>

namespace norva {

class Shell;

// The clipboard history and its page. The demo reads neither the stored history nor the clipboard.
class ClipboardModule : public FeatureModule {
    Q_OBJECT
public:
    explicit ClipboardModule(Shell& shell);
    ~ClipboardModule() override;

    void start() override;
    QList<FeaturePage> pages() const override;
    QList<QObject*> qmlObjects() const override;

    // The desktop's clipboard and the history, for the shelf that copies to one and drops text into the
    // other.
    ClipboardSource& source() { return *m_source; }
    ClipboardManager& history() { return *m_history; }

private:
    Shell& m_shell;
    std::unique_ptr<ClipboardSettings> m_settings;
    std::unique_ptr<ClipboardSource> m_source;
    std::unique_ptr<ClipboardManager> m_history;
    std::unique_ptr<ClipboardPageModel> m_page;
};

} // namespace norva
