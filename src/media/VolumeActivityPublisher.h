#pragma once

#include <QObject>

namespace norva {

class LiveActivityCoordinator;
class MusicManager;
class MusicSettings;

// Shows volume changes on the closed notch: every change while "replaceSystemHUD" is on, and
// always the ones the person makes by scrolling over the notch, since that is where they look.
class VolumeActivityPublisher : public QObject {
    Q_OBJECT
public:
    VolumeActivityPublisher(MusicManager& music, LiveActivityCoordinator& coordinator,
                            MusicSettings& settings, QObject* parent = nullptr);

private:
    void publish(double level, bool muted);

    MusicManager& m_music;
    LiveActivityCoordinator& m_coordinator;
    MusicSettings& m_settings;
    bool m_levelKnown = false; // the first reading only tells Norva the level; it is not a change
};

} // namespace norva
