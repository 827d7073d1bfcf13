#!/usr/bin/env bash
# What choosing the platform costs at start on a Wayland desktop: process start to first drawn
# frame under weston (headless, with XWayland), with Norva choosing XWayland itself (it asks
# XWayland once before Qt starts) against the person having set QT_QPA_PLATFORM=xcb (no asking).
# Usage: bench/startup/wayland-choice.sh [runs]   (build first; needs weston and xwayland)
set -euo pipefail
cd "$(dirname "$0")/../.."
runs=${1:-9}
norva=${NORVA_BINARY:-build/norva}
runtime=$(mktemp -d)
home=$(mktemp -d)
chmod 700 "$runtime"
mkdir -p -m 1777 /tmp/.X11-unix
socket="norva-bench-$$"
XDG_RUNTIME_DIR="$runtime" weston --backend=headless-backend.so --xwayland --socket="$socket" \
    --no-config --width=1920 --height=1080 --idle-time=0 >"$runtime/weston.log" 2>&1 &
weston=$!
trap 'kill $weston 2>/dev/null; rm -rf "$runtime" "$home"' EXIT
for _ in $(seq 600); do
    grep -q "xserver listening on display" "$runtime/weston.log" && [ -S "$runtime/$socket" ] && break
    sleep 0.1
done
display=$(grep -o "xserver listening on display :[0-9]*" "$runtime/weston.log" | grep -o ":[0-9]*")
export XDG_RUNTIME_DIR="$runtime" WAYLAND_DISPLAY="$socket" DISPLAY="$display" NORVA_LOG_QUIET=1
unset QT_QPA_PLATFORM
# XWayland starts with its first client; let that be neither measurement's cost.
HOME="$home" "$norva" --exit-after-first-frame >/dev/null 2>&1

median_of_runs() {
    local times=()
    for _ in $(seq "$runs"); do
        start=$(date +%s%N)
        HOME="$home" "$@" --exit-after-first-frame >/dev/null 2>&1
        end=$(date +%s%N)
        times+=($(( (end - start) / 1000000 )))
    done
    printf '%s\n' "${times[@]}" | sort -n | awk '{a[NR]=$1} END {print (NR%2 ? a[(NR+1)/2] : (a[NR/2]+a[NR/2+1])/2)}'
}

printf '%-55s %s ms\n' "first frame, Norva chooses XWayland (median)" "$(median_of_runs "$norva")"
printf '%-55s %s ms\n' "first frame, QT_QPA_PLATFORM=xcb set (median)" "$(median_of_runs env QT_QPA_PLATFORM=xcb "$norva")"
