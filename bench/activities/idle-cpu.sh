#!/usr/bin/env bash
# Idle CPU of Norva under a private Xvfb with a throw-away HOME, measured from /proc/<pid>/stat
# (utime + stime) over a window of seconds, the pointer away from the notch: once with no live
# activity, once with three live activities taking turns (`--demo-scene three`: a focus round and
# a download that update every second, and the shelf), and once with a song playing
# (tools/music-sample.sh: mpv on a private session bus, so the closed notch shows its cover and
# moving level bars). Then, over 20 s more, the wake-ups (poll and sleep calls, as bench/footprint
# counts them with strace; futex calls apart) and the notch window's size. Every feature is on, the
# ones off by default too (the weather beside the notch, Claude Code's usage, volume changes on the
# notch, the notes' Markdown mirror, completed to-dos). Usage:
#   bench/activities/idle-cpu.sh [SECONDS]      (default 60)
set -euo pipefail
cd "$(dirname "$0")/../.."
window=${1:-60}
norva=${NORVA_BINARY:-build/norva}
[ -x "$norva" ] || { echo "build Norva first (cmake --build build --target norva)" >&2; exit 1; }

display_number=$((150 + RANDOM % 100))
Xvfb ":$display_number" -screen 0 1600x900x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
norva_pid=""
home=""
SAMPLE_PID=""
cleanup() {
    [ -n "$norva_pid" ] && kill "$norva_pid" 2>/dev/null || true
    [ -n "$SAMPLE_PID" ] && kill "$SAMPLE_PID" 2>/dev/null || true
    kill "$xvfb" 2>/dev/null || true
    [ -n "$home" ] && rm -rf "$home"
}
trap cleanup EXIT
export DISPLAY=":$display_number"
sleep 1
xdotool mousemove 800 700
ticks_per_second=$(getconf CLK_TCK)

cpu_ticks() { awk '{ print $14 + $15 }' "/proc/$1/stat"; }

measure() { # label, norva arguments...
    local label=$1
    shift
    home=$(mktemp -d)
    mkdir -p "$home/.config/Norva"
    printf '%s\n' 'hasLaunchedBefore = true' '"activities.weather.v1" = true' '"agents.showClaudeUsage.v1" = true' \
        'replaceSystemHUD = true' '"notesMirror.enabled" = true' '"todos.showCompleted.v1" = true' \
        >"$home/.config/Norva/preferences.toml"
    HOME="$home" XDG_RUNTIME_DIR="$home" NORVA_LOG_QUIET=1 "$norva" "$@" &
    norva_pid=$!
    sleep 5 # start-up and the first frames are not idle
    local before after
    before=$(cpu_ticks "$norva_pid")
    sleep "$window"
    after=$(cpu_ticks "$norva_pid")
    local trace waits futex size
    trace=$(mktemp)
    timeout -s INT 20 strace -c -f -p "$norva_pid" -o "$trace" >/dev/null 2>&1 || true
    waits=$(awk '$NF ~ /^(poll|ppoll|epoll_wait|epoll_pwait|select|pselect6|nanosleep|clock_nanosleep)$/ {s+=$4} END {print s+0}' "$trace")
    futex=$(awk '$NF == "futex" {print $4}' "$trace")
    rm -f "$trace"
    size=$(xwininfo -name Norva 2>/dev/null | awk '/Width:/ {w=$2} /Height:/ {h=$2} END {print w "x" h}')
    awk -v l="$label" -v t=$((after - before)) -v hz="$ticks_per_second" -v w="$window" -v wa="$waits" -v f="${futex:-0}" -v s="$size" \
        'BEGIN { printf "%-36s %8.2f s CPU in %d s = %5.2f %%, %6.2f wake-ups/s, %6.2f futex/s, window %s\n", l, t / hz, w, 100 * t / hz / w, wa / 20, f / 20, s }'
    kill "$norva_pid"
    wait "$norva_pid" 2>/dev/null || true
    norva_pid=""
    rm -rf "$home"
    home=""
}

measure "no live activity, pointer away"
measure "three live activities, pointer away" --demo-scene three
coproc SAMPLE { exec tools/music-sample.sh; }
read -r address <&"${SAMPLE[0]}"
export DBUS_SESSION_BUS_ADDRESS=$address
measure "a song playing, pointer away"
