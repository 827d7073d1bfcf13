#!/usr/bin/env bash
# Builds the event reader's fuzzer with clang (libFuzzer, AddressSanitizer, UndefinedBehaviorSanitizer)
# and runs it from the seeds. Usage: fuzz/event-reader/run.sh [seconds, default 120] [libFuzzer flags...]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
out=$root/build/fuzz-event-reader
mkdir -p "$out/corpus"
seconds=${1:-120}
shift || true
src=$root/src/calendar
clang++ -std=c++20 -g -O1 -fPIC -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined \
    -I"$root/src" $(pkg-config --cflags Qt6Core libical) \
    "$here/EventReaderFuzz.cpp" "$src/EventReader.cpp" "$src/MeetingLinks.cpp" "$src/LinkFinder.cpp" \
    $(pkg-config --libs Qt6Core libical) -o "$out/event-reader-fuzz"
cp -n "$here"/seeds/*.ics "$out/corpus/" 2>/dev/null || true
UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 ASAN_OPTIONS=detect_leaks=1 \
    "$out/event-reader-fuzz" -max_total_time="$seconds" -max_len=16384 -timeout=10 "$@" "$out/corpus"
