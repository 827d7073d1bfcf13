#include "PrivateXServer.h"

namespace norva::test {

PrivateXServer::PrivateXServer(const QStringList& screens)
{
    QStringList arguments{QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-nolisten"),
                          QStringLiteral("tcp"), QStringLiteral("-noreset")};
    for (int screen = 0; screen < screens.size(); ++screen)
        arguments << QStringLiteral("-screen") << QString::number(screen) << screens.at(screen);
    m_server.start(QStringLiteral("Xvfb"), arguments);
    // Xvfb writes its display's number once it takes connections.
    while (!m_server.canReadLine() && m_server.waitForReadyRead(10000)) {
    }
    const QByteArray number = m_server.readLine().trimmed();
    if (!number.isEmpty())
        m_display = QLatin1Char(':') + QString::fromLatin1(number);
}

PrivateXServer::~PrivateXServer()
{
    m_server.terminate();
    m_server.waitForFinished(5000);
}

QProcessEnvironment PrivateXServer::onThisDisplay(QProcessEnvironment environment) const
{
    environment.insert(QStringLiteral("DISPLAY"), m_display);
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    return environment;
}

} // namespace norva::test
