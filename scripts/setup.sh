#!/usr/bin/env bash
# Installs what building, testing and benchmarking need on a fresh Debian machine.
# Does nothing when everything is present already.
set -euo pipefail

packages=(
    cmake g++ clang make pkg-config           # toolchains
    libgtest-dev libgmock-dev libbenchmark-dev  # tests and benchmarks
    libclang-rt-14-dev                        # sanitizer and fuzzer runtimes for clang
    llvm-14                                   # llvm-cov and llvm-profdata for the coverage step
    tzdata                                    # the system time-zone database
    libcctz-dev libabsl-dev libicu-dev        # peers in the zone benchmark
)

missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "setup: installing ${missing[*]}"
    SUDO=""
    [ "$(id -u)" -ne 0 ] && SUDO=sudo
    $SUDO apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi
