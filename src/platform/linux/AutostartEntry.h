#pragma once

#include <QByteArray>
#include <QString>

namespace norva::AutostartEntry {

// Which program the login entry starts, and what to tell the log about the choice.
struct Choice {
    QString program;
    QString note; // empty when the running program is the one to start
};

// The running program, unless it runs from a build folder while Norva is installed: a login
// should start the installed Norva, which stays put while build folders come and go. A build with
// no installed Norva beside it still gets a working entry, and the note says why it points there.
Choice choose(const QString& running, const QString& installed, bool runningFromBuildTree,
              bool installedExists);

// Whether `program` sits in a CMake build folder (a CMakeCache.txt in its folder or one above it).
bool isInBuildTree(const QString& program);

// The XDG desktop entry that a desktop's session reads from the autostart folder.
QByteArray text(const QString& program);

} // namespace norva::AutostartEntry
