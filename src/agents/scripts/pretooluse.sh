#!/bin/sh
# Norva's PreToolUse hook for Claude Code. It does only what no other hook can: the team's
# never-allow check, in every permission mode, and (registered for AskUserQuestion with the
# argument "question") handing a question to the Norva notch. Permission prompts reach the notch
# through "permissionrequest.sh", only when Claude Code is about to ask. It prints nothing but a
# team's deny body, and unless the team has never rules it ends without starting a process.
# Norva writes this file whole each time it installs its hooks; the folder below is filled in then.
D=@NORVA_APPROVALS@
HB="$D/heartbeat"
umask 077

@NORVA_COMMON@

[ -f "$HB" ] || exit 0
if [ "${1:-}" != question ]; then
    [ -f "$D/team-deny-active" ] || exit 0
    alive || exit 0
    P=$(cat)
    deny_check claude pre
    exit 0
fi

[ -f "$D/notch-off" ] && exit 0
alive || exit 0
P=$(cat)
read_fields session_id tool_use_id transcript_path cwd
pick ID tool_use_id
case "$ID" in */*) ID= ;; esac
[ -n "$ID" ] || exit 0
pick SID session_id
case "$SID" in */*) SID= ;; esac
if [ -n "$SID" ] && identity_is_old; then
    pick TP transcript_path
    pick CWD cwd
    write_identity editors
fi

# A question is answered in Claude Code's own picker; Norva needs the terminal to type into it.
printf '%s' "$P" >"$D/pending-$ID.json.tmp" 2>/dev/null
mv -f "$D/pending-$ID.json.tmp" "$D/pending-$ID.json" 2>/dev/null
terminal_pid noeditors >"$D/pending-$ID.pid" 2>/dev/null
exit 0
