#!/usr/bin/env bash
# Compares this checkout's library with an older commit's, like for like, on
# the sections of the shared captures:
#
#   bench/against.sh [-r ROUNDS] [-m MS] BASE_COMMIT [json|parse]...
#
# Both libraries are built in Release (the older one in a worktree under
# build/against/), bench/bench_against.cpp is compiled alike against each
# one's headers, and the two programs run in alternation, ROUNDS times each
# (default 9), every run a batch of MS milliseconds (default 300). It prints
# the median nanoseconds per section of each side and the ratio of the
# medians (older / this one: above 1, this checkout is faster).
set -euo pipefail

rounds=9
ms=300
while getopts "r:m:" opt; do
    case $opt in
    r) rounds=$OPTARG ;;
    m) ms=$OPTARG ;;
    *) exit 2 ;;
    esac
done
shift $((OPTIND - 1))
if [ $# -lt 1 ]; then
    echo "usage: $0 [-r ROUNDS] [-m MS] BASE_COMMIT [json|parse]..." >&2
    exit 2
fi
base=$(git rev-parse --short "$1")
shift
modes=("$@")
[ ${#modes[@]} -gt 0 ] || modes=(json parse)

root=$(cd "$(dirname "$0")/.." && pwd)
work=$root/build/against
listings=("$root"/../shared/captures/sections/*.txt)
mkdir -p "$work"

# build SOURCE_TREE BUILD_DIR: the library in Release and the comparison
# program against it; prints the program's path.
build() {
    local src=$1 dir=$2
    cmake -S "$src" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Release -DSARN_BUILD_TESTS=OFF \
        -DSARN_BUILD_BENCH=OFF >"$dir.log" 2>&1
    cmake --build "$dir" --target SarnISDBTUtils >>"$dir.log" 2>&1
    local lib
    lib=$(dirname "$(find "$dir" -maxdepth 2 -name 'libSarnISDBTUtils.so' | head -1)")
    local gen
    gen=$(dirname "$(find "$dir" -name SarnISDBTUtilsVersion.h -not -path '*/tests/*' | head -1)")
    c++ -O2 -std=c++17 -I"$src/include" -I"$gen" "$root/bench/bench_against.cpp" \
        -L"$lib" -lSarnISDBTUtils -Wl,-rpath,"$lib" -o "$dir/sarn_bench_against"
    echo "$dir/sarn_bench_against"
}

tree=$work/tree-$base
if [ ! -d "$tree" ]; then
    git -C "$root" worktree add --detach "$tree" "$base" >/dev/null
fi
old=$(build "$tree" "$work/build-$base")
new=$(build "$root" "$work/build-current")

median() { sort -g | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }

echo "Sections: ${listings[*]##*/}"
echo "Base $base against $(git -C "$root" rev-parse --short HEAD)$(git -C "$root" diff --quiet HEAD || echo ' (with changes)'), $rounds rounds of $ms ms each side"
for mode in "${modes[@]}"; do
    : >"$work/$mode.old"
    : >"$work/$mode.new"
    for ((i = 0; i < rounds; i++)); do
        "$old" "$mode" "$ms" "${listings[@]}" >>"$work/$mode.old"
        "$new" "$mode" "$ms" "${listings[@]}" >>"$work/$mode.new"
    done
    a=$(median <"$work/$mode.old")
    b=$(median <"$work/$mode.new")
    awk -v m="$mode" -v a="$a" -v b="$b" -v base="$base" \
        'BEGIN { printf "%-5s %s %.0f ns/section, this one %.0f ns/section: %.2fx\n", m, base, a, b, a / b }'
done
