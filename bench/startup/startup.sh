#!/usr/bin/env bash
# Start-up time to the first drawn frame (median of N runs) and idle memory after 5 s, under a
# private Xvfb with a fresh HOME. Usage: bench/startup/startup.sh [runs]   (build first)
set -euo pipefail
cd "$(dirname "$0")/../.."
runs=${1:-15}
norva=${NORVA_BINARY:-build/norva}
display_number=$((150 + RANDOM % 50))
Xvfb ":$display_number" -screen 0 1920x1080x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
home=$(mktemp -d)
trap 'kill $xvfb 2>/dev/null; rm -rf "$home"' EXIT
export DISPLAY=":$display_number" NORVA_LOG_QUIET=1
sleep 1

times=()
for _ in $(seq "$runs"); do
    start=$(date +%s%N)
    HOME="$home" "$norva" --exit-after-first-frame >/dev/null 2>&1
    end=$(date +%s%N)
    times+=($(( (end - start) / 1000000 )))
done
sorted=$(printf '%s\n' "${times[@]}" | sort -n)
median=$(echo "$sorted" | awk '{a[NR]=$1} END {print (NR%2 ? a[(NR+1)/2] : (a[NR/2]+a[NR/2+1])/2)}')
worst=$(echo "$sorted" | tail -1)

HOME="$home" "$norva" >/dev/null 2>&1 &
pid=$!
sleep 5
rss=$(awk '/VmRSS/ {print $2}' "/proc/$pid/status")
pss=$(awk '/^Pss:/ {s+=$2} END {print s}' "/proc/$pid/smaps_rollup" 2>/dev/null || echo "?")
ticks0=$(awk '{print $14+$15}' "/proc/$pid/stat")
sleep 10
ticks1=$(awk '{print $14+$15}' "/proc/$pid/stat")
kill "$pid"; wait "$pid" 2>/dev/null || true

printf '%-40s %s\n' "measure" "value"
printf '%-40s %s ms\n' "process start to first frame (median)" "$median"
printf '%-40s %s ms\n' "process start to first frame (worst)" "$worst"
printf '%-40s %s KiB\n' "idle resident memory (RSS)" "$rss"
printf '%-40s %s KiB\n' "idle proportional memory (PSS)" "$pss"
printf '%-40s %s ticks (1/100 s)\n' "CPU used over 10 s idle" "$((ticks1 - ticks0))"
