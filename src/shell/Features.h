#pragma once

namespace norva {

class Shell;

// Registers every feature with the shell, one line per feature, in start order: a feature that
// uses another is listed after it.
void addFeatures(Shell& shell);

} // namespace norva
