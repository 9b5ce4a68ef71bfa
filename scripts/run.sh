#!/usr/bin/env bash
# The main job: build sarn-dump and print, as JSON Lines, the tables of the
# bundled sample multiplex (or of the input given among the arguments, which
# are sarn-dump's own: ./scripts/run.sh --all, ./scripts/run.sh capture.ts).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh" run
gen=(); command -v ninja >/dev/null && gen=(-G Ninja)
build="$root/build/release"
cmake -S "$root" -B "$build" "${gen[@]}" -DCMAKE_BUILD_TYPE=Release \
      -DSARN_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" --target sarn-dump >/dev/null
has_input=0 skip=0
for arg in "$@"; do
  if [ $skip = 1 ]; then skip=0; continue; fi
  case "$arg" in
    --pid|--table|--charset|--utc-offset) skip=1 ;;
    -|-h|--help) has_input=1 ;;
    -*) ;;
    *) has_input=1 ;;
  esac
done
[ $has_input = 1 ] || set -- "$@" "$root/data/sample.ts"
exec "$build/tools/sarn-dump" "$@"
