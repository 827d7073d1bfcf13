#include "media/MediaModule.h"

#include "media/MediaPlatform.h"
#include "media/VolumeDemo.h"
#include "shell/Shell.h"

namespace norva {

MediaModule::MediaModule(Shell& shell) : m_shell(shell)
{
    m_settings = std::make_unique<MusicSettings>(shell.settings());
    m_lyrics = std::make_unique<LyricsManager>(shell.clock());
    m_lyrics->follow(shell.settings());
    m_lyrics->watchReachability();
    m_music = std::make_unique<MusicManager>(shell.clock(), m_settings.get(),
                                             MusicManager::systemBackends(shell.clock()), m_lyrics.get(),
                                             Platform::makeOutputVolume(shell.clock()));
}

MediaModule::~MediaModule() = default;

void MediaModule::start()
{
    if (!m_shell.demo().on) {
        m_music->start();
        m_music->startVolumeMonitoring();
    }
    if (m_shell.demoShows(DemoScene::Sample::volume))
        m_volumeDemo = std::make_unique<VolumeDemo>(m_shell.activities(), m_shell.clock());
    m_volumeActivity = std::make_unique<VolumeActivityPublisher>(*m_music, m_shell.activities(), *m_settings);
    // The closed face makes room for the music ears while a player has a session.
    ClosedFaceModel* face = &m_shell.closedFace();
    const auto followMusic = [this, face] { face->setMusicPlaying(m_music->hasActiveSession()); };
    connect(m_music.get(), &MusicManager::activeSessionChanged, face, followMusic);
    followMusic();
}

void MediaModule::stop()
{
    m_music->stop();
}

QList<FeaturePage> MediaModule::pages() const
{
    return {{QStringLiteral("music"), QStringLiteral("Music"), QStringLiteral("MusicPage.qml"),
             QStringLiteral("Now playing, with synced lyrics, will be here."), 10}};
}

QList<QObject*> MediaModule::qmlObjects() const
{
    return {m_music.get()};
}

} // namespace norva
