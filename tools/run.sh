#!/usr/bin/env bash
# Installs what is needed, builds Norva and starts it.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install-deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j"$(nproc)" --target norva
exec build/norva "$@"
