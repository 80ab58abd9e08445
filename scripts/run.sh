#!/usr/bin/env bash
# Sets up, builds and runs the command-line tool. Without arguments it gives a short tour
# of the library; any arguments are passed to the tool (try: scripts/run.sh --help).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake --preset default >/dev/null
cmake --build --preset default -j"$(nproc)" --target orvcal >/dev/null
exec build/default/tools/orvcal "$@"
