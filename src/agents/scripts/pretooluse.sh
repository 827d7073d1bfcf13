#!/bin/sh
# Norva's PreToolUse hook for Claude Code. It hands a permission prompt to the Norva notch and
# waits for the answer there; whenever Norva is not running it steps aside at once, so Claude
# Code asks in the terminal as usual. Norva writes this file whole each time it installs its hooks.
D=@NORVA_APPROVALS@
HB="$D/heartbeat"
ASK='{"hookSpecificOutput":{"hookEventName":"PreToolUse","permissionDecision":"ask"}}'
umask 077

# The last "key": "value" on each line of the payload (a value holding \" is cut there).
field() {
    printf '%s\n' "$P" | sed -n 's/.*"'"$1"'"[[:blank:]]*:[[:blank:]]*"\([^"]*\)".*/\1/p'
}

# Modification time in whole seconds; 0 when it cannot be read (GNU stat on Linux, BSD stat elsewhere).
if [ -d /proc/self ]; then
    mtime() { stat -c %Y "$1" 2>/dev/null || echo 0; }
else
    mtime() { stat -f %m "$1" 2>/dev/null || echo 0; }
fi

# Norva is alive while its heartbeat is at most 30 s old.
alive() {
    [ -f "$HB" ] || return 1
    m=$(mtime "$HB")
    [ $(($(date +%s) - ${m:-0})) -le 30 ]
}

# The process id of the terminal application among the hook's ancestors; $1 = editors or noeditors.
terminal_pid() {
    p=$PPID
    n=0
    while [ -n "$p" ] && [ "$p" -gt 1 ] 2>/dev/null && [ $n -lt 12 ]; do
        c=$(ps -o comm= -p "$p" 2>/dev/null)
        case "$c" in
        */Tabby.app/* | */iTerm.app/* | */Terminal.app/* | */Ghostty.app/* | *WezTerm* | *Alacritty* | *kitty* | \
            */Warp.app/* | */Hyper.app/* | \
            *gnome-terminal* | *konsole* | *alacritty* | *wezterm* | foot | footclient | */foot | xterm | */xterm | \
            uxterm | *tilix* | *ghostty*)
            echo "$p"
            return
            ;;
        */Visual\ Studio\ Code.app/* | */Cursor.app/*)
            if [ "$1" = editors ]; then
                echo "$p"
                return
            fi
            ;;
        esac
        p=$(ps -o ppid= -p "$p" 2>/dev/null | tr -d ' ')
        n=$((n + 1))
    done
}

# Writes term-SID.json, the record that lets Norva bring this session's terminal forward.
write_identity() {
    tp=$(terminal_pid editors)
    tt=$(ps -o tty= -p "$PPID" 2>/dev/null | tr -d ' ')
    printf '{"transcript_path":"%s","cwd":"%s","tty":"%s","term_program":"%s","iterm_session":"%s","tmux":"%s","tmux_pane":"%s","term_pid":"%s"}\n' \
        "$(field transcript_path)" "$(field cwd)" "$tt" "${TERM_PROGRAM:-}" "${ITERM_SESSION_ID:-}" "${TMUX:-}" \
        "${TMUX_PANE:-}" "$tp" >"$D/term-$SID.json.tmp" 2>/dev/null &&
        mv -f "$D/term-$SID.json.tmp" "$D/term-$SID.json" 2>/dev/null
}

# The team's never-allow check: $1 = agent, $2 = phase. A matching rule ends the hook with its deny
# body; no answer within NORVA_DENY_WAIT rounds of 0.025 s means no objection.
deny_check() {
    [ -f "$D/team-deny-active" ] || return 0
    alive || return 0
    K="$1-$2-$$"
    printf '%s' "$P" >"$D/.dc-$K" 2>/dev/null || return 0
    mv -f "$D/.dc-$K" "$D/denycheck-$K.json" 2>/dev/null || return 0
    w=${NORVA_DENY_WAIT:-40}
    r=0
    while [ "$r" -lt "$w" ] 2>/dev/null; do
        if [ -f "$D/denyresp-$K" ]; then
            a=$(cat "$D/denyresp-$K" 2>/dev/null)
            rm -f "$D/denyresp-$K" "$D/denycheck-$K.json" 2>/dev/null
            if [ -n "$a" ]; then
                printf '%s\n' "$a"
                exit 0
            fi
            return 0
        fi
        sleep 0.025
        r=$((r + 1))
    done
    rm -f "$D/denycheck-$K.json" 2>/dev/null
    return 0
}

P=$(cat)
TOOL=$(field tool_name)
MODE=$(field permission_mode)
[ -d "$D" ] || mkdir -p "$D" 2>/dev/null

SID=$(field session_id)
case "$SID" in */*) SID= ;; esac
if [ -n "$SID" ]; then
    T="$D/term-$SID.json"
    if [ ! -f "$T" ] || [ $(($(date +%s) - $(mtime "$T"))) -gt 300 ]; then
        write_identity
    fi
fi

if [ -f "$D/notch-off" ]; then
    [ "$TOOL" = AskUserQuestion ] || deny_check claude pre
    exit 0
fi

if [ "$TOOL" != AskUserQuestion ] && [ "$MODE" != default ]; then
    deny_check claude pre
    exit 0
fi

ID=$(field tool_use_id)
case "$ID" in */*) ID= ;; esac
if ! alive || [ -z "$ID" ]; then
    [ "$TOOL" = AskUserQuestion ] || printf '%s\n' "$ASK"
    exit 0
fi

printf '%s' "$P" >"$D/pending-$ID.json.tmp" 2>/dev/null
mv -f "$D/pending-$ID.json.tmp" "$D/pending-$ID.json" 2>/dev/null

if [ "$TOOL" = AskUserQuestion ]; then
    terminal_pid noeditors >"$D/pending-$ID.pid" 2>/dev/null
    exit 0
fi

: >"$D/alive-$ID" 2>/dev/null
i=0
while :; do
    if [ -f "$D/resp-$ID" ]; then
        a=$(cat "$D/resp-$ID" 2>/dev/null)
        rm -f "$D/resp-$ID" "$D/pending-$ID.json" "$D/alive-$ID" 2>/dev/null
        if [ -n "$a" ]; then
            printf '%s\n' "$a"
        else
            printf '%s\n' "$ASK"
        fi
        exit 0
    fi
    if ! alive; then
        rm -f "$D/pending-$ID.json" "$D/alive-$ID" 2>/dev/null
        printf '%s\n' "$ASK"
        exit 0
    fi
    i=$((i + 1))
    [ $((i % 50)) -eq 0 ] && : >"$D/alive-$ID" 2>/dev/null
    if [ $i -lt 600 ]; then
        sleep 0.1
    else
        sleep 0.5
    fi
done
