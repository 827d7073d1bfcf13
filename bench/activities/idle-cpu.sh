#!/usr/bin/env bash
# Idle CPU of Norva under a private Xvfb with a throw-away HOME, measured from /proc/<pid>/stat
# (utime + stime) over a window of seconds, the pointer away from the notch: once with no live
# activity, once with three live activities taking turns (a timer and a download that update every
# second, and an agent prompt). Usage:
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
cleanup() {
    [ -n "$norva_pid" ] && kill "$norva_pid" 2>/dev/null || true
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
    HOME="$home" XDG_RUNTIME_DIR="$home" NORVA_LOG_QUIET=1 "$norva" "$@" &
    norva_pid=$!
    sleep 5 # start-up and the first frames are not idle
    local before after
    before=$(cpu_ticks "$norva_pid")
    sleep "$window"
    after=$(cpu_ticks "$norva_pid")
    awk -v l="$label" -v t=$((after - before)) -v hz="$ticks_per_second" -v w="$window" \
        'BEGIN { printf "%-36s %8.2f s CPU in %d s = %5.2f %%\n", l, t / hz, w, 100 * t / hz / w }'
    kill "$norva_pid"
    wait "$norva_pid" 2>/dev/null || true
    norva_pid=""
    rm -rf "$home"
    home=""
}

measure "no live activity, pointer away"
measure "three live activities, pointer away" --demo-scene three
