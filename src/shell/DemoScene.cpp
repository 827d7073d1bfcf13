#include "shell/DemoScene.h"

#include <initializer_list>

namespace norva {
namespace {

constexpr unsigned samples(std::initializer_list<DemoScene::Sample> list)
{
    unsigned mask = 0;
    for (const DemoScene::Sample sample : list)
        mask |= static_cast<unsigned>(sample);
    return mask;
}

using Sample = DemoScene::Sample;
constexpr unsigned kAll = samples({Sample::timer, Sample::download, Sample::shelf, Sample::volume});

} // namespace

DemoScene DemoScene::all()
{
    return DemoScene(kAll);
}

std::optional<DemoScene> DemoScene::fromWord(const QString& word)
{
    if (word.isEmpty() || word == QLatin1String("all"))
        return all();
    if (word == QLatin1String("one"))
        return DemoScene(samples({Sample::timer}));
    if (word == QLatin1String("two"))
        return DemoScene(samples({Sample::timer, Sample::download}));
    if (word == QLatin1String("three"))
        return DemoScene(samples({Sample::timer, Sample::download, Sample::shelf}));
    if (word == QLatin1String("prompts"))
        return DemoScene(samples({Sample::timer, Sample::agentPrompts}));
    return std::nullopt;
}

} // namespace norva
