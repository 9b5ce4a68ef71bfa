#!/usr/bin/env bash
# Line and branch coverage of src/ by the unit tests and the replay of the
# fuzz corpus and regressions (gcov through Debian's lcov, which this script
# installs), in a build of its own (build/coverage). Prints lcov's summary;
# the HTML report goes to build/coverage/html when genhtml is there.
#   scripts/coverage.sh
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh" test lcov
command -v lcov >/dev/null || { echo "coverage: lcov is not installed"; exit 1; }
gen=(); command -v ninja >/dev/null && gen=(-G Ninja)
build="$root/build/coverage"
cmake -S "$root" -B "$build" "${gen[@]}" -DCMAKE_BUILD_TYPE=Debug -DSARN_COVERAGE=ON \
      -DSARN_BUILD_TESTS=ON -DSARN_SANITIZED_TESTS=OFF -DSARN_ARMHF_SUITE=OFF \
      -DSARN_FUZZ_SUITE=OFF -DSARN_BUILD_BENCH=OFF >/dev/null
cmake --build "$build" --parallel "$(nproc)" >/dev/null
rc=(--rc lcov_branch_coverage=1 --rc geninfo_no_exception_branch=1)
lcov --quiet "${rc[@]}" --zerocounters --directory "$build"
# The unit suite (sarn_tests: library and tool) and the
# fuzz replays (the threads test would race on the counters; the soak and
# the checks of other programs add nothing to src/).
(cd "$build" && ctest --parallel "$(nproc)" -E '^(soak|downstream|tools|bench)\.|^Threads\.' >/dev/null) || {
    echo "coverage: tests failed"; exit 1; }
lcov --quiet "${rc[@]}" --capture --directory "$build" --output-file "$build/all.info" 2>/dev/null
lcov --quiet "${rc[@]}" --extract "$build/all.info" "$root/src/*" --output-file "$build/src.info"
lcov "${rc[@]}" --summary "$build/src.info"
if command -v genhtml >/dev/null; then
    genhtml --quiet "${rc[@]}" --output-directory "$build/html" "$build/src.info" >/dev/null
    echo "coverage: report in $build/html/index.html"
fi
