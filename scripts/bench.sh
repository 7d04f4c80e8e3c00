#!/usr/bin/env bash
# Runs every benchmark program that the build produced.
set -euo pipefail
build=${1:-build}
for program in "$build"/bench/*_bench; do
    [ -x "$program" ] || continue
    echo "== $(basename "$program")"
    "$program"
done
for script in bench/*.sh; do
    [ -x "$script" ] || continue
    echo "== $(basename "$script")"
    "$script" "$build"
done
