#!/usr/bin/env bash
# The main job: build sarn-dump and print, as JSON Lines, every table of the
# bundled sample multiplex (or of the files given as arguments).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
gen=(); command -v ninja >/dev/null && gen=(-G Ninja)
build="$root/build/release"
cmake -S "$root" -B "$build" "${gen[@]}" -DCMAKE_BUILD_TYPE=Release \
      -DSARN_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" --target sarn-dump >/dev/null
if [ $# -eq 0 ]; then set -- "$root/data/sample-sections.txt"; fi
exec "$build/tools/sarn-dump" "$@"
