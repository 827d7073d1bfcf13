#pragma once

#include "activities/ActivityDemo.h"
#include "shell/FeatureModule.h"

#include <memory>

namespace norva {

class Shell;

// The closed notch's own samples: in the demo, a timer, a download and volume changes keep the
// closed notch alive. The coordinator and the closed face themselves belong to the shell.
class ActivitiesModule : public FeatureModule {
    Q_OBJECT
public:
    explicit ActivitiesModule(Shell& shell);
    ~ActivitiesModule() override;

    void start() override;

private:
    Shell& m_shell;
    std::unique_ptr<ActivityDemo> m_demo;
};

} // namespace norva
