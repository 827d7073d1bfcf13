#pragma once

#include <QString>

namespace norva {

// What went wrong with a file, in the plain words a person reads ("the disk is full"), from the
// system's own words for it ("No space left on device"). Unknown troubles keep the system's words.
QString plainFileTrouble(const QString& systemWords);

} // namespace norva
