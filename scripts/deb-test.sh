#!/usr/bin/env bash
# Builds the DEB packages from a shared release build in build/deb (cpack -G DEB),
# installs them with apt-get, builds and runs the C consumer of tests/consume against
# them through pkg-config and through find_package, and removes them again so that the
# machine stays as it was. Exit status 0 only when every step passed.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
build=build/deb
work=$build/consume
expected="2025-01-01 1735689600000000000"
packages=(liborvcalendar-dev liborvcalendar1)

SUDO=""
[ "$(id -u)" -ne 0 ] && SUDO=sudo
apt_get() { DEBIAN_FRONTEND=noninteractive $SUDO apt-get "$@"; }
step() { printf '\n=== %s ===\n' "$*"; }

for p in "${packages[@]}"; do
    if dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
        echo "deb-test: $p is installed already; remove it first (apt-get remove ${packages[*]})" >&2
        exit 1
    fi
done
# cpack reads the shared library's dependencies with dpkg-shlibdeps (dpkg-dev) and file.
missing=()
for p in dpkg-dev file cmake gcc g++ pkg-config; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
    apt_get update -qq
    apt_get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

step "shared release build and packages ($build)"
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=ON -DCMAKE_INSTALL_PREFIX=/usr \
    -DORV_BUILD_TESTS=OFF -DORV_BUILD_TOOLS=OFF -DORV_BUILD_EXAMPLES=OFF >/dev/null
cmake --build "$build" --target orvcalendar -j"$(nproc)"
rm -f "$build"/*.deb
(cd "$build" && cpack -G DEB)
runtime=$(ls "$build"/liborvcalendar1_*.deb)
dev=$(ls "$build"/liborvcalendar-dev_*.deb)
for deb in "$runtime" "$dev"; do
    echo "--- $deb"
    dpkg-deb --field "$deb" Package Version Depends
    dpkg-deb --contents "$deb" | awk '{print $6, $7, $8}'
done

step "install"
trap 'step "remove"; apt_get remove --purge -y -qq "${packages[@]}" >/dev/null && echo "removed ${packages[*]}"' EXIT
apt_get install -y -qq "$root/$runtime" "$root/$dev" >/dev/null
dpkg-query -W "${packages[@]}"

step "C consumer through pkg-config"
rm -rf "$work" && mkdir -p "$work"
echo "pkg-config: orvcalendar $(pkg-config --modversion orvcalendar): $(pkg-config --cflags --libs orvcalendar)"
# shellcheck disable=SC2046
cc -std=c11 -Wall -Wextra -Wpedantic -Werror -o "$work/pkgconfig-consumer" tests/consume/consumer.c \
    $(pkg-config --cflags --libs orvcalendar)
out=$("$work/pkgconfig-consumer")
[ "$out" = "$expected" ] || { echo "pkg-config consumer printed '$out'" >&2; exit 1; }
echo "ok: $out"

step "C consumer through find_package(OrvCalendar 1.0)"
cmake -S tests/consume -B "$work/cmake" -DCONSUMER_LANGUAGE=C >/dev/null
cmake --build "$work/cmake" >/dev/null
out=$("$work/cmake/consumer")
[ "$out" = "$expected" ] || { echo "find_package consumer printed '$out'" >&2; exit 1; }
echo "ok: $out"
