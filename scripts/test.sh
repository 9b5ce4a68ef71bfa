#!/usr/bin/env bash
# Builds everything with warnings as errors and runs the whole test suite:
# the unit tests as shipped and again under AddressSanitizer and
# UndefinedBehaviorSanitizer, the end-to-end tests over the shared captures
# (skipped when ../shared is absent) and the install/downstream check.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
gen=(); command -v ninja >/dev/null && gen=(-G Ninja)
build="$root/build/test"
cmake -S "$root" -B "$build" "${gen[@]}" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSARN_WERROR=ON \
      -DSARN_BUILD_BENCH=ON
cmake --build "$build" --parallel "$(nproc)"
cd "$build"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
status=0
ctest --output-on-failure --parallel "$(nproc)" --timeout 900 2>&1 | tee "$log" || status=$?
# ctest lists skipped tests after its summary; end with the summary itself.
echo
grep -E '^[0-9]+% tests passed' "$log" | tail -n 1
exit "$status"
