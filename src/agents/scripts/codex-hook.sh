#!/bin/sh
# Norva's hook for Codex. It hands a permission request to the Norva notch and waits for the answer
# there; whenever Norva is not running it answers {} at once, so Codex asks in the terminal as usual.
# Norva writes this file whole each time it installs its hooks; the folder below is filled in then.
D=@NORVA_APPROVALS@
HB="$D/heartbeat"
NONE='{}'
BYPASS='{"hookSpecificOutput":{"hookEventName":"PermissionRequest","decision":{"behavior":"allow"}}}'
umask 077

@NORVA_COMMON@

P=$(cat)
fields_program hook_event_name session_id permission_mode transcript_path cwd
F=$(sed -n "$PROG" <<EOF
$P
EOF
)
pick EVENT hook_event_name
pick SID session_id
case "$SID" in */*) SID= ;; esac
[ -d "$D" ] || mkdir -p "$D" 2>/dev/null

case "$EVENT" in
PreToolUse)
    # Fires in every mode, bypass included, where PermissionRequest never does.
    deny_check codex pre
    exit 0
    ;;
SessionStart)
    [ -n "$SID" ] || exit 0
    pick TP transcript_path
    pick CWD cwd
    write_identity codex
    exit 0
    ;;
Stop)
    if [ -n "$SID" ]; then
        rm -f "$D"/pending-codex-"$SID"-*.json "$D"/alive-codex-"$SID"-* 2>/dev/null
    fi
    exit 0
    ;;
PermissionRequest) ;;
*) exit 0 ;;
esac

pick MODE permission_mode
if [ "$MODE" = bypassPermissions ]; then
    deny_check codex perm
    printf '%s\n' "$BYPASS"
    exit 0
fi

if [ -f "$D/notch-off" ]; then
    deny_check codex perm
    printf '%s\n' "$NONE"
    exit 0
fi

if ! alive; then
    printf '%s\n' "$NONE"
    exit 0
fi

ID="codex-$SID-$$"
printf '%s' "$P" >"$D/pending-$ID.json.tmp" 2>/dev/null
mv -f "$D/pending-$ID.json.tmp" "$D/pending-$ID.json" 2>/dev/null

if wait_for_answer && [ -n "$A" ]; then
    printf '%s\n' "$A"
else
    printf '%s\n' "$NONE"
fi
exit 0
