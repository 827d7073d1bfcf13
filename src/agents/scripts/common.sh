# The functions below are shared by Norva's hook scripts; Norva writes them into each script at
# install time, so every installed script stands on its own.
# The sed program that yields every wanted "key": "value" of the payload as key=value lines, in
# one pass: on each line of the payload the last occurrence of a key wins, and a value holding \"
# is cut there.
fields_program() {
    PROG=h
    for k in "$@"; do
        PROG="$PROG
g
s/.*\"$k\"[[:blank:]]*:[[:blank:]]*\"\\([^\"]*\\)\".*/$k=\\1/p"
    done
}

# read_fields key...: the payload's wanted fields into F, for pick (one sed).
read_fields() {
    fields_program "$@"
    F=$(sed -n "$PROG" <<EOF
$P
EOF
)
}

# pick VAR key: the key's value from $F into VAR. The values of several lines are joined by newlines,
# unless FIRST_ONLY is set: then only the first line that has the key counts.
pick() {
    v=
    set -f
    o=$IFS
    IFS='
'
    for l in $F; do
        case "$l" in
        "$2="*)
            if [ -z "${FIRST_ONLY:-}" ]; then
                v="${v:+$v
}${l#"$2="}"
            elif [ -z "$v" ]; then
                v=${l#"$2="}
            fi
            ;;
        esac
    done
    IFS=$o
    set +f
    eval "$1=\$v"
}

# Norva is alive while its heartbeat is at most 30 whole seconds old. On Linux one find tells it
# (GNU find reads fractional minutes: under 31 s); elsewhere stat and date. A heartbeat found stale
# stays stale until Norva beats again, so ".stale" remembers it and later calls test it without
# starting a process. Once a hook knows Norva is alive, ALIVE=1 spares it the test for the call.
if [ -d /proc/self ]; then
    heartbeat_is_fresh() { [ -n "$(find "$HB" -mmin -0.5167 2>/dev/null)" ]; }
else
    heartbeat_is_fresh() {
        m=$(stat -f %m "$HB" 2>/dev/null || echo 0)
        [ $(($(date +%s) - ${m:-0})) -le 30 ]
    }
fi
alive() {
    [ -n "${ALIVE:-}" ] && return 0
    [ -f "$HB" ] || return 1
    if [ -f "$D/.stale" ] && [ ! "$HB" -nt "$D/.stale" ]; then
        return 1
    fi
    if heartbeat_is_fresh; then
        ALIVE=1
        return 0
    fi
    : >"$D/.stale" 2>/dev/null
    return 1
}

# The command name and the parent of process $1, into PC and PP: from /proc where there is one
# (no process started), else from ps.
proc_info() {
    if [ -r "/proc/$1/stat" ]; then
        IFS= read -r PC <"/proc/$1/comm" 2>/dev/null || PC=
        IFS= read -r s <"/proc/$1/stat" 2>/dev/null || s=
        set -f
        # shellcheck disable=SC2086
        set -- ${s##*) }
        set +f
        PP=${2:-}
    else
        PC=$(ps -o comm= -p "$1" 2>/dev/null)
        PP=$(ps -o ppid= -p "$1" 2>/dev/null | tr -d ' ')
    fi
}

# The process id of the terminal application among the hook's ancestors. $1 = "noeditors" leaves
# out the VS Code and Cursor editors; "codex" adds the Codex app.
# Besides the macOS terminals it knows the common Linux ones.
terminal_pid() {
    w=${1:-}
    p=$PPID
    n=0
    while [ -n "$p" ] && [ "$p" -gt 1 ] 2>/dev/null && [ $n -lt 12 ]; do
        proc_info "$p"
        case "$PC" in
        */Tabby.app/* | */iTerm.app/* | */Terminal.app/* | */Ghostty.app/* | *WezTerm* | *Alacritty* | *kitty* | \
            */Warp.app/* | */Hyper.app/* | \
            *gnome-terminal* | *konsole* | *alacritty* | *wezterm* | foot | footclient | */foot | xterm | */xterm | \
            uxterm | *tilix* | *ghostty*)
            echo "$p"
            return
            ;;
        */Visual\ Studio\ Code.app/* | */Cursor.app/*)
            if [ "$w" != noeditors ]; then
                echo "$p"
                return
            fi
            ;;
        */Codex.app/*)
            if [ "$w" = codex ]; then
                echo "$p"
                return
            fi
            ;;
        esac
        p=$PP
        n=$((n + 1))
    done
}

# Writes term-SID.json, the record that lets Norva bring this session's terminal forward; $1 is the
# ancestor walk's mode.
write_identity() {
    tp=$(terminal_pid "${1:-}")
    tt=$(ps -o tty= -p "$PPID" 2>/dev/null | tr -d ' ')
    printf '{"transcript_path":"%s","cwd":"%s","tty":"%s","term_program":"%s","iterm_session":"%s","tmux":"%s","tmux_pane":"%s","term_pid":"%s"}\n' \
        "$TP" "$CWD" "$tt" "${TERM_PROGRAM:-}" "${ITERM_SESSION_ID:-}" "${TMUX:-}" "${TMUX_PANE:-}" "$tp" \
        >"$D/term-$SID.json.tmp" 2>/dev/null &&
        mv -f "$D/term-$SID.json.tmp" "$D/term-$SID.json" 2>/dev/null
}

# True when term-SID.json is missing or older than 300 s (one find, rather than date and stat).
identity_is_old() {
    [ -f "$D/term-$SID.json" ] || return 0
    [ -z "$(find "$D/term-$SID.json" -mmin -5 2>/dev/null)" ]
}

# The team's never-allow check: $1 = agent, $2 = phase. A matching rule ends the hook with its deny
# body; no answer within NORVA_DENY_WAIT rounds of 0.025 s means no objection.
deny_check() {
    [ -f "$D/team-deny-active" ] || return 0
    alive || return 0
    K="$1-$2-$$"
    printf '%s' "$P" >"$D/.dc-$K" 2>/dev/null || return 0
    mv -f "$D/.dc-$K" "$D/denycheck-$K.json" 2>/dev/null || return 0
    r=0
    while [ "$r" -lt "${NORVA_DENY_WAIT:-40}" ] 2>/dev/null; do
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

# Waits for Norva's answer to prompt $ID: 0.1 s rounds for the first minute, then 0.5 s, touching
# alive-ID every 50 rounds. Sets A to the answer; returns 1 when the heartbeat went stale first.
# There is no overall limit: the agent's own hook timeout is the only outer bound. The alive file
# holds this shell's process id and its parent's: when the agent kills either (Esc in Claude Code
# kills the shell it started the hook with), Norva takes the card away and hands the prompt back,
# which also ends this wait.
wait_for_answer() {
    printf '%s %s' "$$" "$PPID" >"$D/alive-$ID" 2>/dev/null
    i=0
    while :; do
        if [ -f "$D/resp-$ID" ]; then
            A=$(cat "$D/resp-$ID" 2>/dev/null)
            rm -f "$D/resp-$ID" "$D/pending-$ID.json" "$D/alive-$ID" 2>/dev/null
            return 0
        fi
        ALIVE=
        if ! alive; then
            rm -f "$D/pending-$ID.json" "$D/alive-$ID" 2>/dev/null
            return 1
        fi
        i=$((i + 1))
        [ $((i % 50)) -ne 0 ] || printf '%s %s' "$$" "$PPID" >"$D/alive-$ID" 2>/dev/null
        if [ $i -lt 600 ]; then
            sleep 0.1
        else
            sleep 0.5
        fi
    done
}
