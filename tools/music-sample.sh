#!/usr/bin/env bash
# A song playing for screenshots and benchmarks: a private session bus with mpv and its MPRIS
# plugin playing a tagged, looping tone ("Evening Tide" by "The Norva Quartet") beside a cover, as
# a music player on the desktop would. Prints the bus address on its first line, then runs until it
# is ended (SIGTERM), taking the bus and the player with it. Usage:
#   tools/music-sample.sh [SECONDS_OF_TONE]      (default 240)
# In a script:  coproc SAMPLE { exec tools/music-sample.sh; }; read -r address <&"${SAMPLE[0]}"
#               DBUS_SESSION_BUS_ADDRESS=$address norva ...;  kill "$SAMPLE_PID"
set -euo pipefail
seconds=${1:-240}
plugin=/usr/lib/mpv-mpris/mpris.so
for needed in mpv dbus-daemon python3 convert; do
    command -v "$needed" >/dev/null || { echo "music-sample: $needed is missing (tools/install-deps.sh)" >&2; exit 1; }
done
[ -e "$plugin" ] || { echo "music-sample: mpv-mpris is missing (tools/install-deps.sh)" >&2; exit 1; }

folder=$(mktemp -d)
bus=""
player=""
cleanup() {
    [ -z "$player" ] || kill "$player" 2>/dev/null || true
    [ -z "$bus" ] || kill "$bus" 2>/dev/null || true
    rm -rf "$folder"
}
trap cleanup EXIT
trap 'exit 0' TERM INT

# A mono WAV whose LIST/INFO chunk names the title and artist, as taggers write it.
python3 - "$folder/song.wav" "$seconds" <<'PY'
import math, struct, sys
path, seconds = sys.argv[1], int(sys.argv[2])
rate = 8000
def chunk(tag, body):
    if len(body) % 2:
        body += b"\0"
    return tag + struct.pack("<I", len(body)) + body
samples = b"".join(struct.pack("<h", int(5000 * math.sin(2 * math.pi * 330 * i / rate))) for i in range(rate * seconds))
info = b"INFO" + chunk(b"INAM", b"Evening Tide\0") + chunk(b"IART", b"The Norva Quartet\0")
fmt = struct.pack("<HHIIHH", 1, 1, rate, rate * 2, 2, 16)
with open(path, "wb") as out:
    out.write(chunk(b"RIFF", b"WAVE" + chunk(b"fmt ", fmt) + chunk(b"LIST", info) + chunk(b"data", samples)))
PY
# A cover beside the song, where mpv-mpris looks for one.
convert -size 600x600 gradient:'#ff8a3d-#6a3dff' -fill '#ffffff' -draw 'circle 300,300 300,200' "$folder/cover.png"

dbus-daemon --session --nofork --print-address=1 >"$folder/address" 2>/dev/null &
bus=$!
for _ in $(seq 50); do [ -s "$folder/address" ] && break; sleep 0.1; done
address=$(head -n1 "$folder/address")
[ -n "$address" ] || { echo "music-sample: the session bus did not start" >&2; exit 1; }
DBUS_SESSION_BUS_ADDRESS=$address mpv --no-config --no-video --ao=null --script="$plugin" --loop-file=inf \
    --really-quiet "$folder/song.wav" &
player=$!
echo "$address"
wait "$player"
