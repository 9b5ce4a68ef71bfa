#!/usr/bin/env bash
# Installs what a build needs beyond a stock Debian 12 C++ machine
# (g++, cmake, GoogleTest and Google Benchmark are expected to be there).
#   setup.sh run            what building and running sarn-dump needs (scripts/run.sh)
#   setup.sh test           that, and what the whole test suite uses (scripts/test.sh)
#   setup.sh --list PROFILE print the packages of a profile and install nothing
# More package names may follow the profile.
# Everything here is optional: without liblog the build uses its own
# stand-in, and tools that are missing only switch off the checks that use them
# (without rapidjson-dev, sarn-dump prints every table as a JSON string).
set -u
run_packages=(android-liblog-dev ninja-build rapidjson-dev)
test_packages=(pkg-config valgrind g++-arm-linux-gnueabihf qemu-user clang-14 libclang-rt-14-dev
               libdvbv5-dev xmltv-util chromium)
list_only=0
if [ "${1:-}" = --list ]; then list_only=1; shift; fi
profile=${1:-test}
[ $# -gt 0 ] && shift
case "$profile" in
  run) wanted=("${run_packages[@]}") ;;
  test) wanted=("${run_packages[@]}" "${test_packages[@]}") ;;
  *) echo "setup: unknown profile '$profile' (run or test)" >&2; exit 2 ;;
esac
wanted+=("$@")
if [ $list_only = 1 ]; then
  printf '%s\n' "${wanted[@]}"
  exit 0
fi
missing=()
for pkg in "${wanted[@]}"; do
  dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "install ok installed" || missing+=("$pkg")
done
if [ ${#missing[@]} -gt 0 ]; then
  if [ "$(id -u)" = 0 ] && command -v apt-get >/dev/null; then
    echo "setup: installing ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    apt-get update -qq >/dev/null 2>&1 || echo "setup: apt-get update failed; going on"
    for pkg in "${missing[@]}"; do
      apt-get install -y -qq --no-install-recommends "$pkg" >/dev/null 2>&1 \
        || echo "setup: could not install $pkg; going on without it"
    done
  else
    echo "setup: not installing ${missing[*]} (needs root and apt-get); going on without them"
  fi
fi
exit 0
