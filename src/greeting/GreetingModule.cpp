#include "greeting/GreetingModule.h"

#include "activities/ActivityKinds.h"
#include "shell/Shell.h"

namespace norva {

const QString GreetingModule::kOnKey = QStringLiteral("greeting.on.v1");

GreetingModule::GreetingModule(Shell& shell) : m_shell(shell)
{
    shell.settings().watch({kOnKey});
    connect(&shell.settings(), &SettingsStore::keyChanged, this, [this](const QString& key) {
        if (key == kOnKey) {
            emit onChanged();
            publish();
        }
    });
}

void GreetingModule::start()
{
    publish();
}

QList<FeaturePage> GreetingModule::pages() const
{
    return {{QStringLiteral("greeting"), QStringLiteral("Greeting"), QStringLiteral("GreetingPage.qml"),
             QStringLiteral("A greeting will be here."), 15}};
}

QList<QmlObject> GreetingModule::qmlObjects() const
{
    return {{QStringLiteral("greeting"), const_cast<GreetingModule*>(this)}};
}

bool GreetingModule::on() const
{
    return m_shell.settings().flag(kOnKey, false);
}

void GreetingModule::setOn(bool on)
{
    m_shell.settings().write(on, kOnKey);
}

void GreetingModule::publish()
{
    if (!on()) {
        m_shell.activities().remove(QStringLiteral("greeting"));
        return;
    }
    LiveActivity hello;
    hello.id = QStringLiteral("greeting");
    hello.content = ActivityContent::announcement();
    hello.priority = ActivityKinds::of(hello.content.kind()).priority;
    hello.text = {QStringLiteral("Hello"), QStringLiteral("hi")};
    hello.onTap = [this] { m_shell.openPage(QStringLiteral("greeting")); };
    m_shell.activities().upsert(std::move(hello));
}

} // namespace norva
