#!/usr/bin/env bash
# Builds the libFuzzer target for the zone-file reader and the rule parser (clang, ASan +
# UBSan) and runs it for the given number of seconds (default 60) on a seed corpus of
# real zone files.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j"$(nproc)" --target fuzz_tzif
mkdir -p build/fuzz/fuzz/corpus
./build/fuzz/fuzz/fuzz_tzif -max_total_time="$seconds" -print_final_stats=1 -dict=fuzz/tzif.dict \
    build/fuzz/fuzz/corpus build/fuzz/fuzz/seeds 2>&1 | tail -n 15
