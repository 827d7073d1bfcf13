#!/usr/bin/env bash
# Norva's footprint against a bare Qt Quick window (build/bench/footprint/footprint-baseline: one
# frameless 760 x 300 window with a Rectangle and a Text, same Qt), both under one private Xvfb
# with throw-away HOMEs, printed as figures and as ratios to the floor:
#   - process start to first drawn frame, median of RUNS, for the floor, Norva with an empty
#     history and Norva with a 10,000-clip clipboard history;
#   - resident and private memory after 5 s;
#   - idle CPU and wake-ups over SECONDS, pointer away: CPU from /proc/<pid>/stat, wake-ups as the
#     calls that wait (poll, ppoll, futex, epoll_wait, nanosleep) counted by `strace -c -f`;
#   - idle CPU with three live activities taking turns (--demo-scene three).
# Usage: bench/footprint/footprint.sh [RUNS] [SECONDS]   (defaults 7 and 20)
# Build first: cmake --build build --target norva norva-media footprint-baseline
set -euo pipefail
cd "$(dirname "$0")/../.."
runs=${1:-7}
window=${2:-20}
norva=${NORVA_BINARY:-build/norva}
floor=${BASELINE_BINARY:-build/bench/footprint/footprint-baseline}
for program in "$norva" "$floor"; do
    [ -x "$program" ] || { echo "build $program first" >&2; exit 1; }
done
command -v strace >/dev/null || { echo "strace is needed: tools/install-deps.sh --with-benchmarks" >&2; exit 1; }

display_number=$((150 + RANDOM % 100))
Xvfb ":$display_number" -screen 0 1920x1080x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
pid=""
homes=()
cleanup() {
    [ -n "$pid" ] && kill "$pid" 2>/dev/null || true
    kill "$xvfb" 2>/dev/null || true
    for home in "${homes[@]}"; do rm -rf "$home"; done
}
trap cleanup EXIT
export DISPLAY=":$display_number" NORVA_LOG_QUIET=1
sleep 1
command -v xdotool >/dev/null && xdotool mousemove 960 900
hz=$(getconf CLK_TCK)

fresh_home() {
    local home
    home=$(mktemp -d)
    homes+=("$home")
    echo "$home"
}

# A clipboard history of 10,000 text clips of 4-44 words, as Norva stores it.
history_home() {
    local home
    home=$(fresh_home)
    mkdir -p "$home/.local/share/Norva"
    python3 - "$home/.local/share/Norva/clipboard.json" <<'PY'
import json, random, sys, uuid
random.seed(7)
words = "invoice notch release zurich krakow meeting draft budget coffee review deploy branch".split()
clips = []
for n in range(10000):
    text = " ".join(random.choice(words) for _ in range(random.randint(4, 44))) + f" {n}"
    clips.append({"id": str(uuid.uuid4()), "kind": "text", "pinned": n % 500 == 0, "text": text,
                  "date": f"2026-11-{1 + n // 1000:02d}T{(n // 60) % 24:02d}:{n % 60:02d}:00.000Z"})
json.dump(clips, open(sys.argv[1], "w"))
PY
    echo "$home"
}

median_first_frame() { # home, program
    local home=$1 program=$2 times=() start end
    for _ in $(seq "$runs"); do
        start=$(date +%s%N)
        HOME="$home" XDG_RUNTIME_DIR="$home" "$program" --exit-after-first-frame >/dev/null 2>&1
        end=$(date +%s%N)
        times+=($(((end - start) / 1000000)))
    done
    printf '%s\n' "${times[@]}" | sort -n | awk '{a[NR]=$1} END {print (NR%2 ? a[(NR+1)/2] : (a[NR/2]+a[NR/2+1])/2)}'
}

# Starts a program, lets it settle 5 s, and reads memory, CPU over the window and wake-ups over
# another window: "rss private cpu_percent waits_per_second futex_per_second".
at_rest() { # home, program, arguments...
    local home=$1 program=$2
    shift 2
    HOME="$home" XDG_RUNTIME_DIR="$home" "$program" "$@" >/dev/null 2>&1 &
    pid=$!
    sleep 5
    local rss private before after trace
    rss=$(awk '/VmRSS/ {print $2}' "/proc/$pid/status")
    private=$(awk '/^Private_(Clean|Dirty):/ {s+=$2} END {print s}' "/proc/$pid/smaps_rollup")
    before=$(awk '{print $14+$15}' "/proc/$pid/stat")
    sleep "$window"
    after=$(awk '{print $14+$15}' "/proc/$pid/stat")
    trace=$(mktemp)
    timeout -s INT "$window" strace -c -f -p "$pid" -o "$trace" >/dev/null 2>&1 || true
    local waits futex
    waits=$(awk '$NF ~ /^(poll|ppoll|epoll_wait|epoll_pwait|select|pselect6|nanosleep|clock_nanosleep)$/ {s+=$4} END {print s+0}' "$trace")
    futex=$(awk '$NF == "futex" {print $4}' "$trace")
    rm -f "$trace"
    kill "$pid"
    wait "$pid" 2>/dev/null || true
    pid=""
    awk -v r="$rss" -v p="$private" -v t=$((after - before)) -v hz="$hz" -v w="$window" -v wa="$waits" -v f="${futex:-0}" \
        'BEGIN { printf "%d %d %.3f %.2f %.2f\n", r, p, 100 * t / hz / w, wa / w, f / w }'
}

floor_frame=$(median_first_frame "$(fresh_home)" "$floor")
empty_frame=$(median_first_frame "$(fresh_home)" "$norva")
history_frame=$(median_first_frame "$(history_home)" "$norva")
read -r floor_rss floor_private floor_cpu floor_waits floor_futex <<<"$(at_rest "$(fresh_home)" "$floor")"
read -r rss private cpu waits futex <<<"$(at_rest "$(fresh_home)" "$norva")"
read -r _ _ live_cpu live_waits live_futex <<<"$(at_rest "$(fresh_home)" "$norva" --demo-scene three)"

ratio() { awk -v a="$1" -v b="$2" 'BEGIN { if (b > 0) printf "%.2fx", a / b; else print "-" }'; }
printf '%-46s %12s %12s %8s\n' "measure" "bare window" "Norva" "ratio"
printf '%-46s %9s ms %9s ms %8s\n' "first frame, empty history (median of $runs)" "$floor_frame" "$empty_frame" "$(ratio "$empty_frame" "$floor_frame")"
printf '%-46s %12s %9s ms %8s\n' "first frame, 10,000-clip history" "" "$history_frame" "$(ratio "$history_frame" "$empty_frame") of empty"
printf '%-46s %8s KiB %8s KiB %8s\n' "resident memory after 5 s" "$floor_rss" "$rss" "$(ratio "$rss" "$floor_rss")"
printf '%-46s %8s KiB %8s KiB %8s\n' "private memory after 5 s" "$floor_private" "$private" "$(ratio "$private" "$floor_private")"
printf '%-46s %10s %% %10s %%\n' "idle CPU over ${window} s (share of one core)" "$floor_cpu" "$cpu"
printf '%-46s %9s/s %9s/s\n' "idle wake-ups (poll and sleeps, strace)" "$floor_waits" "$waits"
printf '%-46s %9s/s %9s/s\n' "idle futex calls (strace)" "$floor_futex" "$futex"
printf '%-46s %12s %10s %%\n' "CPU with three live activities" "" "$live_cpu"
printf '%-46s %12s %9s/s\n' "wake-ups with three live activities" "" "$live_waits"
