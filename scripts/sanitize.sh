#!/usr/bin/env bash
# scripts/sanitize.sh [BUILD_DIR]: builds the unit tests with AddressSanitizer and
# UndefinedBehaviorSanitizer in a build folder of their own and runs them, then the leak run (a
# short compressed day of the sanitized Navro on a virtual desktop).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build-sanitize}
jobs=${JOBS:-$(nproc)}
test -f "$build/build.ninja" ||
    cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DNAVRO_SANITIZE=ON \
        ${LAUNCHER:-}
cmake --build "$build" -j "$jobs"
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=0:strict_string_checks=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$root/tests/sanitizer-suppressions.txt:print_suppressions=0}
cd "$build" && ctest --output-on-failure -j "$jobs" -L unit
# Then Navro itself through a short compressed day, LeakSanitizer looking on at its exit.
ctest --output-on-failure -L leak
