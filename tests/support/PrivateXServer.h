#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace norva::test {

// An X server of the test's own (Xvfb), so nothing depends on or disturbs the display the tests
// run on. Each size makes one X screen ("1280x800x24"); display() is empty when it did not start.
class PrivateXServer {
public:
    explicit PrivateXServer(const QStringList& screens = {QStringLiteral("1280x800x24")});
    ~PrivateXServer();
    QString display() const { return m_display; }
    // The environment with this server as the display Qt's X11 backend opens.
    QProcessEnvironment onThisDisplay(QProcessEnvironment environment) const;

private:
    QProcess m_server;
    QString m_display;
};

} // namespace norva::test
