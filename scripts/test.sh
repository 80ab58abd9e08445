#!/usr/bin/env bash
# Sets up, then builds and runs every test: the release build with g++, the same tests
# under AddressSanitizer + UndefinedBehaviorSanitizer, a short fuzz run, and a clang build
# (warnings are errors there too); the install-and-consume test is part of the ctest runs.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
jobs=$(nproc)

step() { printf '\n=== %s ===\n' "$*"; }

step "release build (g++)"
cmake --preset default >/dev/null
cmake --build --preset default -j"$jobs"
ctest --preset default

if [ -x scripts/fuzz.sh ]; then
    step "fuzzing (short run)"
    scripts/fuzz.sh 60
fi

step "sanitizer build (ASan + UBSan)"
cmake --preset sanitize >/dev/null
cmake --build --preset sanitize -j"$jobs"
ctest --preset sanitize

step "clang build"
cmake --preset clang >/dev/null
cmake --build --preset clang -j"$jobs"
ctest --preset clang

