#!/usr/bin/env bash
# Installs what Norva needs to build, run and test on Debian 12 or Ubuntu (apt).
# Feature areas add their packages to the lists below.
set -euo pipefail

build_packages=(
    build-essential cmake pkg-config ccache
    qt6-base-dev qt6-declarative-dev libical-dev libgl-dev
    libxcb1-dev libxcb-shape0-dev
)
run_packages=(
    qml6-module-qtquick qml6-module-qtquick-controls qml6-module-qtquick-window
    qml6-module-qtquick-layouts qml6-module-qtquick-templates qml6-module-qtqml-workerscript
    qml6-module-qtquick-shapes libglx-mesa0 libgl1-mesa-dri fonts-dejavu-core
    tzdata procps qt6-image-formats-plugins python3 pulseaudio-utils
    sound-theme-freedesktop xdg-utils
)
test_packages=(
    xvfb xauth xdotool x11-utils imagemagick xclip tmux dbus dbus-x11 openbox
    unzip python3-yaml clang-format desktop-file-utils
    qml6-module-qtqml qml6-module-qtqml-models
    weston xwayland qt6-wayland
    mpv mpv-mpris pulseaudio
    todoman khal vdirsyncer radicale
)

# Only the benchmarks use these (bench/footprint counts idle wake-ups with strace).
bench_packages=(
    strace
)

wanted=("${build_packages[@]}" "${run_packages[@]}")
for option in "$@"; do
    case "$option" in
    --with-tests) wanted+=("${test_packages[@]}") ;;
    --with-benchmarks) wanted+=("${bench_packages[@]}" "${test_packages[@]}") ;;
    esac
done

missing=()
for package in "${wanted[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
echo "Installing: ${missing[*]}"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
