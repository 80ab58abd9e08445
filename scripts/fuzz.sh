#!/usr/bin/env bash
# Builds the libFuzzer targets with the "fuzz" preset (clang, ASan + UBSan) and runs each
# for SECONDS_PER_TARGET seconds (default 60), as many at once as there are processors,
# on its seeds (fuzz/corpus/<target>, and zone files copied at configure time) and the
# corpus kept in the build folder, with its dictionary. Prints one line per target and
# fails when any target crashed (a sanitizer report, a failed check, a leak or a hang).
#
#   scripts/fuzz.sh [SECONDS_PER_TARGET]
#   ORV_FUZZ_BUILD_DIR=build/mine scripts/fuzz.sh 10    # another build folder
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
build=${ORV_FUZZ_BUILD_DIR:-build/fuzz}
jobs=$(nproc)
targets=(fuzz_text fuzz_datetime fuzz_containers fuzz_posix_rule fuzz_tzif fuzz_sort)

start=$(date +%s)
cmake --preset fuzz -B "$build" >/dev/null
cmake --build "$build" -j"$jobs" --target "${targets[@]}" >/dev/null
echo "fuzz targets built in $(($(date +%s) - start)) s"

out=$build/fuzz
mkdir -p "$out/logs" "$out/artifacts"
# UBSan reports abort the run, as ASan's do (the preset does not make them fatal).
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-halt_on_error=1:print_stacktrace=1}

run() {
    local target=$1
    local args=(-max_total_time="$seconds" -timeout=10 -print_final_stats=1
                -artifact_prefix="$out/artifacts/$target-")
    case $target in
    fuzz_text | fuzz_sort) args+=(-dict=fuzz/text.dict) ;;
    fuzz_tzif | fuzz_posix_rule) args+=(-dict=fuzz/tzif.dict) ;;
    # Long operation sequences touch many features; the entropic schedule's bookkeeping
    # then takes most of the time (five times fewer runs).
    fuzz_datetime) args+=(-entropic=0) ;;
    esac
    mkdir -p "$out/corpus/$target"
    local dirs=("$out/corpus/$target")
    for d in "fuzz/corpus/$target" "$out/seeds/$target"; do [ -d "$d" ] && dirs+=("$d"); done
    "$out/$target" "${args[@]}" "${dirs[@]}" >"$out/logs/$target.log" 2>&1
}

for target in "${targets[@]}"; do
    while [ "$(jobs -rp | wc -l)" -ge "$jobs" ]; do wait -n || true; done
    run "$target" &
done
wait || true

failed=0
for target in "${targets[@]}"; do
    log=$out/logs/$target.log
    runs=$(sed -n 's/^stat::number_of_executed_units: //p' "$log" | tail -n 1)
    if grep -q '^Done [0-9]* runs in' "$log"; then
        echo "$target: ${runs:-?} runs in $(sed -n 's/^Done [0-9]* runs in \([0-9]*\) second.*/\1/p' "$log") s, no crash"
    else
        failed=1
        echo "$target: CRASH after ${runs:-?} runs; log $log:"
        grep -E -A12 'ERROR:|check failed|runtime error|Test unit written' "$log" | head -n 40 | sed 's/^/    /'
    fi
done
exit $failed
