#!/usr/bin/env bash
# Writes sarn-dump's HTML report of the bundled sample and of every input
# given, and opens them in Debian's chromium through playwright-core (npm,
# the version locked in package-lock.json, installed into WORK):
#   run.sh SARN_DUMP WORK SAMPLE [INPUT...]
# Screenshots go to WORK/screenshots. Exits 77 (skipped) when no browser,
# node or playwright-core can be had.
set -u
dump=$1 work=$2 sample=$3
shift 3
here=$(cd "$(dirname "$0")" && pwd)
browser=
for candidate in /usr/bin/chromium /usr/bin/chromium-browser; do
    [ -x "$candidate" ] && browser=$candidate && break
done
if [ -z "$browser" ]; then
    echo "no chromium (Debian: chromium): skipped"
    exit 77
fi
if ! command -v node >/dev/null || ! command -v npm >/dev/null; then
    echo "no node or npm: skipped"
    exit 77
fi
mkdir -p "$work/screenshots" "$work/reports"
if [ ! -d "$work/node_modules/playwright-core" ] ||
    ! cmp -s "$here/package-lock.json" "$work/package-lock.json"; then
    cp "$here/package.json" "$here/package-lock.json" "$work/"
    if ! (cd "$work" && npm ci --no-audit --no-fund --loglevel=error >npm.log 2>&1); then
        echo "playwright-core could not be installed (see $work/npm.log): skipped"
        exit 77
    fi
fi
cp "$here/report.test.mjs" "$work/"
reports=()
for input in "$sample" "$@"; do
    name=$(basename "$input")
    name=${name%.*}
    if ! "$dump" --html "$work/reports/$name.html" "$input" 2>"$work/reports/$name.err"; then
        echo "FAIL sarn-dump --html $input"
        cat "$work/reports/$name.err"
        exit 1
    fi
    reports+=("$work/reports/$name.html")
done
cd "$work" && exec node report.test.mjs "$browser" "$work/screenshots" "${reports[@]}"
