#pragma once

#include "app/Clock.h"

#include <QString>

// The fixed numbers and names of Norva's side of the approval exchange, in one place.
namespace norva::agents {

// How often Norva proves it is alive to the hooks; the hooks trust a heartbeat for 30 s.
inline constexpr Seconds heartbeatInterval{10};
inline constexpr double heartbeatTrustSeconds = 30;

// The fallback scan of the approvals folder, for the rare change the folder watch misses and for
// the sweeps that go by age: every 5 s while a prompt or an unclaimed answer waits in the folder (a
// killed hook's card goes within seconds) or while the folder cannot be watched; once a minute while
// nothing waits, so a Norva at rest does not wake for it.
inline constexpr Seconds fallbackScanInterval{5};
inline constexpr Seconds restingScanInterval{60};

// Sweeping: a response no hook took up, an identity nobody refreshed, a prompt older than a day,
// and a prompt whose waiting hook stopped touching its alive file (it touches it every 25 s at most).
inline constexpr double unclaimedResponseSeconds = 10;
inline constexpr double staleIdentitySeconds = 1800;
inline constexpr double pendingLimitSeconds = 86400;
inline constexpr double orphanPendingSeconds = 70;
inline constexpr double orphanAliveSeconds = 120;

// Registered hook timeouts, in seconds.
inline constexpr int claudePreToolUseTimeout = 86400;
inline constexpr int claudePostToolUseTimeout = 10;
inline constexpr int claudePermissionTimeout = 86400;
inline constexpr int codexShortTimeout = 20;
inline constexpr int codexPreToolUseTimeout = 30;
inline constexpr int codexPermissionTimeout = 86400;
inline constexpr int copilotShortTimeout = 20;
inline constexpr int copilotPermissionTimeout = 86400;

// File names inside the approvals folder.
inline const QString heartbeatFile = QStringLiteral("heartbeat");
inline const QString notchOffFile = QStringLiteral("notch-off");
inline const QString preToolUseScript = QStringLiteral("pretooluse.sh");
inline const QString postToolUseScript = QStringLiteral("posttooluse.sh");
inline const QString permissionRequestScript = QStringLiteral("permissionrequest.sh");
inline const QString codexScript = QStringLiteral("codex-hook.sh");
inline const QString copilotScript = QStringLiteral("copilot-hook.sh");

// The path tails by which an entry in an agent's configuration is recognised as Norva's own.
inline const QString preToolUseMarker = QStringLiteral("Norva/approvals/pretooluse.sh");
inline const QString postToolUseMarker = QStringLiteral("Norva/approvals/posttooluse.sh");
inline const QString permissionRequestMarker = QStringLiteral("Norva/approvals/permissionrequest.sh");
inline const QString codexMarker = QStringLiteral("Norva/approvals/codex-hook.sh");
inline const QString eventsMarker = QStringLiteral("claude-events.jsonl");

// What the agent's terminal says while one of Norva's waiting hooks runs.
inline const QString hookStatusMessage = QStringLiteral("Answer on the Norva notch");

// The in-process notice posted after the hooks were installed or removed.
inline const QString hooksChangedNotice = QStringLiteral("norva.agentHooks.changed");

} // namespace norva::agents
