#pragma once

#include <QObject>

class QSocketNotifier;

namespace norva {

// Turns SIGTERM, SIGINT and SIGHUP (a logout, `kill`, Ctrl-C in a terminal) into an orderly quit,
// so that saves still waiting are written and the hooks are let go, instead of the process just
// vanishing. The handler only writes a byte to a pipe; the quit itself runs on the main thread.
class QuitOnSignals : public QObject {
    Q_OBJECT
public:
    explicit QuitOnSignals(QObject* parent = nullptr);
    ~QuitOnSignals() override;

private:
    void quit();

    QSocketNotifier* m_notifier = nullptr;
};

} // namespace norva
