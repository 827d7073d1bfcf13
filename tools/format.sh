#!/usr/bin/env bash
# Lays out Norva's C++ by .clang-format. Usage:
#   tools/format.sh            rewrites every tracked .cpp and .h in place
#   tools/format.sh --check    changes nothing; lists the files that differ and fails if any does (CI)
set -euo pipefail
cd "$(dirname "$0")/.."
formatter=${CLANG_FORMAT:-}
if [ -z "$formatter" ]; then
    for candidate in clang-format clang-format-14 clang-format-15 clang-format-16; do
        if command -v "$candidate" >/dev/null 2>&1; then formatter=$candidate; break; fi
    done
fi
[ -n "$formatter" ] || { echo "clang-format is not installed (apt-get install clang-format)" >&2; exit 2; }

mode=apply
case "${1:-}" in
    --check) mode=check ;;
    "") ;;
    *) echo "usage: tools/format.sh [--check]" >&2; exit 2 ;;
esac

mapfile -t files < <(git ls-files -- '*.cpp' '*.h' '*.mm')
if [ "$mode" = apply ]; then
    "$formatter" -i --style=file "${files[@]}"
    exit 0
fi
differing=0
for file in "${files[@]}"; do
    if ! "$formatter" --style=file "$file" | cmp -s - "$file"; then
        echo "$file"
        differing=$((differing + 1))
    fi
done
if [ "$differing" -gt 0 ]; then
    echo "$differing file(s) differ from .clang-format; run tools/format.sh" >&2
    exit 1
fi
