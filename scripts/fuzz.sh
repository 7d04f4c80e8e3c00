#!/usr/bin/env bash
# scripts/fuzz.sh [SECONDS]: builds every libFuzzer target with clang in build-fuzz/ and runs each
# for SECONDS (FUZZ_SECONDS, 20 by default) from its seed corpus. A crash, a leak or a sanitizer
# report fails the run and leaves the input that caused it in build-fuzz/findings/.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
seconds=${1:-${FUZZ_SECONDS:-20}}
build=${FUZZ_BUILD_DIR:-$root/build-fuzz}
jobs=${JOBS:-$(nproc)}
test -f "$build/build.ninja" ||
    CC=clang CXX=clang++ cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DNAVRO_FUZZ=ON ${LAUNCHER:-}
cmake --build "$build" -j "$jobs" --target navro_fuzzers
mkdir -p "$build/findings"
status=0
for fuzzer in "$build"/tests/fuzz/fuzz_*; do
    [ -f "$fuzzer" ] && [ -x "$fuzzer" ] || continue
    name=${fuzzer##*/fuzz_}
    corpus="$build/corpus/$name"
    mkdir -p "$corpus"
    seeds=()
    [ -d "$root/tests/fuzz/corpus/$name" ] && seeds=("$root/tests/fuzz/corpus/$name")
    echo "== fuzz $name for ${seconds}s"
    if ! ASAN_OPTIONS=detect_leaks=1 "$fuzzer" -max_total_time="$seconds" -timeout=10 \
        -rss_limit_mb=2048 -print_final_stats=0 -artifact_prefix="$build/findings/$name-" \
        "$corpus" "${seeds[@]}" >"$build/findings/$name.log" 2>&1; then
        echo "fuzz $name FAILED; its log:"
        tail -n 60 "$build/findings/$name.log"
        status=1
    else
        grep -E '^(#[0-9]+ *DONE|Done [0-9]+ runs)' "$build/findings/$name.log" | tail -n 1 || true
    fi
done
exit $status
