#!/usr/bin/env bash
# The cost of a running timer on the closed notch: Norva starts under Xvfb with a focus round
# running (a saved timer.json), the pointer away, and its CPU time is counted over a stretch of
# seconds, beside the same stretch with nothing live. The face repaints once a second at most.
# Usage: bench/timer/timer-idle.sh [seconds]   (after cmake --build build --target norva)
set -euo pipefail
cd "$(dirname "$0")/../.."
seconds=${1:-30}
norva=${NORVA_BINARY:-build/norva}
[ -x "$norva" ] || { echo "build Norva first (cmake --build build --target norva)" >&2; exit 1; }

measure() { # with_timer: prints "<ticks> <rss KiB>"
    local home
    home=$(mktemp -d)
    mkdir -p "$home/.local/share/Norva"
    if [ "$1" = yes ]; then
        local end
        end=$(date -u -d "+3600 seconds" +%Y-%m-%dT%H:%M:%S.000Z)
        printf '{"phase":"work","completedRounds":0,"length":3700,"paused":false,"endsAt":"%s","focusTargets":[]}' \
            "$end" >"$home/.local/share/Norva/timer.json"
    fi
    HOME="$home" XDG_RUNTIME_DIR="$home" "$norva" 2>/dev/null &
    local pid=$!
    sleep 5
    local t0 t1 rss
    t0=$(awk '{print $14+$15}' "/proc/$pid/stat")
    sleep "$seconds"
    t1=$(awk '{print $14+$15}' "/proc/$pid/stat")
    rss=$(awk '/VmRSS/ {print $2}' "/proc/$pid/status")
    kill "$pid"
    wait "$pid" 2>/dev/null || true
    rm -rf "$home"
    echo "$((t1 - t0)) $rss"
}

if [ -z "${DISPLAY:-}" ]; then
    exec xvfb-run -a -s "-screen 0 1600x900x24" "$0" "$@"
fi
read -r idle_ticks idle_rss < <(measure no)
read -r timer_ticks timer_rss < <(measure yes)
printf '%-44s %s\n' "measure (over $seconds s, pointer away)" "ticks of 1/100 s CPU, RSS"
printf '%-44s %s ticks (%s %% of one core), %s KiB\n' "nothing live" "$idle_ticks" \
    "$(awk -v t="$idle_ticks" -v s="$seconds" 'BEGIN {printf "%.2f", t / s}')" "$idle_rss"
printf '%-44s %s ticks (%s %% of one core), %s KiB\n' "a focus round ticking on the closed notch" "$timer_ticks" \
    "$(awk -v t="$timer_ticks" -v s="$seconds" 'BEGIN {printf "%.2f", t / s}')" "$timer_rss"
