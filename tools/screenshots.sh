#!/usr/bin/env bash
# Starts Norva under a private Xvfb with a throw-away HOME and saves screenshots of the notch
# closed, peeking and open (and of each page given with --pages). Usage:
#   tools/screenshots.sh [--out DIR] [--pages "music clipboard ..."] [--seed DIR]
#                        [--settings "general agents ..." | --settings all] [--intro "0 1 2 3 4" | --intro all]
#                        [--music] [-- norva arguments]
# --seed copies DIR's contents into the throw-away HOME first (preferences, agent files...).
# --settings shoots the settings window on each group; --intro each step of the first-run introduction.
# --music plays a sample song (tools/music-sample.sh) on a private session bus that Norva sees, and
# also shoots the closed notch 5 s later, once the new song's short peek has gone.
set -euo pipefail
cd "$(dirname "$0")/.."
out=build/screenshots
pages=""
seed=""
settings_groups=""
intro_steps=""
music=""
while [ $# -gt 0 ]; do
    case "$1" in
        --out) out=$2; shift 2 ;;
        --pages) pages=$2; shift 2 ;;
        --seed) seed=$2; shift 2 ;;
        --settings) settings_groups=$2; shift 2 ;;
        --intro) intro_steps=$2; shift 2 ;;
        --music) music=1; shift ;;
        --) shift; break ;;
        *) break ;;
    esac
done
mkdir -p "$out"
[ "$settings_groups" != all ] || settings_groups="general notch activities agents clipboard shelf music todos notes timer weather calendar"
[ "$intro_steps" != all ] || intro_steps="0 1 2 3 4"
norva=${NORVA_BINARY:-build/norva}
[ -x "$norva" ] || { echo "build Norva first (cmake --build build --target norva)" >&2; exit 1; }

home=$(mktemp -d)
[ -z "$seed" ] || { cp -a "$seed/." "$home/"; chmod 700 "$home"; }
# Pages are shot as a returning person sees them: the introduction and What's new have their own shots.
version=$("$norva" --version | awk '{print $NF}')
if [ ! -e "$home/.config/Norva/preferences.toml" ]; then
    mkdir -p "$home/.config/Norva"
    printf 'hasLaunchedBefore = true\n"whatsNew.lastSeen.v1" = "%s"\n' "$version" >"$home/.config/Norva/preferences.toml"
fi
display_number=$((90 + RANDOM % 100))
Xvfb ":$display_number" -screen 0 1600x900x24 -wr -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
norva_pid=
SAMPLE_PID=
trap 'kill $norva_pid $SAMPLE_PID $xvfb 2>/dev/null; rm -rf "$home"' EXIT
export DISPLAY=":$display_number"
if [ -n "$music" ]; then
    coproc SAMPLE { exec tools/music-sample.sh; }
    read -r address <&"${SAMPLE[0]}"
    export DBUS_SESSION_BUS_ADDRESS=$address
fi
sleep 1
start_norva() {
    HOME="$home" XDG_RUNTIME_DIR="$home" "$norva" "$@" 2>>"$out/norva.log" &
    norva_pid=$!
    sleep "${NORVA_SETTLE:-2}"
}
stop_norva() {
    kill "$norva_pid" 2>/dev/null || true
    wait "$norva_pid" 2>/dev/null || true
}
shot() { # name: the top of the screen, where the notch lives
    import -window root -crop 900x600+350+0 +repage "$out/$1.png"
    echo "$out/$1.png"
}

start_norva "$@"
shot closed
if [ -n "$music" ]; then
    sleep 5
    shot closed-later
fi
xdotool mousemove 800 14
sleep 0.4
shot peek
xdotool click 1
sleep 0.6
shot open
stop_norva
xdotool mousemove 800 800
for page in $pages; do
    start_norva --open-page "$page" "$@"
    shot "page-$page"
    stop_norva
done
for group in $settings_groups; do
    mkdir -p "$home/.config/Norva"
    printf '"settings.window.section.v1" = "%s"\nhasLaunchedBefore = true\n' "$group" >"$home/.config/Norva/preferences.toml"
    start_norva --settings "$@"
    window=$(xdotool search --name "Norva Settings" | head -1)
    if [ -n "$window" ]; then
        import -window "$window" "$out/settings-$group.png"
        echo "$out/settings-$group.png"
    else
        echo "no settings window for $group (see $out/norva.log)" >&2
    fi
    stop_norva
done
for step in $intro_steps; do
    start_norva --intro-step "$step" "$@"
    shot "intro-$step"
    stop_norva
done
