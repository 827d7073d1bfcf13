#pragma once

#include <QString>

namespace norva {

// The team's answer to a permission prompt, given before the prompt is ever shown: a never rule
// denies it (the card never offers Allow), an always rule allows it.
struct TeamVerdict {
    bool allowed = false;
    QString reason; // "Denied by your team's rule: ..." or "Allowed by your team's rule: ..."
};

} // namespace norva
