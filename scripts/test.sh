#!/usr/bin/env bash
# The development build (SARN_DEVELOPER): builds everything with warnings as
# errors and runs the whole test suite: the unit tests as shipped, again under
# AddressSanitizer and UndefinedBehaviorSanitizer, under Valgrind and on armhf
# under qemu, the end-to-end tests over the shared captures (skipped when
# ../shared is absent), the fuzz harnesses, the benchmarks once, the
# install/downstream checks and a consumer's Release build.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh" test
gen=(); command -v ninja >/dev/null && gen=(-G Ninja)
build="$root/build/test"
cmake -S "$root" -B "$build" "${gen[@]}" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSARN_DEVELOPER=ON \
      -DSARN_WERROR=ON -DSARN_BUILD_TESTS=ON -DSARN_BUILD_BENCH=ON
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
