#pragma once

#include "TempHome.h"

#include <QByteArray>
#include <QProcess>
#include <QStringList>

#include <memory>

namespace norva::test {

// Norva started for real as a process of its own, with a throw-away HOME and its log on standard
// error. `environment` starts from the test's own; add to it what the case needs.
QProcessEnvironment norvaEnvironment(const TempHome& home);
std::unique_ptr<QProcess> startNorva(const QString& executable, const QProcessEnvironment& environment,
                                     const QStringList& arguments = {});

// Reads the process's standard error into `seen` until it holds `text`, the process ends or `ms`
// pass; true when the text came.
bool waitForOutput(QProcess& process, const QByteArray& text, QByteArray& seen, int ms = 20000);

// Ends the process as a logout would, and kills it when it does not go.
void stop(QProcess& process);

} // namespace norva::test
