#!/usr/bin/env bash
# Builds the library and its tests with clang's source-based coverage, runs every test
# (the install tests aside) and prints line and branch coverage of src/, file by file.
# Fails when the totals fall below the floors: ORV_COVERAGE_MIN_LINES and
# ORV_COVERAGE_MIN_BRANCHES (percent; defaults below).
set -euo pipefail
cd "$(dirname "$0")/.."
min_lines=${ORV_COVERAGE_MIN_LINES:-97.5}
min_branches=${ORV_COVERAGE_MIN_BRANCHES:-89}
jobs=$(nproc)
llvm_bin=$(dirname "$(readlink -f "$(command -v clang)")")
profdata=${llvm_bin}/llvm-profdata
cov=${llvm_bin}/llvm-cov

cmake --preset coverage >/dev/null
cmake --build --preset coverage -j"$jobs"
rm -rf build/coverage/profiles
ctest --preset coverage
"$profdata" merge -sparse build/coverage/profiles/*.profraw -o build/coverage/merged.profdata

# Every test executable that wrote a profile is an object of the report.
objects=()
while IFS= read -r exe; do
    objects+=(-object "$exe")
done < <(find build/coverage/tests build/coverage/examples build/coverage/tools -maxdepth 1 -type f -perm -u+x 2>/dev/null | sort)
report=$("$cov" report -instr-profile build/coverage/merged.profdata "${objects[@]}" \
    -ignore-filename-regex='generated/' "$PWD/src")
echo "$report" | awk 'NR == 1 || /^src|^-|^TOTAL/ { print }' | sed "s|$PWD/||"
# TOTAL columns: regions missed cover functions missed executed lines missed cover branches missed cover
read -r line_cover branch_cover < <(echo "$report" | awk '/^TOTAL/ { gsub("%", ""); print $10, $13 }')
echo "src/: lines ${line_cover}% (floor ${min_lines}%), branches ${branch_cover}% (floor ${min_branches}%)"
awk -v l="$line_cover" -v b="$branch_cover" -v ml="$min_lines" -v mb="$min_branches" \
    'BEGIN { exit !(l + 0 >= ml + 0 && b + 0 >= mb + 0) }' || { echo "coverage: below the floor" >&2; exit 1; }
