#!/usr/bin/env bash
# Installs what the build needs beyond a stock Debian 12 C++ machine
# (g++, cmake, GoogleTest and Google Benchmark are expected to be there).
# Everything here is optional: without liblog the build uses its own
# stand-in, and tools that are missing only switch off the checks that use them
# (without rapidjson-dev, sarn-dump prints every table as a JSON string).
set -u
wanted=(android-liblog-dev pkg-config ninja-build valgrind g++-arm-linux-gnueabihf qemu-user clang-14 libclang-rt-14-dev libdvbv5-dev
        rapidjson-dev "$@")
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
