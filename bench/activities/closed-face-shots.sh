#!/usr/bin/env bash
# Screenshots of the closed notch's live activities, taken from Norva's demo under a private Xvfb
# with a throw-away HOME: one activity, two taking turns (two shots 4 s apart), three taking turns,
# the agents' prompts over the timer, a volume toast over the rest, and the hovered timer with its
# Pause and Stop. Usage:
#   bench/activities/closed-face-shots.sh [OUT_DIR]      (default build/screenshots/activities)
set -euo pipefail
cd "$(dirname "$0")/../.."
out=${1:-build/screenshots/activities}
norva=${NORVA_BINARY:-build/norva}
[ -x "$norva" ] || { echo "build Norva first (cmake --build build --target norva)" >&2; exit 1; }
mkdir -p "$out"

display_number=$((150 + RANDOM % 100))
Xvfb ":$display_number" -screen 0 1600x900x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
norva_pid=""
home=""
desktop=""
desktop_png=""
cleanup() {
    [ -n "$norva_pid" ] && kill "$norva_pid" 2>/dev/null || true
    kill "$desktop" 2>/dev/null || true
    rm -f "$desktop_png"
    kill "$xvfb" 2>/dev/null || true
    [ -n "$home" ] && rm -rf "$home"
}
trap cleanup EXIT
export DISPLAY=":$display_number"
sleep 1
# A calm grey desktop (a plain full-screen picture mapped first, so Norva stays above it), so the
# black notch stands out as it does on a real screen.
desktop_png=$(mktemp --suffix=.png)
convert -size 1600x900 xc:'#59606e' "$desktop_png"
display -geometry +0+0 -borderwidth 0 "$desktop_png" &
desktop=$!
sleep 1

start() { # scene
    home=$(mktemp -d)
    HOME="$home" XDG_RUNTIME_DIR="$home" NORVA_LOG_QUIET=1 "$norva" --demo-scene "$1" &
    norva_pid=$!
    # The demo starts with the notch window: time the shots from its appearance.
    timeout 20 xdotool search --sync --name '^Norva$' >/dev/null 2>&1 || sleep 2
    sleep 1.0
}
stop() {
    kill "$norva_pid" 2>/dev/null || true
    wait "$norva_pid" 2>/dev/null || true
    norva_pid=""
    rm -rf "$home"
    home=""
}
shot() { # name: the notch at the top centre, doubled so the small type can be read
    import -window root -crop 560x84+520+0 +repage -filter point -resize 200% "$out/$1.png"
    echo "$out/$1.png"
}

xdotool mousemove 800 600
start one;     shot one
xdotool mousemove 800 12
sleep 0.8
shot hover-detail # the timer's detail with Pause and Stop
xdotool mousemove 800 600
stop
start two;     shot two-a;    sleep 4; shot two-b;    stop
start three;   shot three-a;  sleep 4; shot three-b;  sleep 4; shot three-c; stop
start prompts; shot prompts;                          stop
start all
sleep 2.9 # the demo's first volume change comes 4 s after it starts, for 1.6 s
shot volume-toast
stop
