#!/bin/sh
# Norva's PreToolUse hook for Claude Code. It hands a permission prompt to the Norva notch and
# waits for the answer there; whenever Norva is not running it steps aside at once, so Claude
# Code asks in the terminal as usual.
# Norva writes this file whole each time it installs its hooks; the folder below is filled in then.
D=@NORVA_APPROVALS@
HB="$D/heartbeat"
ASK='{"hookSpecificOutput":{"hookEventName":"PreToolUse","permissionDecision":"ask"}}'
umask 077

@NORVA_COMMON@

P=$(cat)
fields_program tool_name permission_mode session_id tool_use_id transcript_path cwd
F=$(sed -n "$PROG" <<EOF
$P
EOF
)
pick TOOL tool_name
pick MODE permission_mode
[ -d "$D" ] || mkdir -p "$D" 2>/dev/null

# The jump-back record, for every session in every mode.
pick SID session_id
case "$SID" in */*) SID= ;; esac
if [ -n "$SID" ] && identity_is_old; then
    pick TP transcript_path
    pick CWD cwd
    write_identity editors
fi

if [ -f "$D/notch-off" ]; then
    [ "$TOOL" = AskUserQuestion ] || deny_check claude pre
    exit 0
fi

# Modes other than "default" (bypassPermissions, acceptEdits, plan) are left to Claude Code.
if [ "$TOOL" != AskUserQuestion ] && [ "$MODE" != default ]; then
    deny_check claude pre
    exit 0
fi

pick ID tool_use_id
case "$ID" in */*) ID= ;; esac
if [ -z "$ID" ] || ! alive; then
    [ "$TOOL" = AskUserQuestion ] || printf '%s\n' "$ASK"
    exit 0
fi

printf '%s' "$P" >"$D/pending-$ID.json.tmp" 2>/dev/null
mv -f "$D/pending-$ID.json.tmp" "$D/pending-$ID.json" 2>/dev/null

# A question is answered in Claude Code's own picker; Norva needs the terminal to type into it.
if [ "$TOOL" = AskUserQuestion ]; then
    terminal_pid noeditors >"$D/pending-$ID.pid" 2>/dev/null
    exit 0
fi

if wait_for_answer && [ -n "$A" ]; then
    printf '%s\n' "$A"
else
    printf '%s\n' "$ASK"
fi
exit 0
