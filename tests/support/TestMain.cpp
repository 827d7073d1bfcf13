#include "TestMain.h"

#include <QApplication>
#include <QTest>

#include <vector>

namespace norva::test {
namespace {

struct Registered {
    const char* name;
    std::function<std::unique_ptr<QObject>()> make;
};

std::vector<Registered>& registry()
{
    static std::vector<Registered> classes;
    return classes;
}

} // namespace

int registerTestClass(const char* name, std::function<std::unique_ptr<QObject>()> make)
{
    registry().push_back({name, std::move(make)});
    return static_cast<int>(registry().size());
}

} // namespace norva::test

// Runs every registered class; "-class Name" picks one. A QApplication is made so that tests that
// need the clipboard or images work; under the offscreen platform it needs no display.
int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QStringList arguments = app.arguments();
    QString only;
    const qsizetype at = arguments.indexOf(QStringLiteral("-class"));
    if (at > 0 && at + 1 < arguments.size()) {
        only = arguments.at(at + 1);
        arguments.remove(at, 2);
    }
    int failures = 0;
    for (const auto& entry : norva::test::registry()) {
        if (!only.isEmpty() && only != QLatin1String(entry.name))
            continue;
        auto object = entry.make();
        failures += QTest::qExec(object.get(), arguments);
    }
    return failures == 0 ? 0 : 1;
}
