#!/bin/sh
# Norva's usage bridge for Claude Code's status line. It copies the payload's "rate_limits" into
# rate-limits.json for the notch, then runs the status line the person had before, so theirs still
# shows. It never fails: Claude Code's status line keeps working whatever happens here.
D=@NORVA_APPROVALS@
umask 077
P=$(cat)

# The "rate_limits" member as JSON: plutil on macOS; python3, which desktop Linux ships, elsewhere.
# Without either the limits are simply not copied.
L=
if [ -x /usr/bin/plutil ]; then
    L=$(printf '%s' "$P" | /usr/bin/plutil -extract rate_limits json -o - - 2>/dev/null)
elif command -v python3 >/dev/null 2>&1; then
    L=$(printf '%s' "$P" | python3 -c '
import json, sys
try:
    value = json.load(sys.stdin)["rate_limits"]
except Exception:
    sys.exit(0)
print(json.dumps(value))
' 2>/dev/null)
fi

if [ -n "$L" ] && [ "$L" != null ]; then
    printf '%s\n' "$L" >"$D/rate-limits.json.tmp" 2>/dev/null &&
        mv -f "$D/rate-limits.json.tmp" "$D/rate-limits.json" 2>/dev/null
fi

if [ -s "$D/statusline-original.cmd" ]; then
    C=$(cat "$D/statusline-original.cmd" 2>/dev/null)
    [ -n "$C" ] && printf '%s' "$P" | sh -c "$C"
fi
exit 0
