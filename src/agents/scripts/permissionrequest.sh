#!/bin/sh
# Norva's PermissionRequest hook for Claude Code. Claude Code runs it exactly when it is about to
# show its permission dialog, in every mode; the hook hands the prompt to the Norva notch and waits
# for the answer there. Printing nothing leaves the dialog to Claude Code, as if Norva were not
# there: when Norva is not running or stops beating, when answering on the notch is off, and when
# the person chose "Answer in the terminal".
# Norva writes this file whole each time it installs its hooks; the folder below is filled in then.
D=@NORVA_APPROVALS@
HB="$D/heartbeat"
umask 077

@NORVA_COMMON@

[ -f "$HB" ] || exit 0
[ -f "$D/notch-off" ] && exit 0
alive || exit 0
P=$(cat)
read_fields session_id transcript_path cwd
pick SID session_id
case "$SID" in */*) SID= ;; esac
[ -n "$SID" ] || exit 0
if identity_is_old; then
    pick TP transcript_path
    pick CWD cwd
    write_identity editors
fi

ID="claude-$SID-$$"
printf '%s' "$P" >"$D/pending-$ID.json.tmp" 2>/dev/null
mv -f "$D/pending-$ID.json.tmp" "$D/pending-$ID.json" 2>/dev/null
if wait_for_answer && [ -n "$A" ]; then
    printf '%s\n' "$A"
fi
exit 0
