#pragma once

#include <QString>

#include <optional>

namespace norva {

// Which samples `norva --demo` puts on the closed notch. Each feature asks for its own sample and
// shows it through its own producer, so the demo draws what the real features draw: the timer
// is a real focus round, the prompts are real cards on the Agents page.
class DemoScene {
public:
    enum class Sample : unsigned {
        timer = 1u << 0,        // a focus round counting down
        download = 1u << 1,     // a download that fills up, rests and starts again
        shelf = 1u << 2,        // two files waiting on the shelf
        volume = 1u << 3,       // a volume change every few seconds, over the rest
        agentPrompts = 1u << 4, // three agents waiting for an answer, over everything else
    };

    // "all" (or nothing): timer, download, shelf and volume; "one": the timer; "two": timer and
    // download taking turns; "three": timer, download and shelf taking turns (the idle measurement's
    // scene); "prompts": the agents' prompts waiting over the timer. None for an unknown word.
    static std::optional<DemoScene> fromWord(const QString& word);
    static DemoScene all();

    bool shows(Sample sample) const { return (m_samples & static_cast<unsigned>(sample)) != 0; }

private:
    explicit DemoScene(unsigned samples) : m_samples(samples) {}
    unsigned m_samples;
};

} // namespace norva
