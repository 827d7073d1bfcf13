#pragma once

#include "media/LyricsManager.h"
#include "media/MusicManager.h"
#include "media/MusicSettings.h"
#include "media/VolumeActivityPublisher.h"
#include "media/VolumeDemo.h"
#include "shell/FeatureModule.h"

#include <memory>

namespace norva {

class Shell;

// Now playing with its lyrics and the output volume: the music page, the music ears of the closed
// notch and the volume changes shown there. The demo shows nothing of the person's own: its
// scene's volume changes are invented (VolumeDemo).
class MediaModule : public FeatureModule {
    Q_OBJECT
public:
    explicit MediaModule(Shell& shell);
    ~MediaModule() override;

    void start() override;
    void stop() override;
    QList<FeaturePage> pages() const override;
    QList<QObject*> qmlObjects() const override;

private:
    Shell& m_shell;
    std::unique_ptr<MusicSettings> m_settings;
    std::unique_ptr<LyricsManager> m_lyrics;
    std::unique_ptr<MusicManager> m_music;
    std::unique_ptr<VolumeActivityPublisher> m_volumeActivity;
    std::unique_ptr<VolumeDemo> m_volumeDemo;
};

} // namespace norva
