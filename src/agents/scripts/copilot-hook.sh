#!/bin/sh
# Norva's hook for Copilot CLI ($1 is the event name). It hands a permission request to the Norva
# notch and waits for the answer there; whenever Norva is not running it answers nothing at once, so
# Copilot asks in the terminal as usual.
# Norva writes this file whole each time it installs its hooks; the folder below is filled in then.
D=@NORVA_APPROVALS@
HB="$D/heartbeat"
umask 077

@NORVA_COMMON@

EVENT=${1:-}
FIRST_ONLY=1
P=$(cat)
fields_program sessionId toolName cwd
F=$(sed -n "$PROG" <<EOF
$P
EOF
)
pick SID sessionId
case "$SID" in */*) SID= ;; esac
[ -n "$SID" ] || exit 0
if [ -n "${COPILOT_HOME:-}" ]; then
    TP="$COPILOT_HOME/session-state/$SID/events.jsonl"
else
    TP="$HOME/.copilot/session-state/$SID/events.jsonl"
fi
pick CWD cwd
[ -d "$D" ] || mkdir -p "$D" 2>/dev/null

case "$EVENT" in
sessionStart)
    write_identity
    exit 0
    ;;
sessionEnd)
    rm -f "$D"/pending-copilot-"$SID"-*.json "$D"/alive-copilot-"$SID"-* 2>/dev/null
    exit 0
    ;;
permissionRequest) ;;
*) exit 0 ;;
esac

# Before stepping aside below, so that a session in --yolo still gets its jump-back record.
identity_is_old && write_identity

# A session that lets Copilot act on its own keeps Copilot's own rules. A prompt that merely spells
# such a flag counts too: the mistake leads to Copilot's own prompt, never to an allow.
ARGS=${NORVA_COPILOT_ARGS:-}
if [ -z "$ARGS" ]; then
    # Up to 6 ancestors from the parent up, then all their argument lists in one listing.
    pids=
    p=$PPID
    n=0
    while [ -n "$p" ] && [ "$p" -gt 1 ] 2>/dev/null && [ $n -lt 6 ]; do
        pids="$pids${pids:+,}$p"
        proc_info "$p"
        p=$PP
        n=$((n + 1))
    done
    if [ -n "$pids" ]; then
        listing=$(ps -o args= -p "$pids" 2>/dev/null)
        set -f
        o=$IFS
        IFS='
'
        for l in $listing; do
            ARGS="$ARGS $l"
        done
        IFS=$o
        set +f
    fi
fi
case " $ARGS " in
*" --yolo "* | *" --allow-all "* | *" --allow-all-tools "* | *" --allow-all-paths "* | *" --allow-all-urls "* | \
    *" --allow-tool "* | *" --allow-tool="*)
    deny_check copilot perm
    exit 0
    ;;
esac

if [ -f "$D/notch-off" ]; then
    deny_check copilot perm
    exit 0
fi

alive || exit 0
pick TOOL toolName
[ -n "$TOOL" ] || exit 0

# The pending file is the payload with the transcript path spliced in as its first field.
ID="copilot-$SID-$$"
printf '{"transcript_path":"%s",%s' "$TP" "${P#*\{}" >"$D/pending-$ID.json.tmp" 2>/dev/null
mv -f "$D/pending-$ID.json.tmp" "$D/pending-$ID.json" 2>/dev/null

if wait_for_answer && [ -n "$A" ]; then
    printf '%s\n' "$A"
fi
exit 0
