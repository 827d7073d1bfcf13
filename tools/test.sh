#!/usr/bin/env bash
# Installs what is needed, builds Norva and runs every test. CI runs exactly this.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install-deps.sh --with-tests
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j"$(nproc)"
# The tests that need a display get a private X server of their own.
xvfb-run -a -s "-screen 0 1920x1080x24" ctest --test-dir build --output-on-failure -j"$(nproc)"
