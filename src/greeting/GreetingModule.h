#pragma once

#include "shell/FeatureModule.h"

#include <QObject>

namespace norva {

class Shell;

// A greeting on the closed notch, switched on its own page.
class GreetingModule : public FeatureModule {
    Q_OBJECT
    Q_PROPERTY(bool on READ on WRITE setOn NOTIFY onChanged)
public:
    static const QString kOnKey; // "greeting.on.v1"

    explicit GreetingModule(Shell& shell);

    void start() override;
    QList<FeaturePage> pages() const override;
    QList<QmlObject> qmlObjects() const override;

    bool on() const;
    void setOn(bool on);

signals:
    void onChanged();

private:
    void publish();

    Shell& m_shell;
};

} // namespace norva
