#!/usr/bin/env bash
# End to end with a real CalDAV server: Radicale on 127.0.0.1 and vdirsyncer syncing it to the
# calendar folder Norva reads. A to-do filed by Norva must reach the server, and one put on the
# server must reach Norva. Everything lives in a throw-away folder. Usage:
#   tools/todos-sync-e2e.sh [build dir]        (needs: radicale vdirsyncer curl)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
cli="$build/bench/todos/norva-todos"
[ -x "$cli" ] || { echo "build norva-todos first (cmake --build $build --target norva-todos)" >&2; exit 1; }

work=$(mktemp -d)
radicale_pid=""
cleanup() { [ -n "$radicale_pid" ] && kill "$radicale_pid" 2>/dev/null; rm -rf "$work"; }
trap cleanup EXIT

port=$(python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')
export HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" XDG_DATA_HOME="$work/home/.local/share"
mkdir -p "$HOME" "$work/radicale"
root="$XDG_DATA_HOME/calendars"

cat > "$work/radicale.conf" <<CONF
[server]
hosts = 127.0.0.1:$port
[auth]
type = none
[storage]
filesystem_folder = $work/radicale
[logging]
level = warning
CONF
radicale --config "$work/radicale.conf" > "$work/radicale.log" 2>&1 &
radicale_pid=$!
for _ in $(seq 50); do curl -s -o /dev/null "http://127.0.0.1:$port/" && break; sleep 0.1; done

# A to-do list on the server, as a phone or a web calendar would make it.
base="http://127.0.0.1:$port/norva/todos/"
curl -sf -X MKCOL "http://127.0.0.1:$port/norva/" > /dev/null || true
curl -sf -X MKCALENDAR "$base" > /dev/null

mkdir -p "$XDG_CONFIG_HOME/vdirsyncer"
cat > "$XDG_CONFIG_HOME/vdirsyncer/config" <<CONF
[general]
status_path = "$work/vdirsyncer-status/"

[pair norva_todos]
a = "norva_local"
b = "norva_server"
collections = ["from a", "from b"]

[storage norva_local]
type = "filesystem"
path = "$root/"
fileext = ".ics"

[storage norva_server]
type = "caldav"
url = "http://127.0.0.1:$port/norva/"
username = "norva"
password = "norva"
CONF
(yes || true) | vdirsyncer discover norva_todos > "$work/discover.log" 2>&1
vdirsyncer sync > "$work/sync.log" 2>&1

# 1. Put on the server: appears in Norva after a sync.
curl -sf -X PUT -H "Content-Type: text/calendar" --data-binary @- "${base}from-server.ics" <<ICS > /dev/null
BEGIN:VCALENDAR
VERSION:2.0
PRODID:-//phone//EN
BEGIN:VTODO
UID:from-server
SUMMARY:Put on the server
STATUS:NEEDS-ACTION
END:VTODO
END:VCALENDAR
ICS
vdirsyncer sync >> "$work/sync.log" 2>&1
"$cli" "$root" list | grep -q $'todos\topen\tPut on the server' || { echo "FAIL: the server's to-do did not reach Norva" >&2; exit 1; }
echo "ok: a to-do put on the server reached Norva"

# 2. Filed by Norva: reaches the server after a sync.
"$cli" "$root" add todos "Filed by Norva"
vdirsyncer sync >> "$work/sync.log" 2>&1
grep -rqs "SUMMARY:Filed by Norva" "$work/radicale" || { echo "FAIL: Norva's to-do did not reach the server" >&2; exit 1; }
echo "ok: a to-do filed by Norva reached the server"

# 3. Ticked in Norva: the server has it done.
"$cli" "$root" done "Put on the server"
vdirsyncer sync >> "$work/sync.log" 2>&1
curl -sf "${base}from-server.ics" | grep -q "STATUS:COMPLETED" || { echo "FAIL: the tick did not reach the server" >&2; exit 1; }
echo "ok: a to-do ticked in Norva is done on the server"
